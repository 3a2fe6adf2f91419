#pragma once

#include <QListView>
#include <QVector>

class FileGridModel;
class ThumbnailSource;

/**
 * The grid of files. Keeps selection and current file by id while the list changes.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class FileGridView : public QListView {
    Q_OBJECT

public:
    FileGridView(FileGridModel *pModel, ThumbnailSource *pThumbnails, QWidget *pParent);

    qint64 currentFileId() const;

    /** Makes the file the current and only selected one and scrolls to it; unknown ids do nothing. */
    void selectFile(qint64 nFileId);

Q_SIGNALS:
    void signalQuickPreview();
    void signalOpen();
    void signalSelectionChanged();

protected:
    void keyPressEvent(QKeyEvent *pEvent) override;
    void resizeEvent(QResizeEvent *pEvent) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;

private:
    int columns() const;
    void fitCells();
    void keepSelection();
    void restoreSelection();

    FileGridModel *m_pModel;
    QVector<qint64> m_keptIds;
    qint64 m_nKeptCurrentId = 0;
    int m_nKeptRow = -1;
    int m_nKeptScroll = 0;
};
