#pragma once

#include "common/ZoomModel.h"

#include <QObject>
#include <QPointF>

class CResourceItem;
class QTimer;
class TSLargePreviewView;

/**
 * Zooms and turns the picture in a view: fit, actual size, steps, wheel, quarter turn, each over ten ticks of 10 ms.
 * Picture and page widgets hold one each, with their own steps, and call tick() from their timer slot.
 *
 * Owner: the widget. A command that comes while another one runs lets that one arrive first.
 */
class PictureZoom : public QObject {
    Q_OBJECT

public:
    enum AnimationMode {
        AnimateFitToWindow = 0,
        AnimateFitToWidth = 1,
        AnimateActualSize = 2,
        AnimateZoomIn = 3,
        AnimateZoomOut = 4,
        AnimateRotate = 5
    };

    PictureZoom(const QVector<int> &zoomSteps, TSLargePreviewView *pView, QObject *pParent);

    /** The picture; null while there is none. */
    void setItem(CResourceItem *pItem);
    /** The timer that drives animations; its timeout is to lead to tick(). */
    QTimer *animationTimer() const { return m_animTimer; }
    bool isAnimating() const;

    double scale() const { return m_model.scale(); }
    /** Sets the view's matrix to scale and turn, and tells the percentage. */
    void setScale(double fScale, int nAngle);
    /** Takes over a scale without touching the view. */
    void noteScale(double fScale) { m_model.setScale(fScale); }

    void fitToWindow(bool bAnimated);
    void fitToWidth();
    void actualSize(bool bAnimated = true);
    void zoomIn();
    void zoomOut();
    void rotate();
    void wheel(bool bZoomIn);
    void tick();
    /** Ends a running animation where it was going. */
    void finish();

Q_SIGNALS:
    void signal_scaleChanged(int nPercent);
    void signal_animationRunning(bool bRunning);

private:
    void animateTo(AnimationMode mode, double fTarget);
    void start(AnimationMode mode);
    void end();
    void moveTopIntoView();

    TSLargePreviewView *m_pView;
    CResourceItem *m_pItem = nullptr;
    ZoomModel m_model;
    QTimer *m_animTimer;
    int m_animTicks = 0;
    int m_animMode = AnimateFitToWindow;
    double m_scaleStep = 0.0;
    double m_fTarget = 1.0;
    QPointF m_positionStep;
    int m_rotation = 0;
};
