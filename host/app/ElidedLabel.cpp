#include "app/ElidedLabel.h"

#include <QEvent>

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, QWidget *pParent)
    : QLabel(pParent)
    , m_mode(mode)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void ElidedLabel::setFullText(const QString &text, const QString &toolTip)
{
    m_text = text;
    m_text.replace(QLatin1Char('\n'), QChar(0x23CE));
    m_toolTip = toolTip;
    setAccessibleName(m_text);
    shorten();
}

void ElidedLabel::resizeEvent(QResizeEvent *pEvent)
{
    QLabel::resizeEvent(pEvent);
    shorten();
}

void ElidedLabel::changeEvent(QEvent *pEvent)
{
    QLabel::changeEvent(pEvent);
    if (pEvent->type() == QEvent::FontChange)
        shorten();
}

void ElidedLabel::shorten()
{
    const QString shown = fontMetrics().elidedText(m_text, m_mode, contentsRect().width());
    setText(shown);
    setToolTip(m_toolTip.isEmpty() && shown != m_text ? m_text : m_toolTip);
}
