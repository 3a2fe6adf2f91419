#include "media/TimeLabel.h"

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
    ensurePolished();
    setFixedWidth(qMax(m_nWidth, fontMetrics().horizontalAdvance(text)));
}
