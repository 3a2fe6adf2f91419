// Loading and showing of pages: from the hub's request to the item in the scene, and their sharper renditions.
#include "common/CResourceItem.h"
#include "common/PictureLevels.h"
#include "common/PictureMemory.h"
#include "common/PlaceholderPainter.h"
#include "common/WaitNotice.h"
#include "common/ZoomModel.h"
#include "image/PictureZoom.h"
#include "image/PreviewResourceThread.h"
#include "image/TSDBGraphicsScene.h"
#include "image/TSLargePreviewView.h"
#include "media/PPtPreviewToolBar.h"
#include "media/PPtPreviewWidget.h"
#include "plugin/PluginInnerData.h"

#include <QPointer>
#include <QThreadPool>

#include <cmath>
#include <utility>

namespace {

constexpr int SharpenPriority = -1;
// A page of 13.33 by 7.5 inches at 800 % has 59 million pixels of four bytes each.
constexpr double MostPixels = 64.0 * 1000 * 1000;
// A page whose own size is beyond this is not rendered so large only to be shrunk again.
constexpr double LargeOwnPixels = 16.0 * 1000 * 1000;

double pixelCount(const QSize &size)
{
    return double(size.width()) * size.height();
}

/** The page that so many pixels stand for: the one expected, as a rule, give or take a rounded side. */
QSize pageSizeOf(const QSize &pixels, const QSize &expected)
{
    if (expected.isEmpty())
        return pixels;
    const QSize fitted = pixels.scaled(expected, Qt::KeepAspectRatio);
    const QSize difference = expected - fitted;
    return difference.width() <= 1 && difference.height() <= 1 ? expected : fitted;
}

} // namespace

void PPtPreviewWidget::createItem()
{
    m_pPageItem = new CResourceItem(nullptr, QSize());
    m_pPageItem->hide();
    m_scene->addItem(m_pPageItem);
    m_pZoom->setItem(m_pPageItem);
}

void PPtPreviewWidget::loadPresentation(const QString &path)
{
    m_pZoom->finish();
    if (m_pPageItem == nullptr)
        createItem();
    m_pPageItem->hide();
    dropPicture();
    m_bPageShown = false;
    m_bFailureTold = false;
    m_pageSize = QSize();
    m_pToolBar->setPagesVisible(false);
    m_filePath = path;
    layOutView();
    m_view->move(0, 0);
    m_nPageIndex = 0;
    m_nPageCount = 0;
    m_bLoaded = true;
    Q_EMIT signal_start_load_ppt_frame();
    const PluginInnerData *pData = PluginInnerData::instance();
    m_nPageCount = pData->presentationPageCount(pData->currentFileId());
    startPageLoad();
}

void PPtPreviewWidget::clearPreview()
{
    m_pZoom->setItem(nullptr);
    for (const PageLoad &load : qAsConst(m_loads))
        load.pLoad->setUnwanted();
    dropPicture();
    m_filePath.clear();
    m_bLoaded = false;
    m_bPageShown = false;
    m_nPageIndex = 0;
    m_nPageCount = 0;
    m_pToolBar->setPagesVisible(false);
    if (m_pPageItem == nullptr)
        return;
    m_scene->forgetPress();
    m_scene->removeItem(m_pPageItem);
    delete m_pPageItem;
    m_pPageItem = nullptr;
    m_scene->update();
}

void PPtPreviewWidget::dropPicture()
{
    cancelSharpening();
    m_bPlaceholder = false;
    if (m_pPageItem != nullptr)
        m_pPageItem->setPicture(QPixmap(), {}, 1.0, size(), QString(), 1);
    if (m_page.isNull())
        return;
    m_levels.append(std::exchange(m_page, QImage()));
    PictureMemory::disposeInWorker(std::exchange(m_levels, {}));
}

void PPtPreviewWidget::turnPage(int nStep)
{
    m_nPageIndex += nStep;
    Q_EMIT signal_start_load_ppt_frame();
    startPageLoad();
}

