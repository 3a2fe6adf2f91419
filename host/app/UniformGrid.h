#pragma once

#include <QAbstractItemView>

/**
 * A grid of cells of one size, which share the width evenly. Where a cell stands is reckoned, never laid out, so that a
 * list of any length changes in the same time.
 *
 * Owner: the parent. Thread: GUI thread only. Models are flat lists.
 */
class UniformGrid : public QAbstractItemView {
    Q_OBJECT

public:
    /** Cells are as high as leastCell and at least as wide; pixels. */
    UniformGrid(const QSize &leastCell, QWidget *pParent);

    QRect visualRect(const QModelIndex &index) const override;
    QModelIndex indexAt(const QPoint &point) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex & /*index*/) const override { return false; }
    void setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection &selection) const override;
    void updateGeometries() override;
    void scrollContentsBy(int nX, int nY) override;
    void paintEvent(QPaintEvent *pEvent) override;

private:
    int count() const;
    int columns() const;
    QSize cell() const;
    QItemSelection cellsWithin(const QRect &rect) const;

    const QSize m_leastCell;
};
