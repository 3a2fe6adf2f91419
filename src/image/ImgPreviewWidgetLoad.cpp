// Loading and showing of pictures: from the hub's request to the item in the scene.
#include "common/CResourceItem.h"
#include "common/PictureLevels.h"
#include "common/PlaceholderPainter.h"
#include "common/WaitNotice.h"
#include "image/AnimationFileTask.h"
#include "image/ImgPreviewToolBar.h"
#include "image/ImgPreviewWidget.h"
#include "image/OriginalSize.h"
#include "image/PictureNotes.h"
#include "image/PictureZoom.h"
#include "image/PreviewResourceThread.h"
#include "image/TSDBGraphicsScene.h"
#include "image/TSLargePreviewView.h"
#include "interfaces/data/IFileInfo.h"
#include "interfaces/services/ITSCacheManager.h"
#include "plugin/FileTypeTable.h"
#include "plugin/PluginInnerData.h"

#include <QDebug>
#include <QThreadPool>

#include <utility>

namespace {

constexpr int AnimationPriority = -1;
constexpr int TrimPriority = -2;

} // namespace

void ImgPreviewWidget::loadImage(const QString &path, int nFirstFrame, int nFrameCount, double fLoadFactor, int nFlags)
{
    Q_UNUSED(nFirstFrame)
    Q_UNUSED(nFrameCount)
    Q_UNUSED(nFlags)
    if (m_imageItem == nullptr) {
        m_imageItem = new CResourceItem(nullptr, QSize());
        m_scene->addItem(m_imageItem);
    }
    cancelAnimationTask();
    m_pZoom->finish();
    m_pZoom->setItem(m_imageItem);
    m_imageItem->hide();
    m_filePath = path;
    m_loadFactor = int(fLoadFactor);
    m_viewSize = size();
    m_view->resize(m_viewSize);
    m_scene->setSceneRect(-width() / 2.0, -height() / 2.0, width(), height());
    m_view->move(0, 0);

    const PluginInnerData *pData = PluginInnerData::instance();
    const FileInfoPtr pInfo = pData->currentFileInfo();
    m_pToolBar->setReduced(!pInfo || !isPreviewableType(pInfo->fileType()));
    m_pToolBar->updateToolTips();
    const qint64 nFileId = pData->currentFileId();
    abandonLoads();
    if (const QSharedPointer<PictureLoad> pLoad = m_loads.value(nFileId))
        pLoad->setWanted();
    m_pNotes->setPicture(m_imageItem, nFileId);
    switch (m_openMode) {
    case OpenOwnFile:
    case OpenRendition:
        // The result of a load that is under way comes to this widget as well.
        if (!pData->isLoadingFor(nFileId, this))
            startLoader(nFileId);
        break;
    case OpenHostRendition:
        loadFromHost(nFileId);
        break;
    default:
        m_imageItem->show();
        Q_EMIT signal_load_img_end();
        break;
    }
}

void ImgPreviewWidget::startLoader(qint64 nFileId)
{
    PluginInnerData *pData = PluginInnerData::instance();
    const FileInfoPtr pInfo = pData->currentFileInfo();
    pData->beginLoading(nFileId, this);
    auto *pTask = new PreviewResourceThread(nFileId);
    const auto pLoad = QSharedPointer<PictureLoad>::create();
    m_loads.insert(nFileId, pLoad);
    pTask->setLoad(pLoad);
    connect(pTask, &PreviewResourceThread::signal_imageReadEnd, this, &ImgPreviewWidget::slot_imgReadEnd);
    pTask->setMode(LoadImageMode);
    if (pInfo)
        pTask->setPaths(pInfo->filePath(), pInfo->largePreviewPath(), pInfo->thumbnailPath());
    else
        pTask->setPaths(m_filePath, QString(), QString());
    QThreadPool::globalInstance()->start(pTask, 0);
}

void ImgPreviewWidget::abandonLoads()
{
    // Stepping quickly leaves a trail of loads behind, none of which is to hold up the picture that is looked at.
    for (const QSharedPointer<PictureLoad> &pLoad : qAsConst(m_loads))
        pLoad->setUnwanted();
}

void ImgPreviewWidget::loadFromHost(qint64 nFileId)
{
    PluginInnerData *pData = PluginInnerData::instance();
    const FileInfoPtr pInfo = pData->currentFileInfo();
    // Whether the rendition's file exists is for the worker to find out: this thread touches no disk.
    if (pInfo && pInfo->needsLoader() && !pInfo->largePreviewPath().isEmpty()) {
        if (!pData->isLoadingFor(nFileId, this))
            startLoader(nFileId);
        return;
    }
    const QImage picture = pictureOfHost();
    if (!picture.isNull())
        ShowImageUnit(picture, {}, OriginalSize::toldBy(picture));
    else if (!pData->isLoadingFor(nFileId, this))
        startLoader(nFileId);
}

