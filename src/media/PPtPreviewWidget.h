#pragma once

#include "image/BasePreviewWidget.h"

#include <QHash>
#include <QImage>
#include <QPixmap>
#include <QSharedPointer>
#include <QSize>
#include <QTimer>
#include <QVector>

#include <functional>

class CResourceItem;
class FileActionController;
class PPtPreviewToolBar;
class PictureLoad;
class PictureZoom;
class PreviewResourceThread;
class TSDBGraphicsScene;
class TSLargePreviewView;

/**
 * The type widget for presentations: one page at a time as a picture in a view, with a bar of buttons for fit, pages
 * and zoom. The host's renderer makes the pages in loader tasks: at their own size first, and again with the pixels
 * that the screen needs where that has too few.
 *
 * Owner: the hub, which has opened the document before. Thread: GUI thread.
 */
class PPtPreviewWidget : public BasePreviewWidget {
    Q_OBJECT

public:
    explicit PPtPreviewWidget(QWidget *pParent);
    ~PPtPreviewWidget() override;

    /** Shows the first page of the current file, which is open in the host's renderer. */
    void loadPresentation(const QString &path);
    /** Drops the page; frames that are on their way mean nothing any more. */
    void clearPreview();
    /** The hub shows the page: fits at once. */
    void showFrame();

    /** Where the document stands; without pages it stands at both ends. */
    bool isFirstPage() const { return m_nPageIndex <= 0; }
    bool isLastPage() const { return m_nPageIndex >= m_nPageCount - 1; }
    /** False until the first page, or what stands for it, is shown. */
    bool isPageShown() const { return m_bPageShown; }
    QWidget *toolBar() const;

    /** Is called when the file has a new preview picture. */
    void setCoverChangedHook(const std::function<void()> &call) { m_coverChanged = call; }

Q_SIGNALS:
    void signal_start_load_ppt_frame();
    void signal_ppt_frame_read_end();

public Q_SLOTS:
    void slot_fullPreviewBtnClicked();
    void slot_adaptWidthBtnClicked();
    void slot_NormalBtnClicked();
    void slot_leftBtnClicked();
    void slot_rightBtnClicked();
    void slot_ZoomOutBtnClicked();
    void slot_ZoomInBtnClicked();
    void slot_viewWeelChanged(bool bValue);
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
    void slot_pptFrameReadEnd(qint64 fileId, QPixmap frame);
    void slot_switchFrameReadEnd(qint64 fileId, QPixmap frame);

protected:
    void contextMenuEvent(QContextMenuEvent *pEvent) override;
    void resizeEvent(QResizeEvent *pEvent) override;

private:
    /** A page that is being rendered. */
    struct PageLoad {
        int nPage = 0;
        QSize pageSize; ///< What the pixels asked for stand for; empty where the page has its own size.
        QSharedPointer<PictureLoad> pLoad;
    };

    void connectTools();
    void createFileActions();
    void createItem();
    void layOutView();
    /** Whether the page stands as the hub, or fit to window, shows it. */
    bool isFitted() const;
    void updatePageLabel();
    void turnPage(int nStep);
    void startPageLoad(bool bOwnSize = false);
    static PreviewResourceThread *createTask(const PageLoad &load, const QSize &pixelSize);
    void takeFrame(qint64 fileId, const QPixmap &frame, bool bFirst);
    void showPage(const QPixmap &frame, const PageLoad &load);
    void showPlaceholder();
    void updatePlaceholder();
    void tellFailure();
    void dropPicture();
    QImage coverPicture() const;

    // Sharper renditions of the page shown.
    void sharpenPage();
    void takeSharperFrame(const PageLoad &load, const QPixmap &frame);
    void cancelSharpening();
    QSize pixelsFor(double fScale) const;

    PPtPreviewToolBar *m_pToolBar;
    TSDBGraphicsScene *m_scene;
    TSLargePreviewView *m_view;
    CResourceItem *m_pPageItem = nullptr;
    PictureZoom *m_pZoom;
    int m_nPageCount = 0;
    int m_nPageIndex = 0;
    bool m_bLoaded = false;
    bool m_bPageShown = false;
    bool m_bPlaceholder = false;
    bool m_bFailureTold = false;
    int m_nShownPage = 0;
    QSize m_pageSize;                ///< Of the page shown, in units of the scene.
    QImage m_page;                   ///< The pixels shown.
    QVector<QImage> m_levels;        ///< Reduced levels of them.
    QHash<qint64, PageLoad> m_loads; ///< Under way, by file.
    QSharedPointer<PictureLoad> m_pSharperLoad;
    QSize m_askedPixels; ///< The most that were asked for of the page shown.
    QTimer m_sharpenTimer;
    FileActionController *m_pFileActions = nullptr;
    std::function<void()> m_coverChanged;
};
