#pragma once

#include <QListView>
#include <QModelIndex>

class PreviewLeftWinItemDelegate;
class PreviewLeftWinModel;
class TSScrollBar;

/**
 * The thumbnail strip: every listed file in a vertical list. A choice makes the file current in the shared state and is
 * announced; what is shown of it is the window's business.
 *
 * Owner: the full preview. Thread: GUI thread.
 */
class PreviewLeftWin : public QListView {
    Q_OBJECT

public:
    explicit PreviewLeftWin(QWidget *pParent);

    /** Takes the list and the current file from the shared state again; announces the current file. */
    void reload();
    void selectPrevious();
    void selectNext();
    /** The item under the mouse; invalid while the mouse is elsewhere. */
    QModelIndex hoveredIndex() const { return m_hovered; }

Q_SIGNALS:
    /** A file was chosen: its position from 1, the number of files, its id. */
    void SigShowResource(int cur, int total, qint64 fileId);

public Q_SLOTS:
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void slotThumbnailLoad();

protected:
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void mousePressEvent(QMouseEvent *pEvent) override;
    void leaveEvent(QEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;
    void keyReleaseEvent(QKeyEvent *pEvent) override;
    void showEvent(QShowEvent *pEvent) override;
    void scrollContentsBy(int dx, int dy) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index, const QEvent *pEvent) const override;

private:
    void selectRow(int nRow);

    PreviewLeftWinModel *m_pModel;
    PreviewLeftWinItemDelegate *m_pDelegate;
    TSScrollBar *m_pScrollBar;
    QModelIndex m_hovered;
};
