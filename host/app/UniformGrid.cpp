#include "app/UniformGrid.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

namespace {

/** One notch of a mouse wheel is three steps: a row. */
constexpr int k_nStepsPerRow = 3;

} // namespace

UniformGrid::UniformGrid(const QSize &leastCell, QWidget *pParent)
    : QAbstractItemView(pParent)
    , m_leastCell(leastCell)
{
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Always there, so that the columns do not jump when the first screenful is exceeded.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
}

int UniformGrid::count() const
{
    return model() != nullptr ? model()->rowCount() : 0;
}

int UniformGrid::columns() const
{
    return qMax(1, viewport()->width() / m_leastCell.width());
}

QSize UniformGrid::cell() const
{
    return {qMax(m_leastCell.width(), viewport()->width() / columns()), m_leastCell.height()};
}

int UniformGrid::verticalOffset() const
{
    return verticalScrollBar()->value();
}

QRect UniformGrid::visualRect(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const QSize size = cell();
    const int nColumns = columns();
    const QPoint at(index.row() % nColumns * size.width(), index.row() / nColumns * size.height() - verticalOffset());
    return QStyle::visualRect(layoutDirection(), viewport()->rect(), QRect(at, size));
}

QModelIndex UniformGrid::indexAt(const QPoint &point) const
{
    const QSize size = cell();
    const QPoint at = QStyle::visualPos(layoutDirection(), viewport()->rect(), point) + QPoint(0, verticalOffset());
    if (at.x() < 0 || at.y() < 0 || at.x() / size.width() >= columns())
        return {};
    const int nRow = at.y() / size.height() * columns() + at.x() / size.width();
    return nRow < count() ? model()->index(nRow, 0) : QModelIndex();
}

void UniformGrid::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const QRect rect = visualRect(index);
    const int nRoom = viewport()->height() - rect.height();
    if (!index.isValid() || (hint == EnsureVisible && rect.top() >= 0 && rect.top() <= nRoom))
        return;
    executeDelayedItemsLayout(); // the scroll bar knows the list's new length
    const bool bToTop = hint == PositionAtTop || (hint == EnsureVisible && rect.top() < 0) || nRoom < 0;
    const int nTop = bToTop ? 0 : hint == PositionAtCenter ? nRoom / 2 : nRoom;
    verticalScrollBar()->setValue(verticalOffset() + visualRect(index).top() - nTop);
}

QModelIndex UniformGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers /*modifiers*/)
{
    const int nCount = count();
    const int nRow = currentIndex().row();
    if (nCount == 0)
        return {};
    if (nRow < 0)
        return model()->index(0, 0);
    const int nPage = qMax(1, viewport()->height() / cell().height()) * columns();
    const int nForward = isRightToLeft() ? -1 : 1;
    // A step that leads out of the list is none.
    const auto step = [this, nRow, nCount](int nOffset) {
        const int nTarget = nRow + nOffset;
        return model()->index(nTarget >= 0 && nTarget < nCount ? nTarget : nRow, 0);
    };
    switch (action) {
    case MoveLeft:
        return step(-nForward);
    case MoveRight:
        return step(nForward);
    case MovePrevious:
        return step(-1);
    case MoveNext:
        return step(1);
    case MoveUp:
        return step(-columns());
    case MoveDown:
        return step(columns());
    case MovePageUp:
        return model()->index(qMax(0, nRow - nPage), 0);
    case MovePageDown:
        return model()->index(qMin(nCount - 1, nRow + nPage), 0);
    case MoveHome:
        return model()->index(0, 0);
    case MoveEnd:
        return model()->index(nCount - 1, 0);
    }
    return {};
}

QItemSelection UniformGrid::cellsWithin(const QRect &rect) const
{
    QItemSelection cells;
    const QRect area =
        QStyle::visualRect(layoutDirection(), viewport()->rect(), rect.normalized()).translated(0, verticalOffset());
    const QSize size = cell();
    const int nColumns = columns();
    const int nFirst = qBound(0, area.left() / size.width(), nColumns - 1);
    const int nLast = qBound(0, area.right() / size.width(), nColumns - 1);
    for (int nLine = qMax(0, area.top()) / size.height(); nLine <= area.bottom() / size.height(); ++nLine) {
        const int nFrom = nLine * nColumns + nFirst;
        const int nTo = qMin(nLine * nColumns + nLast, count() - 1);
        if (nFrom > nTo)
            break;
        cells.append(QItemSelectionRange(model()->index(nFrom, 0), model()->index(nTo, 0)));
    }
    return cells;
}

void UniformGrid::setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command)
{
    if (selectionModel() == nullptr)
        return;
    if (state() == DragSelectingState) {
        selectionModel()->select(cellsWithin(rect), command);
        return;
    }
    // By keys and clicks: all files from the one to the other, in the list's order.
    const QModelIndex from = indexAt(rect.topLeft());
    const QModelIndex to = indexAt(rect.bottomRight());
    QItemSelection selection;
    if (from.isValid() && to.isValid())
        selection.append(from.row() <= to.row() ? QItemSelectionRange(from, to) : QItemSelectionRange(to, from));
    selectionModel()->select(selection, command);
}

QRegion UniformGrid::visualRegionForSelection(const QItemSelection &selection) const
{
    // The exact region would be gathered from every selected file, in view or not.
    return selection.isEmpty() ? QRegion() : QRegion(viewport()->rect());
}

void UniformGrid::updateGeometries()
{
    const int nLines = (count() + columns() - 1) / columns();
    const int nStep = cell().height();
    verticalScrollBar()->setSingleStep(nStep / k_nStepsPerRow);
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, qMax(0, nLines * nStep - viewport()->height()));
    QAbstractItemView::updateGeometries();
}

void UniformGrid::scrollContentsBy(int nX, int nY)
{
    viewport()->scroll(nX, nY);
}

void UniformGrid::paintEvent(QPaintEvent *pEvent)
{
    QPainter painter(viewport());
    QStyleOptionViewItem option = viewOptions();
    const QStyle::State basic = option.state & ~QStyle::State_HasFocus;
    const QModelIndex hovered =
        viewport()->underMouse() ? indexAt(viewport()->mapFromGlobal(QCursor::pos())) : QModelIndex();
    const QItemSelection cells = cellsWithin(pEvent->rect());
    for (const QItemSelectionRange &range : cells) {
        for (int nRow = range.top(); nRow <= range.bottom(); ++nRow) {
            const QModelIndex index = model()->index(nRow, 0);
            option.rect = visualRect(index);
            option.state = basic;
            option.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
            option.state.setFlag(QStyle::State_HasFocus, hasFocus() && index == currentIndex());
            option.state.setFlag(QStyle::State_MouseOver, index == hovered);
            itemDelegate()->paint(&painter, option, index);
        }
    }
}