QImage ImgPreviewWidget::pictureOfHost() const
{
    PluginInnerData *pData = PluginInnerData::instance();
    const FileInfoPtr pInfo = pData->currentFileInfo();
    const QSharedPointer<ITSCacheManager> pCache = pData->cacheManager();
    return pInfo && pCache ? pCache->largePicture(pInfo) : QImage();
}

void ImgPreviewWidget::slot_imgReadEnd(qint64 fileId, QImage img, QString loadPath, bool bSrcImg)
{
    PluginInnerData *pData = PluginInnerData::instance();
    pData->endLoading(fileId, this);
    const QSharedPointer<PictureLoad> pLoad = m_loads.take(fileId);
    if (fileId != pData->currentFileId())
        return;
    if (pLoad && pLoad->isGivenUp()) {
        // The user came back to the file when its load had stopped already.
        if (m_imageItem != nullptr)
            startLoader(fileId);
        return;
    }
    m_filePath = loadPath.isEmpty() ? pData->currentFilePath() : loadPath;
    if (img.isNull()) {
        // The rendition that the record tells of may be gone while the host still holds its picture.
        const QImage picture = m_openMode == OpenHostRendition ? pictureOfHost() : QImage();
        if (picture.isNull())
            showPlaceholder();
        else
            ShowImageUnit(picture, {}, OriginalSize::toldBy(picture));
        return;
    }
    if (!bSrcImg)
        WaitNotice::showWarning(this, tr("Image failed to load, showing thumbnails"));
    ShowImageUnit(img, pLoad ? pLoad->levels : QVector<QImage>(), pLoad ? pLoad->originalSize : QSize());
    if (m_openMode == OpenOwnFile && bSrcImg)
        startAnimationTask(fileId, loadPath);
}

void ImgPreviewWidget::showPlaceholder()
{
    ShowImageUnit(PictureLevels::toScreenFormat(
        PlaceholderPainter::paintSuffix(PluginInnerData::instance()->currentFilePath(), devicePixelRatioF())));
    m_pNotes->setPlaceable(false);
}

void ImgPreviewWidget::ShowImageUnit(const QImage &image, const QVector<QImage> &levels, const QSize &originalSize)
{
    if (image.format() == QImage::Format_Invalid) {
        qDebug("ImgPreviewWidget::ShowImageUnit ===> format_invalid!");
        return;
    }
    if (m_imageItem == nullptr) {
        // The preview was stopped meanwhile.
        qDebug("ImgPreviewWidget::ShowImageUnit ===> m_pImage is nullptr!");
        return;
    }
    disposeOfPictures();
    m_trimTimer.start();
    m_image = image;
    m_levels = levels;
    const QPixmap pixmap = QPixmap::fromImage(m_image, Qt::NoOpaqueDetection);
    m_imageItem->setDrawMode(CResourceItem::DrawStill);
    m_pZoom->noteScale(
        m_imageItem->setPicture(pixmap, levels, devicePixelRatioF(), m_viewSize, m_filePath, m_loadFactor));
    m_imageItem->setOriginalSize(originalSize);
    m_pNotes->setPlaceable(true);
    Q_EMIT signal_load_img_end();
}

void ImgPreviewWidget::disposeOfPictures()
{
    if (m_image.isNull())
        return;
    m_levels.append(std::move(m_image));
    m_image = QImage();
    PictureMemory::disposeInWorker(std::move(m_levels));
    m_levels = {};
}

void ImgPreviewWidget::releaseMemory()
{
    disposeOfPictures();
    trimMemory();
}

void ImgPreviewWidget::trimMemory()
{
    class Trimmer : public QRunnable {
    public:
        void run() override { PluginInnerData::instance()->pictureMemory()->trim(); }
    };
    m_trimTimer.stop();
    // Behind the disposal of the last picture, whose memory would have served the next one.
    QThreadPool::globalInstance()->start(new Trimmer, TrimPriority);
}

void ImgPreviewWidget::cancelAnimationTask()
{
    if (m_pAnimationCancel)
        m_pAnimationCancel->storeRelaxed(1);
    m_pAnimationCancel.reset();
}

void ImgPreviewWidget::startAnimationTask(qint64 nFileId, const QString &path)
{
    const FileInfoPtr pInfo = PluginInnerData::instance()->currentFileInfo();
    if (!pInfo || !AnimationFileTask::canBeAnimated(FileTypeTable().value(pInfo->fileType()).extension))
        return;
    cancelAnimationTask();
    m_pAnimationCancel = QSharedPointer<QAtomicInt>::create(0);
    auto *pTask = new AnimationFileTask(nFileId, path, m_pAnimationCancel);
    connect(pTask, &AnimationFileTask::signal_animationRead, this,
            [this, pCancel = m_pAnimationCancel](qint64, const QString &, const QByteArray &fileData) {
                // Another picture cancels the task of the one before, also when that one had ended already.
                if (pCancel->loadRelaxed() == 0 && m_imageItem != nullptr)
                    m_imageItem->playAnimation(fileData);
            });
    QThreadPool::globalInstance()->start(pTask, AnimationPriority);
}
