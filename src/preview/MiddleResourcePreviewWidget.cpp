#include "preview/MiddleResourcePreviewWidget.h"

#include "common/CNotificationFloatingWidget.h"
#include "common/CircleBtn.h"
#include "common/WaitNotice.h"
#include "image/ImgPreviewWidget.h"
#include "interfaces/services/IShortcutSetting.h"
#include "media/AudioPreviewWidget.h"
#include "media/PPtPreviewWidget.h"
#include "media/VideoPreviewWidget.h"
#include "plugin/FileTypeTable.h"
#include "plugin/PluginInnerData.h"
#include "preview/HubLoadingPage.h"
#include "preview/HubTitleBar.h"
#include "preview/TSHidenSideWidget.h"
#include "tracking/TsEventTrack.h"

#include <QShortcut>
#include <QTimer>

namespace {

constexpr qint64 OggType = 620;
constexpr int FitDelay = 5;

} // namespace

MiddleResourcePreviewWidget::MiddleResourcePreviewWidget(QWidget *pParent, int nMode)
    : QStackedWidget(pParent)
    , m_nMode(nMode)
{
    setFocusPolicy(Qt::StrongFocus);
    createPages();
    m_pTitleBar = new HubTitleBar(this);
    m_pTitleBar->setVisible(m_nMode == DoubleClickMode);
    createSideTriggers();
    connect(m_pTitleBar->backButton(), &QPushButton::clicked, this,
            &MiddleResourcePreviewWidget::slot_returnBtnClicked);
    connect(m_pTitleBar->columnButton(), &QPushButton::clicked, this,
            &MiddleResourcePreviewWidget::slot_fullViewBtnClicked);
    m_pFitTimer = new QTimer(this);
    m_pFitTimer->setSingleShot(true);
    connect(m_pFitTimer, &QTimer::timeout, m_pImgWidget, &ImgPreviewWidget::showLoaded);
    connectPages();
    createShortcuts(this);
    setCurrentIndex(LoadingPage);
}

MiddleResourcePreviewWidget::~MiddleResourcePreviewWidget() = default;

void MiddleResourcePreviewWidget::createPages()
{
    m_pImgWidget = new ImgPreviewWidget(this);
    m_pVideoWidget = new VideoPreviewWidget(this);
    m_pAudioWidget = new AudioPreviewWidget(this);
    m_pPptWidget = new PPtPreviewWidget(this);
    m_pLoadingPage = new HubLoadingPage(this);
    insertWidget(ImagePage, m_pImgWidget);
    insertWidget(VideoPage, HubTitleBar::makePageBelow(m_pVideoWidget));
    insertWidget(AudioPage, m_pAudioWidget);
    insertWidget(PresentationPage, m_pPptWidget);
    insertWidget(LoadingPage, m_pLoadingPage);
    insertWidget(ReservedPage, new QWidget(this));
}

void MiddleResourcePreviewWidget::connectPages()
{
    using Hub = MiddleResourcePreviewWidget;
    connect(m_pImgWidget, &ImgPreviewWidget::signal_load_img_end, this, &Hub::slot_imgLoadEnd);
    connect(m_pImgWidget, &ImgPreviewWidget::signal_quit, this, &Hub::leaveByQuit);
    // The picture, or the record behind it, is new: so may be what the strip shows of it.
    connect(m_pImgWidget, &ImgPreviewWidget::signal_img_preview_update, this, &Hub::siganl_updateLeftList);
    connect(m_pVideoWidget, &PreviewRoom::signal_previewPictureChanged, this, &Hub::siganl_updateLeftList);
    connect(m_pAudioWidget, &PreviewRoom::signal_previewPictureChanged, this, &Hub::siganl_updateLeftList);
    const BasePreviewWidget *const pages[] = {m_pImgWidget, m_pVideoWidget, m_pAudioWidget, m_pPptWidget};
    for (const BasePreviewWidget *pPage : pages) {
        connect(pPage, &BasePreviewWidget::signal_PreviewWidgetDoubleClicked, this,
                &Hub::slot_exitCurPreview_ByDBClicked);
        connect(pPage, &BasePreviewWidget::signal_deleteFile, this, &Hub::signal_deletedFile);
    }
}

