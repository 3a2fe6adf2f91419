#include "image/TSLargePreviewView.h"

#include "image/TSDBGraphicsScene.h"
#include "interfaces/surfaces/IMainWindowHandle.h"
#include "plugin/PluginInnerData.h"

#include <QMouseEvent>
#include <QWheelEvent>

namespace {

constexpr int WindowDragHeight = 20;

} // namespace

TSLargePreviewView::TSLargePreviewView(QWidget *pParent)
    : QGraphicsView(pParent)
{
    setStyleSheet(QStringLiteral("background:transparent;border:none;"));
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setTransformationAnchor(QGraphicsView::NoAnchor);
    setResizeAnchor(QGraphicsView::NoAnchor);
    // A moved or zoomed picture changes nearly every pixel: finding out which costs more than painting them.
    setViewportUpdateMode(QGraphicsView::FullViewportUpdate);
    setOptimizationFlags(QGraphicsView::DontAdjustForAntialiasing);
}

void TSLargePreviewView::mousePressEvent(QMouseEvent *pEvent)
{
    m_bWindowDrag = pEvent->button() == Qt::LeftButton && pEvent->pos().y() < WindowDragHeight;
    if (m_bWindowDrag) {
        m_lastGlobalPos = pEvent->globalPos();
        return;
    }
    if (isInteractive())
        QGraphicsView::mousePressEvent(pEvent);
}

void TSLargePreviewView::mouseMoveEvent(QMouseEvent *pEvent)
{
    if (m_bWindowDrag && (pEvent->buttons() & Qt::LeftButton)) {
        const QPoint delta = pEvent->globalPos() - m_lastGlobalPos;
        m_lastGlobalPos = pEvent->globalPos();
        if (IMainWindowHandle *pHandle = PluginInnerData::instance()->mainWindowHandle())
            pHandle->moveBy(delta);
        return;
    }
    if (isInteractive())
        QGraphicsView::mouseMoveEvent(pEvent);
}

void TSLargePreviewView::mouseReleaseEvent(QMouseEvent *pEvent)
{
    m_bWindowDrag = false;
    QGraphicsView::mouseReleaseEvent(pEvent);
    if (auto *pScene = qobject_cast<TSDBGraphicsScene *>(scene()))
        pScene->forgetPress();
}

void TSLargePreviewView::wheelEvent(QWheelEvent *pEvent)
{
    m_lastMousePos = pEvent->position().toPoint();
    m_bItemUnderMouse = itemAt(m_lastMousePos) != nullptr;
    // Sideways turns, and the end of a gesture, are no zoom.
    if (pEvent->angleDelta().y() != 0)
        Q_EMIT signal_wheelPos(pEvent->angleDelta().y() >= 1);
    pEvent->accept();
}
