#include "app/panel/FlowLayout.h"

#include <QStyle>
#include <QWidget>

FlowLayout::FlowLayout(int nSpacing)
    : m_nSpacing(nSpacing)
{
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout()
{
    qDeleteAll(m_items);
}

QLayoutItem *FlowLayout::takeAt(int nIndex)
{
    return nIndex >= 0 && nIndex < m_items.size() ? m_items.takeAt(nIndex) : nullptr;
}

QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const QLayoutItem *pItem : m_items)
        size = size.expandedTo(pItem->minimumSize());
    return size;
}

void FlowLayout::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

int FlowLayout::arrange(const QRect &rect, bool bApply) const
{
    const Qt::LayoutDirection direction =
        parentWidget() != nullptr ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    int nX = rect.x();
    int nY = rect.y();
    int nLineHeight = 0;
    for (QLayoutItem *pItem : m_items) {
        if (pItem->isEmpty())
            continue;
        const QSize size(qMin(pItem->sizeHint().width(), rect.width()), pItem->sizeHint().height());
        if (nX > rect.x() && nX + size.width() > rect.right() + 1) {
            nX = rect.x();
            nY += nLineHeight + m_nSpacing;
            nLineHeight = 0;
        }
        if (bApply)
            pItem->setGeometry(QStyle::visualRect(direction, rect, QRect(QPoint(nX, nY), size)));
        nX += size.width() + m_nSpacing;
        nLineHeight = qMax(nLineHeight, size.height());
    }
    return nY + nLineHeight - rect.y();
}