void MiddleResourcePreviewWidget::createSideTriggers()
{
    using Hub = MiddleResourcePreviewWidget;
    m_pLeftTrigger = new TSLeftHidenSideWidget(this);
    m_pRightTrigger = new TSRightHidenSideWidget(this);
    connect(m_pLeftTrigger, &TSHidenSideWidget::signalLeftClicked, this, &Hub::signal_left_chenged);
    connect(m_pRightTrigger, &TSHidenSideWidget::signalRightClicked, this, &Hub::signal_right_changed);
    connect(this, &Hub::signal_start_left_side_timer, m_pLeftTrigger, &TSHidenSideWidget::slotStartTimer);
    connect(this, &Hub::signal_start_right_side_timer, m_pRightTrigger, &TSHidenSideWidget::slotStartTimer);
    for (TSHidenSideWidget *pTrigger : {m_pLeftTrigger, m_pRightTrigger}) {
        connect(pTrigger, &TSHidenSideWidget::signalTriggered, this, &Hub::slot_side_triggered);
        connect(this, &Hub::signal_stop_side_timer, pTrigger, &TSHidenSideWidget::slotStopTimer);
        // The space dialog has no columns.
        pTrigger->setVisible(m_nMode == DoubleClickMode);
    }
}

void MiddleResourcePreviewWidget::refreshTitleBar()
{
    const PluginInnerData *pData = PluginInnerData::instance();
    m_pTitleBar->refresh();
    m_pLeftTrigger->setArrowLeft(pData->isLeftColumnShown());
    m_pRightTrigger->setArrowLeft(!pData->isRightPanelHidden());
}

void MiddleResourcePreviewWidget::shareKeysWith(QWidget *pNeighbour)
{
    createShortcuts(pNeighbour);
}

void MiddleResourcePreviewWidget::createShortcuts(QWidget *pOwner)
{
    const auto add = [this, pOwner](const QKeySequence &key, const char *pSlot, bool bRepeats) {
        auto *pShortcut = new QShortcut(key, pOwner);
        pShortcut->setContext(Qt::WidgetWithChildrenShortcut);
        pShortcut->setAutoRepeat(bRepeats);
        connect(pShortcut, SIGNAL(activated()), this, pSlot);
    };
    // A key that is still held down from opening the preview must not close it again.
    add(Qt::Key_Escape, SLOT(slot_exitCurPreview_Key()), false);
    add(Qt::Key_Tab, SLOT(slot_tabKey()), false);
    add(Qt::Key_Left, SLOT(slot_leftKey()), true);
    add(Qt::Key_Right, SLOT(slot_rightKey()), true);
    if (pOwner == this) {
        add(Qt::Key_Up, SLOT(slot_UpKey()), true);
        add(Qt::Key_Down, SLOT(slot_DownKey()), true);
        add(Qt::Key_Space, SLOT(slot_spaceKey()), false);
    }

    const PluginInnerData *pData = PluginInnerData::instance();
    if (!pData->isShortcutEnabled())
        return;
    struct UserKey {
        int nShortcutId;
        const char *pSlot;
    };
    const UserKey userKeys[] = {
        {IShortcutSetting::FitToWindow, SLOT(slot_fullPreview_key())},
        {IShortcutSetting::ActualSize, SLOT(slot_orgPreview_key())},
        {IShortcutSetting::FitToWidth, SLOT(slot_adaptPreview_key())},
        {IShortcutSetting::ZoomOut, SLOT(slot_zoomOut_key())},
        {IShortcutSetting::ZoomIn, SLOT(slot_zoomIn_key())},
    };
    // A key with two meanings has none in Qt: the preview's own keys, and the first user key, keep theirs.
    QVector<QKeySequence> taken = {Qt::Key_Escape, Qt::Key_Up,  Qt::Key_Down, Qt::Key_Left,
                                   Qt::Key_Right,  Qt::Key_Tab, Qt::Key_Space};
    taken.append(
        QKeySequence::fromString(pData->shortcutText(IShortcutSetting::MoveToRecycleBin), QKeySequence::PortableText));
    for (const UserKey &userKey : userKeys) {
        const QKeySequence key =
            QKeySequence::fromString(pData->shortcutText(userKey.nShortcutId), QKeySequence::PortableText);
        if (key.isEmpty() || taken.contains(key))
            continue;
        taken.append(key);
        add(key, userKey.pSlot, true);
    }
}

