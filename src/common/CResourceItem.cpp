#include "common/CResourceItem.h"

#include "common/PictureTurn.h"
#include "common/ZoomModel.h"

#include <QGraphicsSceneWheelEvent>
#include <QPainter>
#include <QRadialGradient>
#include <QStyleOptionGraphicsItem>

#include <cmath>

namespace {

constexpr int AnimationSpeedPercent = 121;
constexpr int CircleSide = 360;
constexpr int HaloRadius = 186;
constexpr double WheelFactorIn = 1.1;
constexpr double WheelFactorOut = 0.9;
constexpr double WheelShift = 0.1;
constexpr int LargestTurnedWidth = 32767;

QPoint centredTopLeft(const QSize &size)
{
    return {-(size.width() / 2), -(size.height() / 2)};
}

/** A picture in memory that is kept: what is visible changes its size with almost every frame of a drag. */
QImage bufferOf(QImage *pMemory, const QSize &size, QImage::Format format)
{
    constexpr int Reserve = 64;
    if (pMemory->width() < size.width() || pMemory->height() < size.height() || pMemory->format() != format)
        *pMemory = QImage(size.width() + Reserve, size.height() + Reserve, format);
    if (pMemory->isNull())
        return {};
    return {pMemory->bits(), size.width(), size.height(), pMemory->bytesPerLine(), format};
}

bool isTurnedByRightAngle(const QTransform &transform)
{
    return qFuzzyIsNull(transform.m11()) && qFuzzyIsNull(transform.m22()) && !qFuzzyIsNull(transform.m12());
}

} // namespace

CResourceItem::CResourceItem(const QPixmap *pPicture, QSize size)
{
    Q_UNUSED(size)
    setFlag(QGraphicsItem::ItemUsesExtendedStyleOption);
    if (pPicture != nullptr) {
        m_picture = *pPicture;
        m_size = m_picture.size();
    }
}

CResourceItem::~CResourceItem() = default;

double CResourceItem::setPicture(const QPixmap &picture, const QVector<QImage> &levels, double fPixelRatio,
                                 QSize viewSize, const QString &path, int nLoadFactor)
{
    prepareGeometryChange();
    releaseAnimation();
    m_picture = picture;
    m_levels = levels;
    m_fPixelRatio = fPixelRatio;
    m_size = picture.size() / fPixelRatio;
    m_density = QSizeF(fPixelRatio, fPixelRatio);
    m_originalSize = QSize();
    m_filePath = path;
    resetPose();
    update();
    return ZoomModel::fitToWindowTarget(viewSize, pictureSize()).value_or(1.0) * nLoadFactor;
}

void CResourceItem::replacePixels(const QPixmap &picture, const QVector<QImage> &levels)
{
    if (m_size.isEmpty() || picture.isNull())
        return;
    m_picture = picture;
    m_levels = levels;
    // Not one ratio: a rendition's sides are rounded, and at 800 % that would be seen as a jump.
    m_density = QSizeF(double(picture.width()) / m_size.width(), double(picture.height()) / m_size.height());
    m_fPixelRatio = m_density.width();
    update();
}

void CResourceItem::setDrawMode(int nDrawMode)
{
    m_nDrawMode = nDrawMode;
    update();
}

void CResourceItem::playAnimation(const QByteArray &fileData)
{
    releaseAnimation();
    auto pData = std::make_unique<QBuffer>();
    pData->setData(fileData);
    pData->open(QIODevice::ReadOnly);
    auto pMovie = std::make_unique<QMovie>(pData.get());
    pMovie->setSpeed(AnimationSpeedPercent);
    pMovie->start();
    // A file of which only the host's decoder makes something stays the still picture that it is.
    // The same goes for one that was replaced since the picture was read.
    if (pMovie->currentPixmap().isNull() || pMovie->currentPixmap().size() != m_picture.size())
        return;
    // The item is repainted once for each frame: continuously while it plays, not at all while nothing moves.
    QObject::connect(pMovie.get(), &QMovie::updated, pMovie.get(), [this] { update(); });
    m_pAnimationData = std::move(pData);
    m_pAnimation = std::move(pMovie);
    setDrawMode(DrawAnimation);
}

void CResourceItem::releaseAnimation()
{
    if (m_pAnimation == nullptr)
        return;
    m_pAnimation.reset();
    m_pAnimationData.reset();
    if (m_nDrawMode == DrawAnimation)
        setDrawMode(DrawStill);
}

void CResourceItem::setAnimationPaused(bool bPaused)
{
    if (m_pAnimation != nullptr)
        m_pAnimation->setPaused(bPaused);
}

