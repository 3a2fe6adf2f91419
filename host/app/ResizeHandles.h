#pragma once

#include <QObject>
#include <QVector>

class QWidget;

/**
 * Invisible strips along the edges of a frameless window by which it is resized, by the window system where it can,
 * by ourselves where it cannot.
 *
 * Owner: the window. Thread: GUI thread only.
 */
class ResizeHandles : public QObject {
    Q_OBJECT

public:
    explicit ResizeHandles(QWidget *pWindow);

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
    void place();

    QWidget *m_pWindow;
    QVector<QWidget *> m_handles;
};