void MiddleResourcePreviewWidget::stopCurrentPreview()
{
    m_pFitTimer->stop();
    // Leaving a sub-mode is not a request to leave the preview.
    m_bStopping = true;
    if (currentIndex() == ImagePage)
        m_pImgWidget->quitPreview();
    m_bStopping = false;
    if (currentIndex() == VideoPage)
        m_pVideoWidget->stopPreview();
    else if (currentIndex() == AudioPage)
        m_pAudioWidget->stopPreview();
    m_pImgWidget->clearPreview();
    m_pVideoWidget->resetPreview();
    m_pAudioWidget->clearPreview();
    m_pPptWidget->clearPreview();
}

void MiddleResourcePreviewWidget::leavePreview()
{
    stopCurrentPreview();
    m_pImgWidget->releaseMemory();
}

void MiddleResourcePreviewWidget::slot_previewResource()
{
    stopCurrentPreview();
    const PluginInnerData *pData = PluginInnerData::instance();
    const FileInfoPtr pInfo = pData->currentFileInfo();
    const QString path = pData->currentFilePath();
    const qint64 nTypeId = pInfo ? pInfo->fileType() : 0;

    if (isVideoType(nTypeId)) {
        showResource(VideoKind, path);
    } else if (isAudioType(nTypeId)) {
        const bool bVideo = nTypeId == OggType && pInfo->hasVideo(path);
        showResource(bVideo ? VideoKind : AudioKind, path);
    } else if (isGifType(nTypeId)) {
        showImage(path, ImgPreviewWidget::OpenOwnFile);
    } else if (isPresentationType(nTypeId)) {
        showResource(PresentationKind, path);
    } else {
        showResource(isPsdType(nTypeId) ? LayeredKind : PictureKind, path);
    }
}

void MiddleResourcePreviewWidget::showResource(int nKind, const QString &path)
{
    switch (nKind) {
    case PresentationKind:
        showInRoom(PresentationPage, path);
        break;
    case AudioKind:
        showAudio(path);
        break;
    case VideoKind:
        showVideo(path);
        break;
    case LayeredKind:
        showImage(path, ImgPreviewWidget::OpenRendition);
        break;
    default: {
        // The loader reads every type that is previewable at all; of the others the host knows what it has.
        const FileInfoPtr pInfo = PluginInnerData::instance()->currentFileInfo();
        const bool bPreviewable = pInfo && isPreviewableType(pInfo->fileType());
        showImage(path, bPreviewable ? ImgPreviewWidget::OpenOwnFile : ImgPreviewWidget::OpenHostRendition);
        break;
    }
    }
}

void MiddleResourcePreviewWidget::showImage(const QString &path, int nOpenMode)
{
    const FileInfoPtr pInfo = PluginInnerData::instance()->currentFileInfo();
    const bool bOwnFile = nOpenMode == ImgPreviewWidget::OpenOwnFile || !pInfo;
    // The bar stays in sight from picture to picture, instead of going out and on again.
    if (currentIndex() == ImagePage && isVisible())
        m_pLoadingPage->setBackdrop(m_pImgWidget->toolBarPicture(), m_pImgWidget->toolBarPosition());
    slot_switchPreviewWidget(LoadingPage);
    // A page that is not shown has not been given the hub's size yet.
    m_pImgWidget->resize(size());
    m_pImgWidget->setOpenMode(nOpenMode);
    m_pImgWidget->loadImage(bOwnFile ? path : pInfo->largePreviewPath(), 0, 1, 1.0, 0);
    m_pImgWidget->setDoubleClickEnabled(true);
}

