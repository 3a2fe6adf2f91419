#include "image/PictureZoom.h"

#include "common/CResourceItem.h"
#include "image/TSLargePreviewView.h"

#include <QTimer>

namespace {

constexpr int TickInterval = 10;
constexpr int TicksEach = 10;
constexpr int TicksEnd = 100;
constexpr double TickCount = 10.0;
constexpr double TurnEachTick = -9.0;

bool isFit(int nMode)
{
    return nMode <= PictureZoom::AnimateActualSize;
}

} // namespace

PictureZoom::PictureZoom(const QVector<int> &zoomSteps, TSLargePreviewView *pView, QObject *pParent)
    : QObject(pParent)
    , m_pView(pView)
    , m_model(zoomSteps)
    , m_animTimer(new QTimer(this))
{
    m_animTimer->setInterval(TickInterval);
    m_animTimer->setTimerType(Qt::PreciseTimer);
}

void PictureZoom::setItem(CResourceItem *pItem)
{
    if (pItem == nullptr && isAnimating())
        end();
    m_pItem = pItem;
}

bool PictureZoom::isAnimating() const
{
    return m_animTimer->isActive();
}

void PictureZoom::setScale(double fScale, int nAngle)
{
    m_model.setScale(fScale);
    m_rotation = nAngle;
    m_pView->setTransform(QTransform::fromScale(fScale, fScale).rotate(nAngle));
    // The scene is centred on the origin and stays so; only the picture moves in it.
    m_pView->centerOn(0.0, 0.0);
    Q_EMIT signal_scaleChanged(m_model.percent());
}

void PictureZoom::fitToWindow(bool bAnimated)
{
    finish();
    if (m_pItem == nullptr)
        return;
    m_pItem->setVisible(true);
    const auto target = ZoomModel::fitToWindowTarget(m_pView->size(), m_pItem->shownSize());
    if (!target) {
        actualSize(bAnimated);
    } else if (bAnimated) {
        animateTo(AnimateFitToWindow, *target);
    } else {
        m_pItem->setPos(0.0, 0.0);
        setScale(*target, m_rotation);
    }
}

void PictureZoom::fitToWidth()
{
    finish();
    if (m_pItem == nullptr)
        return;
    const auto target = ZoomModel::fitToWidthTarget(m_pView->size(), m_pItem->shownSize());
    if (target)
        animateTo(AnimateFitToWidth, *target);
    else
        actualSize();
}

void PictureZoom::actualSize(bool bAnimated)
{
    finish();
    if (m_pItem == nullptr)
        return;
    if (bAnimated) {
        animateTo(AnimateActualSize, 1.0);
    } else {
        m_pItem->setPos(0.0, 0.0);
        setScale(1.0, m_rotation);
    }
}

void PictureZoom::zoomIn()
{
    finish();
    if (const auto target = m_model.zoomInTarget())
        animateTo(AnimateZoomIn, *target);
}

void PictureZoom::zoomOut()
{
    finish();
    if (const auto target = m_model.zoomOutTarget())
        animateTo(AnimateZoomOut, *target);
}

void PictureZoom::rotate()
{
    finish();
    if (m_pItem != nullptr)
        start(AnimateRotate);
}

void PictureZoom::wheel(bool bZoomIn)
{
    if (isAnimating())
        return;
    const auto target = m_model.wheelTarget(bZoomIn);
    if (!target)
        return;
    const QPointF before = m_pView->mapToScene(m_pView->lastMousePos());
    setScale(*target, m_rotation);
    const QPointF after = m_pView->mapToScene(m_pView->lastMousePos());
    if (m_pItem != nullptr)
        m_pItem->setPos(m_pItem->pos() + after - before);
}

void PictureZoom::animateTo(AnimationMode mode, double fTarget)
{
    m_fTarget = fTarget;
    m_scaleStep = (fTarget - m_model.scale()) / TickCount;
    // Fitting brings a dragged picture back to the middle on the way.
    m_positionStep = isFit(mode) && m_pItem != nullptr ? -m_pItem->pos() / TickCount : QPointF();
    start(mode);
}

void PictureZoom::start(AnimationMode mode)
{
    m_animMode = mode;
    m_animTicks = 0;
    m_animTimer->start();
    Q_EMIT signal_animationRunning(true);
}

void PictureZoom::tick()
{
    if (!isAnimating())
        return;
    m_animTicks += TicksEach;
    const bool bLast = m_animTicks >= TicksEnd;
    if (m_animMode == AnimateRotate) {
        if (m_pItem != nullptr)
            m_pItem->turnBy(TurnEachTick);
    } else {
        if (m_pItem != nullptr && isFit(m_animMode))
            m_pItem->setPos(bLast ? QPointF() : m_pItem->pos() + m_positionStep);
        // The last tick lands on the target itself: ten steps of a tenth would miss it by a rounding error.
        setScale(bLast ? m_fTarget : m_model.scale() + m_scaleStep, isFit(m_animMode) ? 0 : m_rotation);
    }
    if (!bLast)
        return;
    if (m_animMode == AnimateFitToWidth && m_rotation % 360 == 0)
        moveTopIntoView();
    end();
}

void PictureZoom::end()
{
    m_scaleStep = 0.0;
    m_animTicks = 0;
    m_animTimer->stop();
    Q_EMIT signal_animationRunning(false);
}

void PictureZoom::finish()
{
    while (isAnimating())
        tick();
}

void PictureZoom::moveTopIntoView()
{
    if (m_pItem == nullptr)
        return;
    // In the picture as it stands on the screen, turned or not.
    const double fHalfHeight = m_pItem->shownSize().height() / 2.0;
    const QPoint top = m_pView->mapFromScene(m_pItem->scenePos() - QPointF(0.0, fHalfHeight));
    if (top.y() >= 0)
        return;
    const QPointF viewTop = m_pView->mapToScene(QPoint(m_pView->width() / 2, 0));
    m_pItem->setPos(0.0, viewTop.y() + fHalfHeight);
}
