#pragma once

#include "app/UniformGrid.h"

#include <QVector>

class FileGridModel;
class ThumbnailSource;

/**
 * The grid of files. Keeps selection and current file by id while the list changes.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class FileGridView : public UniformGrid {
    Q_OBJECT

public:
    FileGridView(FileGridModel *pModel, ThumbnailSource *pThumbnails, QWidget *pParent);

    qint64 currentFileId() const;
    QVector<qint64> selectedFileIds() const;

    /** Makes the file the current and only selected one and scrolls to it; unknown ids do nothing. */
    void selectFile(qint64 nFileId);

    /** After the view was hidden: the same file stands at the same place, another one is scrolled to. */
    void returnTo(qint64 nFileId);

    /** Goes to the first file, also as earlier ones arrive, until the user chooses or scrolls. */
    void startOver() { m_bTouched = false; }

Q_SIGNALS:
    void signalQuickPreview();
    void signalOpen();
    void signalSelectionChanged();

protected:
    void keyPressEvent(QKeyEvent *pEvent) override;
    void mousePressEvent(QMouseEvent *pEvent) override;
    void hideEvent(QHideEvent *pEvent) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;

private:
    void keepSelection();
    void keepPlace();
    void restoreSelection();
    void restorePlace();

    FileGridModel *m_pModel;
    QVector<qint64> m_keptIds;
    qint64 m_nKeptCurrentId = 0;
    int m_nKeptRow = -1;
    qint64 m_nAnchorId = 0; ///< The file that stays where it is on screen; 0: none.
    int m_nAnchorTop = 0;
    qint64 m_nLeftId = 0; ///< The current file when the view was hidden, and how far it was scrolled.
    int m_nLeftScroll = 0;
    bool m_bTouched = false;
};