void MiddleResourcePreviewWidget::showInRoom(int nPage, const QString &path)
{
    auto *pRoom = static_cast<PreviewRoom *>(widget(nPage));
    pRoom->setDoubleClickEnabled(true);
    pRoom->showFile(path);
    slot_switchPreviewWidget(nPage);
}

void MiddleResourcePreviewWidget::showVideo(const QString &path)
{
    slot_switchPreviewWidget(VideoPage);
    m_pVideoWidget->setDoubleClickEnabled(true);
    m_pVideoWidget->setToolsVisible(m_pVideoWidget->hasPlayer());
    m_pVideoWidget->setFilePath(path, 0);
}

void MiddleResourcePreviewWidget::showAudio(const QString &path)
{
    slot_switchPreviewWidget(AudioPage);
    m_pAudioWidget->setDoubleClickEnabled(true);
    m_pAudioWidget->playAudio(path);
}

void MiddleResourcePreviewWidget::slot_switchPreviewWidget(int nPreviewResourceType)
{
    setCurrentIndex(nPreviewResourceType);
    Q_EMIT signal_forbidden_right(nPreviewResourceType == LoadingPage);
    raiseOverlays();
}

void MiddleResourcePreviewWidget::slot_fullViewBtnClicked()
{
    TsEventTrack::GetInstance()->PreviewBtnClick(QStringLiteral("隐藏/显示左右栏"));
    Q_EMIT signal_SourcePreviewFullScreen();
}

void MiddleResourcePreviewWidget::slot_returnBtnClicked()
{
    TsEventTrack::GetInstance()->PreviewBtnClick(QStringLiteral("返回"));
    exitCurrentPreview();
}

void MiddleResourcePreviewWidget::slot_exitCurPreview_Key()
{
    exitCurrentPreview();
}

void MiddleResourcePreviewWidget::slot_exitCurPreview_ByDBClicked()
{
    exitCurrentPreview();
}

bool MiddleResourcePreviewWidget::confirmNotLoading()
{
    if (!PluginInnerData::instance()->isLoading())
        return true;
    WaitNotice::show(this);
    return false;
}

void MiddleResourcePreviewWidget::exitCurrentPreview()
{
    if (!confirmNotLoading())
        return;
    PluginInnerData *pData = PluginInnerData::instance();
    if (pData->hasPendingPresentations()) {
        m_bClosePending = true;
        pData->releaseOpenRenderers();
        return;
    }
    pData->clearRenderCache();
    slot_pptCancelEnd();
}

void MiddleResourcePreviewWidget::slot_pptCancelEnd()
{
    if (currentIndex() == ImagePage) {
        m_pImgWidget->quitPreview();
        return;
    }
    leavePreview();
    Q_EMIT signal_exitCurWidget();
}

void MiddleResourcePreviewWidget::leaveByQuit()
{
    if (m_bStopping)
        return;
    leavePreview();
    Q_EMIT signal_exitCurWidget();
}

void MiddleResourcePreviewWidget::slot_UpKey()
{
    if (currentIndex() == LoadingPage)
        return;
    if (m_nMode == SpaceDialogMode)
        Q_EMIT signal_up_Key_Pressed();
    else
        goPrevious();
}

void MiddleResourcePreviewWidget::slot_DownKey()
{
    if (currentIndex() == LoadingPage)
        return;
    if (m_nMode == SpaceDialogMode)
        Q_EMIT signal_down_Key_Pressed();
    else
        goNext();
}

void MiddleResourcePreviewWidget::slot_leftKey()
{
    if (currentIndex() == LoadingPage)
        return;
    if (m_nMode == SpaceDialogMode)
        Q_EMIT signal_left_Key_Pressed();
    else
        goPrevious();
}

void MiddleResourcePreviewWidget::slot_rightKey()
{
    if (currentIndex() == LoadingPage)
        return;
    if (m_nMode == SpaceDialogMode)
        Q_EMIT signal_right_Key_Pressed();
    else
        goNext();
}

