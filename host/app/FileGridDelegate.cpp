#include "app/FileGridDelegate.h"

#include "app/FileGridModel.h"
#include "app/NoteCountBadge.h"
#include "app/ThumbnailSource.h"
#include "theme/TSSkinSetting.h"

#include <QPainter>

namespace {

constexpr int k_nCardMargin = 4;
constexpr int k_nCardPadding = 8;
constexpr int k_nNameHeight = 24;
constexpr int k_nRadius = 8;
constexpr int k_nThumbnailWidth = 168;
constexpr int k_nThumbnailHeight = 128;
constexpr double k_fUnavailableOpacity = 0.4;

} // namespace

FileGridDelegate::FileGridDelegate(const FileGridModel *pModel, ThumbnailSource *pThumbnails, QObject *pParent)
    : QStyledItemDelegate(pParent)
    , m_pModel(pModel)
    , m_pThumbnails(pThumbnails)
{
}

QSize FileGridDelegate::thumbnailSize()
{
    return {k_nThumbnailWidth, k_nThumbnailHeight};
}

QSize FileGridDelegate::cellSize()
{
    constexpr int k_nAround = 2 * (k_nCardMargin + k_nCardPadding);
    return {k_nThumbnailWidth + k_nAround, k_nThumbnailHeight + k_nAround + k_nNameHeight};
}

QSize FileGridDelegate::sizeHint(const QStyleOptionViewItem & /*option*/, const QModelIndex & /*index*/) const
{
    return cellSize();
}

void FileGridDelegate::paintFrame(QPainter *pPainter, const QStyleOptionViewItem &option, const QRect &card) const
{
    const TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
    const bool bSelected = option.state.testFlag(QStyle::State_Selected);
    const bool bHover = option.state.testFlag(QStyle::State_MouseOver);
    const bool bFocus = option.state.testFlag(QStyle::State_HasFocus);
    if (!bSelected && !bHover && !bFocus)
        return;
    const double fWidth = bSelected ? 2.0 : 1.0;
    pPainter->setPen(QPen(pTheme->GetCommonColor(bSelected ? 0 : 1), fWidth));
    pPainter->setBrush(bSelected || bHover ? pTheme->GetHoverColor() : QColor(Qt::transparent));
    const double fInset = fWidth / 2.0;
    pPainter->drawRoundedRect(QRectF(card).adjusted(fInset, fInset, -fInset, -fInset), k_nRadius, k_nRadius);
}

void FileGridDelegate::paintPlaceholder(QPainter *pPainter, const QRect &area, const QString &suffix,
                                        bool bComing) const
{
    const TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
    // Outlined, as a card under the mouse can have the same colour.
    pPainter->setPen(QPen(pTheme->GetPopupWinBorderColor(), 1));
    pPainter->setBrush(pTheme->GetPlaceholderBackgroundColor());
    pPainter->drawRoundedRect(QRectF(area.adjusted(16, 8, -16, -8)).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    if (bComing)
        return;
    QFont font = pPainter->font();
    font.setPixelSize(16);
    font.setBold(true);
    pPainter->setFont(font);
    pPainter->setPen(pTheme->GetPlaceholderTextColor());
    const QString text = QFontMetrics(font).elidedText(suffix.toUpper(), Qt::ElideRight, area.width() - 48);
    pPainter->drawText(area, Qt::AlignCenter, text);
}

void FileGridDelegate::paint(QPainter *pPainter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const FileRecordPtr pRecord = m_pModel->recordAt(index.row());
    if (pRecord == nullptr)
        return;
    pPainter->save();
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setRenderHint(QPainter::SmoothPixmapTransform);
    const QRect card = option.rect.adjusted(k_nCardMargin, k_nCardMargin, -k_nCardMargin, -k_nCardMargin);
    paintFrame(pPainter, option, card);

    const QRect inner = card.adjusted(k_nCardPadding, k_nCardPadding, -k_nCardPadding, -k_nCardPadding);
    const QRect area(inner.topLeft(), QSize(inner.width(), k_nThumbnailHeight));
    if (pRecord->isUnavailable())
        pPainter->setOpacity(k_fUnavailableOpacity);
    bool bComing = false;
    const double fDpi = pPainter->device()->devicePixelRatioF();
    const QPixmap pixmap = m_pThumbnails->thumbnail(pRecord, thumbnailSize(), fDpi, &bComing);
    if (pixmap.isNull()) {
        paintPlaceholder(pPainter, area, pRecord->suffix(), bComing);
    } else {
        // Scaled down where it is larger than the cell, never up: a small picture stays sharp.
        QSizeF size = QSizeF(pixmap.size()) / pixmap.devicePixelRatioF();
        if (size.width() > area.width() || size.height() > area.height())
            size.scale(area.size(), Qt::KeepAspectRatio);
        QRectF target(QPointF(0, 0), size);
        target.moveCenter(QRectF(area).center());
        const QRectF place(target.toAlignedRect());
        pPainter->drawPixmap(place, pixmap, QRectF(pixmap.rect()));
        // A hairline, so that a dark picture does not drown in a dark window; drawings keep their own outline.
        if (!pixmap.hasAlphaChannel()) {
            pPainter->setPen(QPen(TSSkinSetting::GetInstance()->GetPopupWinBorderColor(), 1));
            pPainter->setBrush(Qt::NoBrush);
            pPainter->drawRect(place.adjusted(-0.5, -0.5, 0.5, 0.5));
        }
    }

    NoteCountBadge::paint(pPainter, area, pRecord->notes().size());

    QFont font = option.font;
    font.setPixelSize(12);
    pPainter->setFont(font);
    pPainter->setPen(TSSkinSetting::GetInstance()->GetTextColor(option.state.testFlag(QStyle::State_Selected) ? 0 : 1));
    const QRect nameArea(inner.left(), inner.bottom() - k_nNameHeight + 1, inner.width(), k_nNameHeight);
    QString name = pRecord->fileName();
    name.replace(QLatin1Char('\n'), QChar(0x23CE));
    name = QFontMetrics(font).elidedText(name, Qt::ElideMiddle, nameArea.width());
    pPainter->drawText(nameArea, int(Qt::AlignHCenter | Qt::AlignBottom) | int(Qt::TextSingleLine), name);
    pPainter->restore();
}
