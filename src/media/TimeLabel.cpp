#include "media/TimeLabel.h"

namespace {

constexpr int LongestMinutes = 2;

} // namespace

TimeLabel::TimeLabel(int nWidth, QWidget *pParent)
    : QLabel(pParent)
    , m_nWidth(nWidth)
{
    setTextFormat(Qt::PlainText);
    setFixedWidth(nWidth);
}

void TimeLabel::showTime(const QString &text)
{
    setText(text);
    // Of what follows the time only blanks can be cut off.
    const bool bLong = text.indexOf(QLatin1Char(':')) > LongestMinutes;
    ensurePolished();
    setFixedWidth(bLong ? qMax(m_nWidth, fontMetrics().horizontalAdvance(text)) : m_nWidth);
}
