#pragma once

#include "image/BasePreviewWidget.h"
#include "image/NoteRegin.h"

#include <QAtomicInt>
#include <QHash>
#include <QImage>
#include <QSharedPointer>
#include <QSize>
#include <QTimer>
#include <QVector>

class CPushButton;
class CResourceItem;
class FileActionController;
class ImgPreviewToolBar;
class PictureLoad;
class PictureNotes;
class PictureZoom;
class TSDBGraphicsScene;
class TSLargePreviewView;

/**
 * The type widget for pictures: one item in a scene seen through a view, zoomed by the view's matrix, with a bar of
 * buttons. Pictures come from loader tasks; what cannot be read is shown as a placeholder.
 *
 * Owner: the hub. Thread: GUI thread.
 */
class ImgPreviewWidget : public BasePreviewWidget {
    Q_OBJECT

public:
    /** How the hub asks for a file. */
    enum OpenMode {
        OpenOwnFile = 0,      ///< A picture shown from its own file; plays where it is animated.
        OpenRendition = 2,    ///< A layered document, shown still.
        OpenHostRendition = 3 ///< A type of which the host decides whether the loader or its cache gives the picture.
    };

    explicit ImgPreviewWidget(QWidget *pParent);
    ~ImgPreviewWidget() override;

    // Called by the hub for a new file, in this order.
    void setOpenMode(int nOpenMode) { m_openMode = nOpenMode; }
    void loadImage(const QString &path, int nFirstFrame, int nFrameCount, double fLoadFactor, int nFlags);

    /** Leaves the comment mode and asks to leave the preview. */
    void quitPreview();
    /** Drops the picture. */
    void clearPreview();
    /** Nothing will be shown for a while: gives back the memory that is kept for the next picture. */
    void releaseMemory();
    QWidget *toolBar() const;
    /** The hub shows the page again: fits at once and re-places the tools. */
    void showLoaded();

Q_SIGNALS:
    void signal_quit();
    void signal_img_preview_update();
    void signal_load_img_end();

public Q_SLOTS:
    void slot_fullPreviewBtnClicked();
    void slot_adaptWidthBtnClicked();
    void slot_NormalBtnClicked();
    void slot_RotateBtnCllicked();
    void slot_HorizonalRotateBtnClicked();
    void slot_cutBtnClicked();
    void slot_EditBtnClicked();
    void slot_ZoomOutBtnClicked();
    void slot_ZoomInBtnClicked();
    void slot_cutPushBtnClicked();
    void slot_cancelPushBtnClicked();
    void slot_viewWeelChanged(bool bValue);
    void slot_setSavedImgFlat(bool bChecked);
    void slot_defaultOpen();
    void slot_checkFilePath();
    void slot_exportToPackage();
    void slot_exportToComputer();
    void slot_copyFile();
    void slot_copyFilePath();
    void slot_copyTag();
    void slot_pasteTag();
    void slot_setCover();
    void slot_deleteComplete();
    void slot_removeToRecycle();
    void slot_PreviewTimerout();
    void slot_saveNoteInfo(NoteRegin *pNoteRegion);
    void slot_deleteNoteInfo(int nId);
    void slot_acceptMousePosFromNoteWidget(QPoint noteWidgetMousePos);
    void slot_imgReadEnd(qint64 fileId, QImage img, QString loadPath, bool bSrcImg);

protected:
    void contextMenuEvent(QContextMenuEvent *pEvent) override;
    void resizeEvent(QResizeEvent *pEvent) override;
    void showEvent(QShowEvent *pEvent) override;
    void hideEvent(QHideEvent *pEvent) override;

private:
    void connectTools();
    void createFileActions();
    void releaseAnimation();
    void refreshCurrentFile();
    void startLoader(qint64 nFileId);
    void abandonLoads();
    void loadFromHost(qint64 nFileId);
    QImage pictureOfHost() const;
    void startAnimationTask(qint64 nFileId, const QString &path);
    void cancelAnimationTask();
    void disposeOfPictures();
    void trimMemory();
    void showPlaceholder();
    void ShowImageUnit(const QImage &image, const QVector<QImage> &levels = {}, const QSize &originalSize = {});
    void placeTools();

    TSDBGraphicsScene *m_scene;
    TSLargePreviewView *m_view;
    CResourceItem *m_imageItem = nullptr;
    int m_openMode = OpenOwnFile;
    QImage m_image;
    QVector<QImage> m_levels;
    QHash<qint64, QSharedPointer<PictureLoad>> m_loads; ///< Under way, by file.
    QSharedPointer<QAtomicInt> m_pAnimationCancel;
    QTimer m_trimTimer; ///< Who looks for longer than this pays for fresh memory at the next step.
    QSize m_viewSize;
    int m_loadFactor = 1;
    PictureZoom *m_pZoom;
    ImgPreviewToolBar *m_pToolBar;
    PictureNotes *m_pNotes;
    CPushButton *m_pCutPushBtn;
    CPushButton *m_pCancelPushBtn;
    FileActionController *m_pFileActions = nullptr;
};
