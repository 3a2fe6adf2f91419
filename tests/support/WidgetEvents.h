#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>
#include <QtTest>

/** Mouse events, delivered at once and to this widget, whatever platform and focus make of the real ones. */
inline void sendMouse(QWidget *pWidget, QEvent::Type type, const QPoint &pos, Qt::MouseButton button = Qt::LeftButton)
{
    const bool bMove = type == QEvent::MouseMove;
    QMouseEvent event(type, pos, pWidget->mapToGlobal(pos), bMove ? Qt::NoButton : button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : button, Qt::NoModifier);
    QCoreApplication::sendEvent(pWidget, &event);
}

inline void hover(QWidget *pWidget, const QPoint &pos)
{
    sendMouse(pWidget, QEvent::MouseMove, pos, Qt::NoButton);
}

/** A click where the two places are the same. */
inline void drag(QWidget *pWidget, const QPoint &from, const QPoint &to, Qt::MouseButton button = Qt::LeftButton)
{
    sendMouse(pWidget, QEvent::MouseButtonPress, from, button);
    if (from != to) {
        sendMouse(pWidget, QEvent::MouseMove, (from + to) / 2, button);
        sendMouse(pWidget, QEvent::MouseMove, to, button);
    }
    sendMouse(pWidget, QEvent::MouseButtonRelease, to, button);
}

inline void turnWheel(QWidget *pWidget, const QPoint &pos, int nDelta = 120)
{
    QWheelEvent event(pos, pWidget->mapToGlobal(pos), QPoint(), QPoint(0, nDelta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(pWidget, &event);
}

/** Shows a window that takes the keys, also on a platform without a window manager. */
inline void showActive(QWidget *pWindow, QWidget *pFocus = nullptr)
{
    pWindow->show();
    QApplication::setActiveWindow(pWindow);
    if (pFocus != nullptr)
        pFocus->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(pWindow));
}

/** Counts the paint events of one widget. */
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget *pWidget) { pWidget->installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject * /*pWatched*/, QEvent *pEvent) override
    {
        count += pEvent->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};
