#include "preview/PreviewLeftWinItemDelegate.h"

#include "interfaces/services/ITSCacheManager.h"
#include "plugin/PluginInnerData.h"
#include "preview/PreviewLeftWin.h"
#include "preview/PreviewLeftWinModel.h"
#include "preview/StripBadges.h"
#include "theme/TSSkinSetting.h"

#include <QPainter>

namespace {

constexpr int ItemHeight = 96;
constexpr int LargeBox = 96;
constexpr int SmallBox = 74;
constexpr int FrameWidth = 2;
constexpr double FrameRadius = 6.0;
constexpr double UnavailableOpacity = 0.3;
constexpr int BackedKind = 3;
constexpr double BackingRadius = 4.0;
const QColor BackingColor(162, 171, 195);

QRect centredBox(const QRect &rect, int nSide)
{
    return {rect.x() + (rect.width() - nSide) / 2, rect.y() + (rect.height() - nSide) / 2, nSide, nSide};
}

/** The largest part of the box that has the picture's shape, on whole pixels so that the picture stays sharp. */
QRect fitted(const QRect &box, const QSize &picture)
{
    const QSize size = picture.scaled(box.size(), Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    return {QPoint(box.x() + (box.width() - size.width()) / 2, box.y() + (box.height() - size.height()) / 2), size};
}

void drawThumbnail(QPainter *pPainter, const QRect &box, const QPixmap &pixmap, bool bBacked)
{
    if (bBacked) {
        pPainter->setBrush(BackingColor);
        pPainter->drawRoundedRect(box, BackingRadius, BackingRadius);
    }
    if (!pixmap.isNull())
        pPainter->drawPixmap(fitted(box, pixmap.size()), pixmap);
}

} // namespace

PreviewLeftWinItemDelegate::PreviewLeftWinItemDelegate(PreviewLeftWin *pView)
    : QStyledItemDelegate(pView)
    , m_pView(pView)
    , m_pCacheManager(PluginInnerData::instance()->cacheManager())
{
}

QSize PreviewLeftWinItemDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    Q_UNUSED(option)
    Q_UNUSED(index)
    return {0, ItemHeight};
}

QRect PreviewLeftWinItemDelegate::boxOf(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    // While the mouse rests on another item, the selected one is small.
    const QModelIndex hovered = m_pView->hoveredIndex();
    const bool bLarge = hovered.isValid() ? hovered == index : option.state.testFlag(QStyle::State_Selected);
    return centredBox(option.rect, bLarge ? LargeBox : SmallBox);
}

void PreviewLeftWinItemDelegate::paint(QPainter *pPainter, const QStyleOptionViewItem &option,
                                       const QModelIndex &index) const
{
    const auto pInfo = index.data(PreviewLeftWinModel::FileInfoRole).value<FileInfoPtr>();
    if (!pInfo)
        return;
    pPainter->save();
    pPainter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const QRect box = boxOf(option, index);
    if (option.state.testFlag(QStyle::State_Selected)) {
        pPainter->setPen(QPen(TSSkinSetting::GetInstance()->GetCommonColor(0), FrameWidth));
        pPainter->setBrush(Qt::NoBrush);
        pPainter->drawRoundedRect(box.adjusted(-1, -1, 1, 1), FrameRadius, FrameRadius);
    }
    pPainter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    pPainter->setPen(Qt::NoPen);
    pPainter->setBrush(Qt::NoBrush);
    pPainter->setOpacity(pInfo->isUnavailable() ? UnavailableOpacity : 1.0);
    paintPicture(pPainter, option.rect, box, pInfo);
    pPainter->restore();
}

void PreviewLeftWinItemDelegate::paintPicture(QPainter *pPainter, const QRect &itemRect, const QRect &box,
                                              const FileInfoPtr &pInfo) const
{
    if (pInfo->hasCachePicture() && paintThumbnail(pPainter, box, pInfo))
        return;
    if (pInfo->isFileMissing())
        StripBadges::paintMissing(pPainter, itemRect, box);
    else if (pInfo->isPictureType())
        StripBadges::paintLarge(pPainter, box, pInfo->filePath());
    else
        StripBadges::paintSmall(pPainter, box, pInfo->filePath());
}

/** False when the cache has no picture and will have none, in spite of the record. */
bool PreviewLeftWinItemDelegate::paintThumbnail(QPainter *pPainter, const QRect &box, const FileInfoPtr &pInfo) const
{
    if (!m_pCacheManager)
        return false;
    const QString cacheKey = m_pCacheManager->cacheKey(pInfo, box.size());
    QPixmap pixmap;
    int nState = m_pCacheManager->lookup(cacheKey, &pixmap);
    if (nState == ITSCacheManager::NotYetThere) {
        request(cacheKey, box.size(), pInfo);
        // Until it comes, what is known of the other size: an item that grows under the mouse does not go blank.
        const int nOtherSide = box.width() == LargeBox ? SmallBox : LargeBox;
        nState = m_pCacheManager->lookup(m_pCacheManager->cacheKey(pInfo, QSize(nOtherSide, nOtherSide)), &pixmap);
    }
    if (nState == ITSCacheManager::Unavailable)
        return false;
    if (nState == ITSCacheManager::Found)
        drawThumbnail(pPainter, box, pixmap, pInfo->pictureKind() == BackedKind);
    return true;
}

void PreviewLeftWinItemDelegate::request(const QString &cacheKey, const QSize &size, const FileInfoPtr &pInfo) const
{
    const ThumbnailRequest thumbnailRequest =
        m_pCacheManager->createRequest(pInfo, size, TSSkinSetting::GetInstance()->GetDpi());
    if (m_pendingKeys.isEmpty()) {
        connect(m_pCacheManager.data(), &ITSCacheManager::signalLoadPixmapFinished, this,
                &PreviewLeftWinItemDelegate::cacheMrgLoadFinish);
    }
    // Asked for again on each painting: the host may have dropped the request, and starts none twice.
    m_pendingKeys.insert(cacheKey);
    m_pCacheManager->submitRequest(thumbnailRequest);
}

void PreviewLeftWinItemDelegate::cacheMrgLoadFinish(QString cache_key, bool status)
{
    if (!m_pendingKeys.remove(cache_key))
        return;
    if (m_pendingKeys.isEmpty())
        disconnect(m_pCacheManager.data(), &ITSCacheManager::signalLoadPixmapFinished, this,
                   &PreviewLeftWinItemDelegate::cacheMrgLoadFinish);
    if (status)
        m_pView->slotThumbnailLoad();
}