void PPtPreviewWidget::startPageLoad(bool bOwnSize)
{
    PluginInnerData *pData = PluginInnerData::instance();
    const qint64 nFileId = pData->currentFileId();
    // The page that is turned to meanwhile is loaded when the one before it has come.
    if (pData->isLoadingFor(nFileId, this))
        return;
    pData->beginLoading(nFileId, this);
    cancelSharpening();
    PageLoad load{m_nPageIndex, {}, QSharedPointer<PictureLoad>::create()};
    QSize pixels;
    if (!bOwnSize && !m_pageSize.isEmpty()) {
        // The pages of a document are alike: the next one is asked for as it will be shown.
        const double fFit = ZoomModel::fitToWindowTarget(size(), m_pageSize).value_or(1.0);
        if (fFit * devicePixelRatioF() > 1.0 || pixelCount(m_pageSize) > LargeOwnPixels) {
            pixels = pixelsFor(fFit);
            load.pageSize = m_pageSize;
        }
    }
    m_loads.insert(nFileId, load);
    PreviewResourceThread *pTask = createTask(load, pixels);
    connect(pTask, &PreviewResourceThread::signal_pptFrameLoadEnd, this,
            m_bPageShown ? &PPtPreviewWidget::slot_switchFrameReadEnd : &PPtPreviewWidget::slot_pptFrameReadEnd);
    QThreadPool::globalInstance()->start(pTask, 0);
}

PreviewResourceThread *PPtPreviewWidget::createTask(const PageLoad &load, const QSize &pixelSize)
{
    auto *pTask = new PreviewResourceThread(PluginInnerData::instance()->currentFileId());
    pTask->setMode(RenderPresentationPageMode);
    pTask->setFrameIndex(load.nPage);
    pTask->setFrameSize(pixelSize);
    pTask->setLoad(load.pLoad);
    return pTask;
}

void PPtPreviewWidget::slot_pptFrameReadEnd(qint64 fileId, QPixmap frame)
{
    takeFrame(fileId, frame, true);
}

void PPtPreviewWidget::slot_switchFrameReadEnd(qint64 fileId, QPixmap frame)
{
    takeFrame(fileId, frame, false);
}

void PPtPreviewWidget::takeFrame(qint64 fileId, const QPixmap &frame, bool bFirst)
{
    PluginInnerData *pData = PluginInnerData::instance();
    pData->endLoading(fileId, this);
    PageLoad load = m_loads.take(fileId);
    if (fileId != pData->currentFileId())
        return;
    const bool bAskedFor = bool(load.pLoad);
    if (bAskedFor && !m_bLoaded) // the preview was stopped meanwhile
        return;
    if (!bAskedFor)
        load.nPage = m_nPageIndex;
    const bool bOtherPage = load.nPage != m_nPageIndex;
    if (bAskedFor && (load.pLoad->isUnwanted() || (bOtherPage && !m_bPageShown))) {
        // Of an earlier showing of the file, or of a page that was passed by before any was seen.
        startPageLoad();
        return;
    }
    if (!frame.isNull() && pageSizeOf(frame.size(), load.pageSize) != load.pageSize && !load.pageSize.isEmpty()) {
        // A page unlike the one before: how large it is at 100 % is not known yet.
        startPageLoad(true);
        return;
    }
    if (m_pPageItem == nullptr)
        createItem();
    if (!frame.isNull())
        showPage(frame, load);
    else if (bFirst || !m_bPageShown)
        showPlaceholder();
    else
        tellFailure();
    m_bPageShown = true;
    showFrame();
    m_pToolBar->updateToolTips();
    const QPointer<PPtPreviewWidget> pThis(this);
    Q_EMIT signal_ppt_frame_read_end();
    // Whoever hears of it may leave the file, or the preview.
    if (!pThis || fileId != pData->currentFileId() || !m_bPageShown)
        return;
    if (bOtherPage)
        turnPage(0);
    else
        sharpenPage();
}

void PPtPreviewWidget::showPage(const QPixmap &frame, const PageLoad &load)
{
    m_pZoom->finish();
    dropPicture();
    layOutView();
    m_page = frame.toImage();
    m_levels = load.pLoad ? load.pLoad->levels : QVector<QImage>();
    m_nShownPage = load.nPage;
    m_pageSize = pageSizeOf(frame.size(), load.pageSize);
    m_askedPixels = frame.size();
    const double fRatio = double(frame.width()) / m_pageSize.width();
    m_pZoom->noteScale(m_pPageItem->setPicture(frame, m_levels, fRatio, size(), m_filePath, 1));
    m_pPageItem->setDrawMode(CResourceItem::DrawPage);
}