void MiddleResourcePreviewWidget::goNext()
{
    Q_EMIT signal_nextSource();
}

void MiddleResourcePreviewWidget::goPrevious()
{
    Q_EMIT signal_previousSource();
}

void MiddleResourcePreviewWidget::slot_tabKey()
{
    Q_EMIT signal_SourcePreviewFullScreen();
}

void MiddleResourcePreviewWidget::slot_spaceKey()
{
    if (m_nMode == SpaceDialogMode)
        Q_EMIT signal_exitCurWidget();
}

void MiddleResourcePreviewWidget::slot_fullPreview_key()
{
    if (currentIndex() == ImagePage)
        m_pImgWidget->slot_fullPreviewBtnClicked();
}

void MiddleResourcePreviewWidget::slot_orgPreview_key()
{
    if (currentIndex() == ImagePage)
        m_pImgWidget->slot_NormalBtnClicked();
}

void MiddleResourcePreviewWidget::slot_adaptPreview_key()
{
    if (currentIndex() == ImagePage)
        m_pImgWidget->slot_adaptWidthBtnClicked();
}

void MiddleResourcePreviewWidget::slot_zoomOut_key()
{
    if (currentIndex() == ImagePage)
        m_pImgWidget->slot_ZoomOutBtnClicked();
}

void MiddleResourcePreviewWidget::slot_zoomIn_key()
{
    if (currentIndex() == ImagePage)
        m_pImgWidget->slot_ZoomInBtnClicked();
}

void MiddleResourcePreviewWidget::slot_imgLoadEnd()
{
    if (m_nMode == DoubleClickMode)
        Q_EMIT m_pImgWidget->signal_img_preview_update();
    slot_switchPreviewWidget(ImagePage);
    m_pFitTimer->start(FitDelay);
    raiseOverlays();
}

void MiddleResourcePreviewWidget::slot_pptFrameReadEnd()
{
    slot_switchPreviewWidget(PresentationPage);
    raiseOverlays();
}

void MiddleResourcePreviewWidget::slot_pptLoadEnd(qint64 fileId, QString path, bool bOk)
{
    Q_UNUSED(bOk)
    PluginInnerData *pData = PluginInnerData::instance();
    pData->endPendingPresentation(fileId);
    if (m_bClosePending) {
        m_bClosePending = false;
        pData->clearRenderCache();
        if (m_nMode == SpaceDialogMode)
            Q_EMIT signal_close_space_dialog();
        else
            slot_pptCancelEnd();
        return;
    }
    if (m_bReloadPending) {
        m_bReloadPending = false;
        pData->clearRenderCache();
        slot_previewResource();
    } else if (fileId != pData->currentFileId()) {
        pData->dropRenderEntry(fileId);
    } else {
        showInRoom(PresentationPage, path);
    }
}

void MiddleResourcePreviewWidget::slot_side_triggered(QWidget *w, bool force)
{
    const PluginInnerData *pData = PluginInnerData::instance();
    // The two conditions are no mirror images of each other, and are not meant to be.
    if (w == m_pLeftTrigger && (force || !pData->isLeftColumnShown()))
        Q_EMIT signal_start_left_side_timer();
    else if (w == m_pRightTrigger && (force || !pData->isRightPanelHidden()))
        Q_EMIT signal_start_right_side_timer();
}

void MiddleResourcePreviewWidget::resizeEvent(QResizeEvent *pEvent)
{
    QStackedWidget::resizeEvent(pEvent);
    raiseOverlays();
}

void MiddleResourcePreviewWidget::raiseOverlays()
{
    if (m_pTitleBar == nullptr) // a resize while the pages are being made
        return;
    m_pTitleBar->relayout();
    m_pLeftTrigger->raise();
    m_pRightTrigger->raise();
    // A page that is turned to comes to the front, and would hide a notice that is still being read.
    const auto notices = findChildren<CNotificationFloatingWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (CNotificationFloatingWidget *pNotice : notices)
        pNotice->raise();
}
