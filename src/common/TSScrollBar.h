#pragma once

#include <QPointer>
#include <QScrollBar>

class QAbstractScrollArea;
class QGraphicsOpacityEffect;
class QParallelAnimationGroup;
class QPropertyAnimation;

/**
 * A thin vertical scroll bar that floats over the right edge of a scroll area, in place of the area's own bar, and is
 * there only while the mouse is. Both bars follow each other.
 *
 * Owner: its Qt parent, as a rule the area. Thread: GUI thread.
 */
class TSScrollBar : public QScrollBar {
    Q_OBJECT

public:
    TSScrollBar(Qt::Orientation orientation, QWidget *pParent);

    /** Takes the place of the area's bar, moved by the offsets. Null does nothing. */
    void attach(QAbstractScrollArea *pArea, int xOffset, int yOffset);

public Q_SLOTS:
    void slot_valueChange_scrollBar(int value);
    void slot_rangeChanged(int nMinimum, int nMaximum);

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;
    void enterEvent(QEvent *pEvent) override;
    void leaveEvent(QEvent *pEvent) override;

private:
    void applyTheme();
    QPropertyAnimation *fade(double fFrom, double fTo);
    void place();
    void setAreaValue(int nValue);

    QPointer<QAbstractScrollArea> m_pArea;
    QPropertyAnimation *m_pEnterGeometry;
    QGraphicsOpacityEffect *m_pOpacity;
    QPropertyAnimation *m_pBrighten;
    QParallelAnimationGroup *m_pBrightenGroup;
    QPropertyAnimation *m_pLeaveGeometry;
    QPropertyAnimation *m_pDim;
    QParallelAnimationGroup *m_pDimGroup;
    QPropertyAnimation *m_pFadeIn;
    QPropertyAnimation *m_pFadeOut;
    int m_nXOffset = 0;
    int m_nYOffset = 0;
};
