#include "common/ElidedLabel.h"

#include <QPainter>
#include <QStyle>

ElidedLabel::ElidedLabel(QWidget *pParent)
    : QLabel(pParent)
{
    setTextFormat(Qt::PlainText);
}

void ElidedLabel::showText(const QString &text)
{
    setText(text);
    // A file's name is no markup, which a tool tip would take it for.
    setToolTip(text.toHtmlEscaped());
}

void ElidedLabel::paintEvent(QPaintEvent *pEvent)
{
    Q_UNUSED(pEvent)
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), int(alignment()) | Qt::TextSingleLine, palette(), isEnabled(),
                          shown, foregroundRole());
}
