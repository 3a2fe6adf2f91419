#pragma once

#include <QPainterPath>
#include <QRect>
#include <QWidget>

class QTimer;

/**
 * A thin handle at the edge of the widget that it watches. Invisible while the mouse is away; when told that the mouse
 * is near, a small tab with an arrow shows for a moment. It only signals: who listens folds the column and tells it
 * which way the arrow points.
 *
 * Owner: the watched widget, its parent. Thread: GUI thread.
 */
class TSHidenSideWidget : public QWidget {
    Q_OBJECT

public:
    explicit TSHidenSideWidget(QWidget *pParent);

    /** True while the handle's column is shown: the arrow then points the way the column would go. */
    virtual void setArrowLeft(bool bLeft) = 0;
    /** The outline of the tab, in the handle's own coordinates. */
    virtual QPainterPath tabPath() = 0;

Q_SIGNALS:
    void signalLeftClicked();
    void signalRightClicked();
    /** The mouse moves over the handle; forced while it rests on the tab. */
    void signalTriggered(QWidget *w, bool force = false);

public Q_SLOTS:
    void slotStartTimer();
    void slotStopTimer();
    virtual void slotShowTimerTimeout();
    virtual void slotHideTimerTimeout();

protected:
    /** Position, size and shapes, from the watched widget's size. */
    virtual void relayout() = 0;
    virtual void paintTab(QPainter *pPainter);
    /** What a press on the tab says. */
    virtual void emitClicked() = 0;

    void paintEvent(QPaintEvent *pEvent) override;
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void mousePressEvent(QMouseEvent *pEvent) override;
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

    void rebuildArrows();
    bool isOnTab(const QPoint &position);

    QWidget *m_pWatched;
    QPainterPath m_leftArrow;
    QPainterPath m_rightArrow;
    QPainterPath m_currentArrow;
    QTimer *m_pShowTimer;
    QTimer *m_pHideTimer;
    bool m_bTabShown = false;
    bool m_bArrowLeft = false;
};

/** The handle at the left edge; it stays ten pixels wide while its tab is hidden. */
class TSLeftHidenSideWidget : public TSHidenSideWidget {
    Q_OBJECT

public:
    explicit TSLeftHidenSideWidget(QWidget *pParent);

    void setArrowLeft(bool bLeft) override;
    QPainterPath tabPath() override { return m_tabPath; }

public Q_SLOTS:
    void slotShowTimerTimeout() override;
    void slotHideTimerTimeout() override;

protected:
    void relayout() override;
    void emitClicked() override;

private:
    QRect m_handleRect;
    QPainterPath m_tabPath;
};

/** The handle at the right edge; it shrinks to one pixel while its tab is hidden. */
class TSRightHidenSideWidget : public TSHidenSideWidget {
    Q_OBJECT

public:
    explicit TSRightHidenSideWidget(QWidget *pParent);

    void setArrowLeft(bool bLeft) override;
    QPainterPath tabPath() override { return m_tabPath; }

public Q_SLOTS:
    void slotShowTimerTimeout() override;
    void slotHideTimerTimeout() override;

protected:
    void relayout() override;
    void emitClicked() override;

private:
    QRect m_handleRect;
    QPainterPath m_tabPath;
};
