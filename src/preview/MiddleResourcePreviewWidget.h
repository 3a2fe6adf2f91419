#pragma once

#include <QStackedWidget>
#include <QString>

class AudioPreviewWidget;
class BasePreviewWidget;
class HubLoadingPage;
class HubTitleBar;
class ImgPreviewWidget;
class PPtPreviewWidget;
class HubOpenings;
class QTimer;
class TSHidenSideWidget;
class VideoPreviewWidget;

/**
 * The middle of both surfaces: one page for each kind of file, the keys, the buttons of the top edge. Decides which
 * page shows the current file and turns what the user asks for into signals; never changes the file list itself.
 *
 * Owner: the surface. Thread: GUI thread.
 */
class MiddleResourcePreviewWidget : public QStackedWidget {
    Q_OBJECT

public:
    enum Mode { DoubleClickMode = 0, SpaceDialogMode = 1 };
    /** What kind of file a page is asked to show. */
    enum ResourceKind { PresentationKind = 1, LayeredKind = 2, PictureKind = 3, AudioKind = 4, VideoKind = 5 };
    enum Page { ImagePage = 0, VideoPage = 1, AudioPage = 2, PresentationPage = 3, LoadingPage = 4, ReservedPage = 5 };

    MiddleResourcePreviewWidget(QWidget *pParent, int nMode);
    ~MiddleResourcePreviewWidget() override;

    /** Stops whatever plays and drops what is shown, without leaving. */
    void stopCurrentPreview();
    /** The same, when no other file will follow. */
    void leavePreview();
    /** The exit completes when the presentation that is being opened ends. */
    void setClosePending(bool bPending);
    void setReloadPending(bool bPending) { m_bReloadPending = bPending; }
    /** True when leaving is allowed; otherwise tells the user to wait. */
    bool confirmNotLoading();
    HubTitleBar *titleBar() const { return m_pTitleBar; }
    /** Turns the page of a presentation; false where there is none in that direction. */
    bool turnPage(bool bForward);
    /** Shows the window's and the columns' state: window buttons, arrows of the edge handles. */
    void refreshTitleBar();
    /** The hub's keys work while a neighbour, a vertical list, has the focus as well; up and down are its own. */
    void shareKeysWith(QWidget *pNeighbour);

Q_SIGNALS:
    void signal_exitCurWidget();
    void siganl_updateLeftList();
    void signal_SourcePreviewFullScreen();
    void signal_deletedFile();
    void signal_nextSource();
    void signal_previousSource();
    void signal_up_Key_Pressed();
    void signal_down_Key_Pressed();
    void signal_left_Key_Pressed();
    void signal_right_Key_Pressed();
    void signal_forbidden_right(bool bForbidden);
    void signal_left_chenged();
    void signal_right_changed();
    void signal_start_left_side_timer();
    void signal_start_right_side_timer();
    void signal_stop_side_timer();
    void signal_close_space_dialog();

public Q_SLOTS:
    void slot_switchPreviewWidget(int nPreviewResourceType);
    void slot_fullViewBtnClicked();
    void slot_returnBtnClicked();
    void slot_previewResource();
    void slot_exitCurPreview_Key();
    void slot_exitCurPreview_ByDBClicked();
    void slot_UpKey();
    void slot_DownKey();
    void slot_leftKey();
    void slot_rightKey();
    void slot_tabKey();
    void slot_spaceKey();
    void slot_fullPreview_key();
    void slot_orgPreview_key();
    void slot_adaptPreview_key();
    void slot_zoomOut_key();
    void slot_zoomIn_key();
    void slot_imgLoadEnd();
    void slot_pptLoadEnd(qint64 fileId, QString path, bool bOk);
    void slot_pptCancelEnd();
    void slot_pptFrameReadEnd();
    void slot_side_triggered(QWidget *w, bool force);

protected:
    void resizeEvent(QResizeEvent *pEvent) override;

private:
    void createPages();
    void createShortcuts(QWidget *pOwner);
    void createSideTriggers();
    void connectPages();
    void connectPresentations();
    void showImage(const QString &path, int nOpenMode);
    void showPresentation(const QString &path);
    void showVideo(const QString &path);
    void showAudio(const QString &path);
    void showResource(int nKind, const QString &path);
    void exitCurrentPreview();
    void closeWhenOpened();
    void finishClosing();
    void leaveByQuit();
    void goNext();
    void goPrevious();
    void raiseOverlays();

    int m_nMode;
    ImgPreviewWidget *m_pImgWidget = nullptr;
    VideoPreviewWidget *m_pVideoWidget = nullptr;
    AudioPreviewWidget *m_pAudioWidget = nullptr;
    PPtPreviewWidget *m_pPptWidget = nullptr;
    HubLoadingPage *m_pLoadingPage = nullptr;
    HubTitleBar *m_pTitleBar = nullptr;
    TSHidenSideWidget *m_pLeftTrigger = nullptr;
    TSHidenSideWidget *m_pRightTrigger = nullptr;
    bool m_bClosePending = false;
    bool m_bReloadPending = false;
    bool m_bStopping = false;
    QTimer *m_pFitTimer = nullptr;
    HubOpenings *m_pOpenings = nullptr;
    QTimer *m_pPageTimer = nullptr;
    QTimer *m_pCloseTimer = nullptr;
};
