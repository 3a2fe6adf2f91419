// The overlay's looks. Plain rectangles and cached numbers only: hundreds of notes are painted within a frame.
#include "common/CircleNumToolTip.h"
#include "image/CNoteInputWidget.h"
#include "image/CNoteWidget.h"
#include "image/NoteText.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>

namespace {

constexpr int FillAlpha = 50;
constexpr int OutlineWidth = 2;
constexpr int HaloWidth = 1;
constexpr int HandleRadius = 4;
constexpr int BadgeSide = 16;
constexpr int BadgeOverlap = 1;
constexpr int Reach = 24; ///< How far handles, number and flash reach out of a region.
constexpr int LargestBadgeWidth = 48;
constexpr int ShadowSteps = 5;
constexpr int ShadowAlpha = 14;
constexpr int FlashReach = 14;
constexpr int FlashPeriod = 13;
const QColor HaloColor(0, 0, 0, 80);

/** The four sides of a frame that lies inside the rectangle. */
void fillFrame(QPainter *pPainter, const QRect &rect, int nWidth, const QColor &color)
{
    const int nSide = qMin(nWidth, qMin(rect.width(), rect.height()));
    pPainter->fillRect(rect.left(), rect.top(), rect.width(), nSide, color);
    pPainter->fillRect(rect.left(), rect.bottom() + 1 - nSide, rect.width(), nSide, color);
    pPainter->fillRect(rect.left(), rect.top() + nSide, nSide, rect.height() - 2 * nSide, color);
    pPainter->fillRect(rect.right() + 1 - nSide, rect.top() + nSide, nSide, rect.height() - 2 * nSide, color);
}

} // namespace

QRect CNoteWidget::badgeRect(int nIndex) const
{
    const NoteRegin &region = *m_regions.at(size_t(nIndex));
    QRect badge(region.rect.topLeft() - QPoint(BadgeSide - BadgeOverlap, BadgeSide - BadgeOverlap),
                QSize(BadgeSide, BadgeSide));
    // The number of a note that lies beside its picture is to be found at the picture's edge.
    const QRect bounds = pictureBounds();
    if (!region.rect.adjusted(-1, -1, 1, 1).intersects(bounds))
        badge = NoteGeometry::shiftedInto(badge, bounds);
    else if (region.rect.intersects(rect()))
        badge = NoteGeometry::shiftedInto(badge, rect());
    return badge;
}

QRect CNoteWidget::dirtyRect(const NoteRegin &region) const
{
    QRect dirty = region.rect.adjusted(-Reach, -Reach, Reach, Reach);
    if (region.nId < regionCount())
        dirty |= badgeRect(region.nId).adjusted(0, 0, LargestBadgeWidth, 0);
    return dirty;
}

void CNoteWidget::updateRegion(const NoteRegin &region)
{
    update(dirtyRect(region).intersected(rect()));
}

const QPixmap &CNoteWidget::badge(int nNumber, const QColor &color)
{
    const double fRatio = devicePixelRatioF();
    if (fRatio != m_fBadgeRatio)
        m_badges.clear();
    m_fBadgeRatio = fRatio;
    QPixmap &picture = m_badges[quint64(nNumber) << 32U | color.rgb()];
    if (picture.isNull()) {
        m_pBadge->setColors(color, NoteText::contrast(color));
        m_pBadge->setText(QString::number(nNumber));
        picture = QPixmap(m_pBadge->size() * fRatio);
        picture.setDevicePixelRatio(fRatio);
        picture.fill(Qt::transparent);
        m_pBadge->render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
    }
    return picture;
}

void CNoteWidget::paintEvent(QPaintEvent *pEvent)
{
    QPainter painter(this);
    const QRect exposed = pEvent->rect();
    for (const auto &pRegion : m_regions) {
        if (pRegion.get() != m_pSelected)
            paintRegion(&painter, *pRegion, exposed);
    }
    if (m_nHovered >= 0 && m_nHovered < regionCount() && m_bDrawingAllowed)
        paintHandles(&painter, *m_regions.at(size_t(m_nHovered)));
    if (m_pSelected != nullptr) {
        paintRegion(&painter, *m_pSelected, exposed);
        paintHandles(&painter, *m_pSelected);
    }
    if (m_pDrawn)
        paintRegion(&painter, *m_pDrawn, exposed);
    if (m_nFlashed >= 0 && m_nFlashed < regionCount())
        paintFlash(&painter, *m_regions.at(size_t(m_nFlashed)));
    if (m_pCard->isVisible())
        paintCardShadow(&painter);
}

void CNoteWidget::paintRegion(QPainter *pPainter, const NoteRegin &region, const QRect &exposed)
{
    // Far corners of a large note are cut off outside the widget, where nobody sees it.
    const QRect seen = region.rect.intersected(rect().adjusted(-Reach, -Reach, Reach, Reach));
    if (!seen.isEmpty() && seen.adjusted(-Reach, -Reach, Reach, Reach).intersects(exposed)) {
        QColor fill = region.color;
        fill.setAlpha(FillAlpha);
        pPainter->fillRect(seen, QBrush(fill, Qt::SolidPattern));
        fillFrame(pPainter, seen.adjusted(-HaloWidth, -HaloWidth, HaloWidth, HaloWidth), HaloWidth, HaloColor);
        fillFrame(pPainter, seen, OutlineWidth, region.color);
    }
    if (region.nId >= regionCount())
        return;
    const QRect place = badgeRect(region.nId);
    if (place.adjusted(0, 0, LargestBadgeWidth, 0).intersects(exposed))
        pPainter->drawPixmap(place.topLeft(), badge(region.nId + 1, region.color));
}

void CNoteWidget::paintHandles(QPainter *pPainter, const NoteRegin &region) const
{
    if (!m_bDrawingAllowed)
        return;
    pPainter->save();
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setPen(QPen(region.color.darker(130), 1.5));
    pPainter->setBrush(Qt::white);
    for (const QRect &handle : region.handles)
        pPainter->drawEllipse(QRectF(handle).center(), HandleRadius, HandleRadius);
    pPainter->restore();
}

void CNoteWidget::paintFlash(QPainter *pPainter, const NoteRegin &region) const
{
    // A ring that runs outwards and fades, again and again.
    const double fPhase = double(m_nFlashTick % FlashPeriod) / FlashPeriod;
    QColor color = region.color;
    color.setAlphaF(1.0 - fPhase);
    pPainter->save();
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setBrush(Qt::NoBrush);
    pPainter->setPen(QPen(color, 3.0));
    const double fReach = fPhase * FlashReach;
    const QRect seen = region.rect.intersected(rect().adjusted(-Reach, -Reach, Reach, Reach));
    pPainter->drawRoundedRect(QRectF(seen).adjusted(-fReach, -fReach, fReach, fReach), fReach, fReach);
    pPainter->restore();
}

void CNoteWidget::paintCardShadow(QPainter *pPainter) const
{
    pPainter->save();
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setPen(Qt::NoPen);
    pPainter->setBrush(QColor(0, 0, 0, ShadowAlpha));
    for (int i = 1; i <= ShadowSteps; ++i)
        pPainter->drawRoundedRect(QRectF(m_pCard->geometry()).adjusted(-i, -i + 2, i, i + 2), i + 2, i + 2);
    pPainter->restore();
}
