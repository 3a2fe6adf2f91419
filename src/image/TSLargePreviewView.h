#pragma once

#include <QGraphicsView>
#include <QPoint>

/**
 * The view of pictures and pages: the wheel is reported instead of scrolling, and the topmost strip drags the host's
 * window.
 */
class TSLargePreviewView : public QGraphicsView {
    Q_OBJECT

public:
    explicit TSLargePreviewView(QWidget *pParent);

    /** Where the wheel was turned last, in view coordinates. */
    QPoint lastMousePos() const { return m_lastMousePos; }
    /** Whether an item lay under it. */
    bool isItemUnderMouse() const { return m_bItemUnderMouse; }

Q_SIGNALS:
    /** True when the wheel was turned away from the user. */
    void signal_wheelPos(bool bValue);

protected:
    void mousePressEvent(QMouseEvent *pEvent) override;
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void mouseReleaseEvent(QMouseEvent *pEvent) override;
    void wheelEvent(QWheelEvent *pEvent) override;

private:
    QPoint m_lastMousePos;
    bool m_bItemUnderMouse = false;
    bool m_bWindowDrag = false;
    QPoint m_lastGlobalPos;
};
