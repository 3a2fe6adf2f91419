// Loading and showing of pictures: from the hub's request to the item in the scene.
#include "common/CResourceItem.h"
#include "common/PictureLevels.h"
#include "common/PlaceholderPainter.h"
#include "common/WaitNotice.h"
#include "image/AnimationFileTask.h"
#include "image/ImgPreviewToolBar.h"
#include "image/ImgPreviewWidget.h"
#include "image/PictureZoom.h"
#include "image/PreviewResourceThread.h"
#include "image/TSDBGraphicsScene.h"
#include "image/TSLargePreviewView.h"
#include "interfaces/data/IFileInfo.h"
#include "interfaces/services/ITSCacheManager.h"
#include "plugin/FileTypeTable.h"
#include "plugin/PluginInnerData.h"

#include <QDebug>
#include <QFileInfo>
#include <QThreadPool>

void ImgPreviewWidget::loadImage(const QString &path, int nFirstFrame, int nFrameCount, double fLoadFactor, int nFlags)
{
    Q_UNUSED(nFirstFrame)
    Q_UNUSED(nFrameCount)
    Q_UNUSED(nFlags)
    if (m_imageItem == nullptr) {
        m_imageItem = new CResourceItem(nullptr, QSize());
        m_scene->addItem(m_imageItem);
    }
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
    m_pToolBar->setNoteCount(pData->notes().size());

    const qint64 nFileId = pData->currentFileId();
    switch (m_openMode) {
    case OpenOwnFile:
    case OpenRendition:
        if (!pData->isLoading(nFileId))
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
    connect(pTask, &PreviewResourceThread::signal_imageReadEnd, this, &ImgPreviewWidget::slot_imgReadEnd);
    pTask->setMode(LoadImageMode);
    if (pInfo)
        pTask->setPaths(pInfo->filePath(), pInfo->largePreviewPath(), pInfo->thumbnailPath());
    else
        pTask->setPaths(m_filePath, QString(), QString());
    QThreadPool::globalInstance()->start(pTask, 0);
}

void ImgPreviewWidget::loadFromHost(qint64 nFileId)
{
    PluginInnerData *pData = PluginInnerData::instance();
    const FileInfoPtr pInfo = pData->currentFileInfo();
    if (pInfo && pInfo->needsLoader() && QFileInfo::exists(pInfo->largePreviewPath())) {
        if (!pData->isLoading(nFileId))
            startLoader(nFileId);
        return;
    }
    const QSharedPointer<ITSCacheManager> pCache = pData->cacheManager();
    const QImage picture = pInfo && pCache ? pCache->largePicture(pInfo) : QImage();
    if (picture.isNull())
        showPlaceholder();
    else
        ShowImageUnit(picture);
}

void ImgPreviewWidget::slot_imgReadEnd(qint64 fileId, QImage img, QString loadPath, bool bSrcImg)
{
    PluginInnerData *pData = PluginInnerData::instance();
    pData->endLoading(fileId);
    if (fileId != pData->currentFileId()) {
        pData->takePictureLevels(img.cacheKey());
        return;
    }
    m_filePath = loadPath.isEmpty() ? pData->currentFilePath() : loadPath;
    if (img.isNull()) {
        showPlaceholder();
        return;
    }
    if (!bSrcImg)
        WaitNotice::showWarning(this, tr("Image failed to load, showing thumbnails"));
    ShowImageUnit(img);
    if (m_openMode == OpenOwnFile && bSrcImg)
        startAnimationTask(fileId, loadPath);
}

void ImgPreviewWidget::showPlaceholder()
{
    ShowImageUnit(
        PictureLevels::toScreenFormat(PlaceholderPainter::paintSuffix(PluginInnerData::instance()->currentFilePath())));
}

void ImgPreviewWidget::ShowImageUnit(const QImage &image)
{
    if (image.format() == QImage::Format_Invalid) {
        qDebug("ImgPreviewWidget::ShowImageUnit ===> format_invalid!");
        return;
    }
    m_image = image;
    const QPixmap pixmap = QPixmap::fromImage(m_image, Qt::NoOpaqueDetection);
    if (m_imageItem == nullptr) {
        qDebug("ImgPreviewWidget::ShowImageUnit ===> m_pImage is nullptr!");
    } else {
        m_imageItem->setDrawMode(CResourceItem::DrawStill);
        const QVector<QImage> levels = PluginInnerData::instance()->takePictureLevels(image.cacheKey());
        m_pZoom->noteScale(m_imageItem->setPicture(pixmap, levels, m_viewSize, m_filePath, m_loadFactor));
    }
    Q_EMIT signal_load_img_end();
}

void ImgPreviewWidget::startAnimationTask(qint64 nFileId, const QString &path)
{
    auto *pTask = new AnimationFileTask(nFileId, path);
    connect(pTask, &AnimationFileTask::signal_animationRead, this,
            [this](qint64 nReadId, const QString &readPath, const QByteArray &fileData) {
                const bool bStillShown = nReadId == PluginInnerData::instance()->currentFileId() &&
                                         m_imageItem != nullptr && m_imageItem->filePath() == readPath;
                if (bStillShown)
                    m_imageItem->playAnimation(fileData);
            });
    QThreadPool::globalInstance()->start(pTask, 0);
}
