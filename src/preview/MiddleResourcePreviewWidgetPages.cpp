// The hub's pages: which one shows the current file, how it is left, and what presentations need beside it.
#include "common/WaitNotice.h"
#include "image/ImgPreviewWidget.h"
#include "image/PreviewResourceThread.h"
#include "media/AudioPreviewWidget.h"
#include "media/PPtPreviewWidget.h"
#include "media/VideoPreviewWidget.h"
#include "plugin/FileTypeTable.h"
#include "plugin/PluginInnerData.h"
#include "preview/HubLoadingPage.h"
#include "preview/HubOpenings.h"
#include "preview/MiddleResourcePreviewWidget.h"

#include <QThreadPool>
#include <QTimer>

namespace {

constexpr qint64 OggType = 620;
constexpr int FitDelay = 5;

} // namespace

void MiddleResourcePreviewWidget::slot_previewResource()
{
    stopCurrentPreview();
    m_bReloadPending = false;
    const PluginInnerData *pData = PluginInnerData::instance();
    // Documents that were passed by are not opened for nobody.
    m_pOpenings->cancelOthers(pData->currentFileId());
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
        showPresentation(path);
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
        m_pLoadingPage->setBackdrop(m_pImgWidget->toolBar());
    slot_switchPreviewWidget(LoadingPage);
    // A page that is not shown has not been given the hub's size yet.
    m_pImgWidget->resize(size());
    m_pImgWidget->setOpenMode(nOpenMode);
    m_pImgWidget->loadImage(bOwnFile ? path : pInfo->largePreviewPath(), 0, 1, 1.0, 0);
    m_pImgWidget->setDoubleClickEnabled(true);
}

void MiddleResourcePreviewWidget::showPresentation(const QString &path)
{
    if (currentIndex() == PresentationPage && isVisible())
        m_pLoadingPage->setBackdrop(m_pPptWidget->toolBar());
    slot_switchPreviewWidget(LoadingPage);
    // A page that is not shown has not been given the hub's size yet.
    m_pPptWidget->resize(size());
    m_pPptWidget->setDoubleClickEnabled(true);
    const qint64 nFileId = PluginInnerData::instance()->currentFileId();
    if (m_pOpenings->isOpening(nFileId)) {
        // Its end shows it; where it was given up when the file was left, it begins anew then.
        m_bReloadPending = m_pOpenings->isCancelled(nFileId);
        return;
    }
    PreviewResourceThread *pTask = m_pOpenings->begin(nFileId, path);
    connect(pTask, &PreviewResourceThread::signal_pptLoadEnd, this, &MiddleResourcePreviewWidget::slot_pptLoadEnd);
    QThreadPool::globalInstance()->start(pTask, 0);
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

void MiddleResourcePreviewWidget::stopCurrentPreview()
{
    m_pFitTimer->stop();
    m_pPageTimer->stop();
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
    m_bReloadPending = false;
    m_pOpenings->closeAll();
    PluginInnerData::instance()->clearRenderCache();
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
        setClosePending(true);
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

void MiddleResourcePreviewWidget::slot_imgLoadEnd()
{
    if (m_nMode == DoubleClickMode)
        Q_EMIT m_pImgWidget->signal_img_preview_update();
    slot_switchPreviewWidget(ImagePage);
    m_pFitTimer->start(FitDelay);
    raiseOverlays();
}

void MiddleResourcePreviewWidget::connectPresentations()
{
    using Hub = MiddleResourcePreviewWidget;
    connect(m_pPptWidget, &PPtPreviewWidget::signal_ppt_frame_read_end, this, &Hub::slot_pptFrameReadEnd);
    // The page before stays in sight until the next one has come, unless that takes long.
    connect(m_pPptWidget, &PPtPreviewWidget::signal_start_load_ppt_frame, this, [this] {
        if (!m_pPageTimer->isActive())
            m_pPageTimer->start();
    });
    connect(m_pPageTimer, &QTimer::timeout, this, [this] {
        const PluginInnerData *pData = PluginInnerData::instance();
        if (currentIndex() != PresentationPage || !pData->isLoadingFor(pData->currentFileId(), m_pPptWidget))
            return;
        m_pLoadingPage->setBackdrop(m_pPptWidget);
        slot_switchPreviewWidget(LoadingPage);
    });
    connect(m_pCloseTimer, &QTimer::timeout, this, &Hub::closeWhenOpened);
    m_pPptWidget->setCoverChangedHook([this] { Q_EMIT siganl_updateLeftList(); });
}

void MiddleResourcePreviewWidget::setClosePending(bool bPending)
{
    m_bClosePending = bPending;
    if (!bPending) {
        m_pCloseTimer->stop();
        return;
    }
    m_pOpenings->cancelAll();
    PluginInnerData::instance()->releaseOpenRenderers();
    m_pCloseTimer->start();
}

/** What is awaited may belong to a surface that has gone, whose end nobody tells. */
void MiddleResourcePreviewWidget::closeWhenOpened()
{
    PluginInnerData *pData = PluginInnerData::instance();
    if (pData->hasPendingPresentations())
        pData->releaseOpenRenderers();
    else
        finishClosing();
}

void MiddleResourcePreviewWidget::finishClosing()
{
    setClosePending(false);
    // Whatever was begun since leaving was asked for is not opened for nobody.
    m_pOpenings->closeAll();
    PluginInnerData::instance()->clearRenderCache();
    if (m_nMode == SpaceDialogMode)
        Q_EMIT signal_close_space_dialog();
    else
        slot_pptCancelEnd();
}

void MiddleResourcePreviewWidget::slot_pptFrameReadEnd()
{
    m_pPageTimer->stop();
    slot_switchPreviewWidget(PresentationPage);
    m_pPptWidget->showFrame();
    raiseOverlays();
}

void MiddleResourcePreviewWidget::slot_pptLoadEnd(qint64 fileId, QString path, bool bOk)
{
    Q_UNUSED(bOk) // a document that cannot be opened has no page, and the page says so
    PluginInnerData *pData = PluginInnerData::instance();
    pData->endPendingPresentation(fileId);
    const bool bWanted = m_pOpenings->end(fileId);
    if (!bWanted)
        pData->dropRenderEntry(fileId); // opened all the same, perhaps
    if (m_bClosePending) {
        finishClosing();
    } else if (m_bReloadPending) {
        m_bReloadPending = false;
        pData->clearRenderCache();
        slot_previewResource();
    } else if (fileId != pData->currentFileId()) {
        pData->dropRenderEntry(fileId);
    } else if (bWanted) {
        slot_switchPreviewWidget(PresentationPage);
        m_pPptWidget->loadPresentation(path);
    }
}