void CResourceItem::turnBy(double fDegrees)
{
    m_fTurn += fDegrees;
    m_bTurned = !qFuzzyIsNull(std::fmod(m_fTurn, 360.0));
    applyPose();
}

void CResourceItem::flipHorizontally()
{
    // Mirroring a turned picture on the screen is the same as mirroring it first and turning it the other way.
    m_bFlipped = !m_bFlipped;
    m_fTurn = -m_fTurn;
    applyPose();
}

void CResourceItem::resetPose()
{
    m_fTurn = 0.0;
    m_bTurned = false;
    m_bFlipped = false;
    setPos(0.0, 0.0);
    applyPose();
}

void CResourceItem::applyPose()
{
    // QGraphicsItem turns before it applies the transformation, so behind a mirror the turn runs backwards.
    setTransform(m_bFlipped ? QTransform::fromScale(-1.0, 1.0) : QTransform());
    setRotation(m_bFlipped ? -m_fTurn : m_fTurn);
    if (!m_bTurned) {
        m_uprightBuffer = QImage();
        m_turnedBuffer = QImage();
    }
}

QTransform CResourceItem::fromPicturePixels() const
{
    const QSize original = originalSize();
    if (original.isEmpty())
        return {};
    const QPointF corner = boundingRect().topLeft();
    return QTransform::fromScale(m_picture.width() / m_fPixelRatio / original.width(),
                                 m_picture.height() / m_fPixelRatio / original.height()) *
           QTransform::fromTranslate(corner.x(), corner.y());
}

QSizeF CResourceItem::shownSize() const
{
    return QTransform().rotate(m_fTurn).mapRect(QRectF(QPointF(), QSizeF(pictureSize()))).size();
}

QRectF CResourceItem::boundingRect() const
{
    return {centredTopLeft(pictureSize()), pictureSize()};
}

void CResourceItem::paint(QPainter *pPainter, const QStyleOptionGraphicsItem *pOption, QWidget *pWidget)
{
    Q_UNUSED(pWidget)
    pPainter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    switch (m_nDrawMode) {
    case DrawAnimation:
        if (m_pAnimation != nullptr) {
            QPixmap frame = m_pAnimation->currentPixmap();
            frame.setDevicePixelRatio(m_fPixelRatio);
            pPainter->drawPixmap(centredTopLeft(frame.size() / m_fPixelRatio), frame);
        }
        break;
    case DrawPage:
    case DrawStillAlternative:
    case DrawStill:
        paintStill(pPainter, pOption->exposedRect);
        break;
    case DrawCircle:
        paintCircle(pPainter);
        break;
    default:
        break;
    }
}

int CResourceItem::levelFor(double fDeviceScale, bool bTurns) const
{
    // The smallest level that still has a pixel for each of the screen's.
    int nLevel = 0;
    while (nLevel < m_levels.size() && fDeviceScale * (2 << nLevel) <= 1.0)
        ++nLevel;
    // The rasterizer reads rows of a turned picture with 16-bit arithmetic.
    const auto isTooWide = [this](int n) {
        return (m_picture.width() >> n) > LargestTurnedWidth;
    };
    while (bTurns && nLevel < m_levels.size() && isTooWide(nLevel))
        ++nLevel;
    return nLevel;
}

const QImage &CResourceItem::levelImage(int nLevel, QImage *pWhole) const
{
    if (nLevel > 0)
        return m_levels.at(nLevel - 1);
    *pWhole = m_picture.toImage();
    return *pWhole;
}

void CResourceItem::paintStill(QPainter *pPainter, const QRectF &exposed) const
{
    if (isTurnedByRightAngle(pPainter->worldTransform()))
        paintTurned(pPainter, exposed);
    else
        paintLevel(pPainter, exposed, pPainter->deviceTransform());
}

void CResourceItem::paintLevel(QPainter *pPainter, const QRectF &exposed, const QTransform &transform) const
{
    const QRectF bounds = boundingRect();
    if (bounds.isEmpty())
        return;
    const double fDeviceScale = std::sqrt(std::abs(transform.determinant())) / m_fPixelRatio;
    const int nLevel = levelFor(fDeviceScale, transform.type() >= QTransform::TxRotate);
    QImage whole;
    const QImage &image = levelImage(nLevel, &whole);
    // Pixels of the level for each unit of the item.
    const double fAcross = m_density.width() / (1 << nLevel);
    const double fDown = m_density.height() / (1 << nLevel);

    // Only the visible pixels are drawn, from an image that begins where they do: far from its origin the rasterizer
    // leaves its fast path, and further out it overflows. Whole pixels with a margin, so that filtering at the edges
    // sees the same neighbours as the whole picture would.
    const QRectF part = exposed.translated(-bounds.topLeft());
    const QRect source = QRectF(part.x() * fAcross, part.y() * fDown, part.width() * fAcross, part.height() * fDown)
                             .toAlignedRect()
                             .adjusted(-2, -2, 2, 2)
                             .intersected(image.rect());
    if (source.isEmpty())
        return;
    const QImage visible(image.constScanLine(source.y()) + qsizetype(source.x()) * image.depth() / 8, source.width(),
                         source.height(), image.bytesPerLine(), image.format());
    const QRectF target(bounds.x() + source.x() / fAcross, bounds.y() + source.y() / fDown, source.width() / fAcross,
                        source.height() / fDown);
    pPainter->drawImage(target, visible, visible.rect());
}