void PPtPreviewWidget::showPlaceholder()
{
    m_pZoom->finish();
    dropPicture();
    layOutView();
    m_bPlaceholder = true;
    m_pageSize = QSize();
    updatePlaceholder();
}

void PPtPreviewWidget::updatePlaceholder()
{
    if (!m_bPlaceholder || m_pPageItem == nullptr)
        return;
    const QString path = m_filePath.isEmpty() ? PluginInnerData::instance()->currentFilePath() : m_filePath;
    const QImage picture = PictureLevels::toScreenFormat(PlaceholderPainter::paintSuffix(path, devicePixelRatioF()));
    const QPixmap pixmap = QPixmap::fromImage(picture);
    const double fScale = m_pPageItem->setPicture(pixmap, {}, devicePixelRatioF(), size(), path, 1);
    m_pZoom->noteScale(fScale);
    m_pPageItem->setDrawMode(CResourceItem::DrawStill);
    // In the colours of another theme, while it is shown.
    if (m_bPageShown)
        showFrame();
}

void PPtPreviewWidget::tellFailure()
{
    // The page before stays in sight, so it has to be said; once for each file.
    if (!m_bFailureTold)
        WaitNotice::showWarning(this, tr("This page cannot be shown"));
    m_bFailureTold = true;
}

QImage PPtPreviewWidget::coverPicture() const
{
    // A page that was zoomed far is made of more pixels than a preview picture needs.
    QImage picture = m_page;
    for (const QImage &level : m_levels) {
        if (level.width() >= m_pageSize.width())
            picture = level;
    }
    return picture;
}

QSize PPtPreviewWidget::pixelsFor(double fScale) const
{
    double fRatio = fScale * devicePixelRatioF();
    const double fPixels = pixelCount(m_pageSize) * fRatio * fRatio;
    if (fPixels > MostPixels)
        fRatio *= std::sqrt(MostPixels / fPixels);
    return {int(std::ceil(m_pageSize.width() * fRatio)), int(std::ceil(m_pageSize.height() * fRatio))};
}

void PPtPreviewWidget::sharpenPage()
{
    if (m_page.isNull() || m_pSharperLoad || m_pZoom->isAnimating())
        return;
    const QSize pixels = pixelsFor(m_pZoom->scale());
    // A renderer that makes less of it than it was asked for is not asked again.
    if (pixels.width() <= m_askedPixels.width() + 1)
        return;
    m_askedPixels = pixels;
    m_pSharperLoad = QSharedPointer<PictureLoad>::create();
    const PageLoad load{m_nShownPage, m_pageSize, m_pSharperLoad};
    PreviewResourceThread *pTask = createTask(load, pixels);
    connect(pTask, &PreviewResourceThread::signal_pptFrameLoadEnd, this,
            [this, load](qint64, const QPixmap &frame) { takeSharperFrame(load, frame); });
    // Leaving is not refused for it, and pages that are turned to go first.
    QThreadPool::globalInstance()->start(pTask, SharpenPriority);
}

void PPtPreviewWidget::takeSharperFrame(const PageLoad &load, const QPixmap &frame)
{
    if (load.pLoad != m_pSharperLoad) // of a page that has been turned since
        return;
    m_pSharperLoad.reset();
    // A picture with other sides is another page's.
    if (frame.width() > m_page.width() && pageSizeOf(frame.size(), m_pageSize) == m_pageSize) {
        m_pPageItem->replacePixels(frame, load.pLoad->levels);
        m_levels.append(std::exchange(m_page, frame.toImage()));
        PictureMemory::disposeInWorker(std::exchange(m_levels, load.pLoad->levels));
    }
    // The zoom may have gone on meanwhile.
    m_sharpenTimer.start();
}

void PPtPreviewWidget::cancelSharpening()
{
    m_sharpenTimer.stop();
    if (m_pSharperLoad)
        m_pSharperLoad->setUnwanted();
    m_pSharperLoad.reset();
}