void CResourceItem::paintTurned(QPainter *pPainter, const QRectF &exposed) const
{
    // The rasterizer walks a picture that lies on its side pixel by pixel. Scaling it upright, which is quick, and then
    // turning no more than the screen's pixels costs a fraction of that.
    const double fRatio = pPainter->device()->devicePixelRatioF();
    const QTransform toScreen = pPainter->worldTransform() * QTransform::fromScale(fRatio, fRatio);
    const QRect screen = toScreen.mapRect(exposed.intersected(boundingRect())).toAlignedRect();
    if (screen.isEmpty())
        return;
    const bool bClockwise = toScreen.m12() > 0.0;
    const bool bMirrored = toScreen.determinant() < 0.0;
    // From the screen's rectangle back to one that lies upright at the origin.
    QTransform upright = QTransform::fromTranslate(-screen.x(), -screen.y());
    if (bMirrored)
        upright *= QTransform(-1.0, 0.0, 0.0, 1.0, screen.width(), 0.0);
    upright *= bClockwise ? QTransform(0.0, -1.0, 1.0, 0.0, 0.0, screen.width())
                          : QTransform(0.0, 1.0, -1.0, 0.0, screen.height(), 0.0);

    // Where the picture covers all of it, an opaque picture needs no blending.
    const bool bCovered = toScreen.mapRect(boundingRect()).contains(QRectF(screen));
    const QImage::Format format =
        bCovered && !m_picture.hasAlphaChannel() ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied;
    QImage uprightPart = bufferOf(&m_uprightBuffer, screen.size().transposed(), format);
    QImage turnedPart = bufferOf(&m_turnedBuffer, screen.size(), format);
    if (uprightPart.isNull() || turnedPart.isNull())
        return;
    if (format != QImage::Format_RGB32)
        uprightPart.fill(Qt::transparent);
    {
        QPainter painter(&uprightPart);
        painter.setRenderHints(pPainter->renderHints());
        // Without the rounding errors of the turns, which would send the rasterizer down its slow path.
        const QTransform whole = toScreen * upright;
        painter.setTransform(QTransform(whole.m11(), 0.0, 0.0, whole.m22(), whole.dx(), whole.dy()));
        paintLevel(&painter, exposed, painter.worldTransform());
    }
    PictureTurn::turnInto(uprightPart, bClockwise, bMirrored, &turnedPart);
    turnedPart.setDevicePixelRatio(fRatio);
    pPainter->save();
    pPainter->resetTransform();
    pPainter->drawImage(QPointF(screen.topLeft()) / fRatio, turnedPart);
    pPainter->restore();
}

void CResourceItem::paintCircle(QPainter *pPainter) const
{
    if (pictureSize() != QSize(CircleSide, CircleSide))
        return;
    QRadialGradient halo(QPointF(0.0, 0.0), HaloRadius);
    halo.setColorAt(0.95, QColor(224, 231, 250, 75));
    halo.setColorAt(1.0, QColor(224, 231, 250, 0));
    pPainter->setPen(Qt::transparent);
    pPainter->setBrush(halo);
    pPainter->drawEllipse(-HaloRadius, -HaloRadius, 2 * HaloRadius, 2 * HaloRadius);

    const int nRadius = CircleSide / 2;
    QPainterPath circle;
    circle.addRoundedRect(-nRadius, -nRadius, CircleSide, CircleSide, nRadius, nRadius);
    pPainter->setClipPath(circle);
    pPainter->drawPixmap(-nRadius, -nRadius, m_picture);
}

void CResourceItem::wheelEvent(QGraphicsSceneWheelEvent *pEvent)
{
    const bool bZoomIn = pEvent->delta() >= 1;
    const double fBefore = m_fScale;
    m_fScale *= bZoomIn ? WheelFactorIn : WheelFactorOut;
    setScale(m_fScale);
    const double fShift = fBefore * (bZoomIn ? -WheelShift : WheelShift);
    moveBy(fShift * pEvent->pos().x(), fShift * pEvent->pos().y());
}
