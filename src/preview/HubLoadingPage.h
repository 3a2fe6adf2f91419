#pragma once

#include <QPixmap>
#include <QPoint>
#include <QWidget>

class QTimer;
class TsLargerModeLoadingWidget;

/**
 * The hub's page while a file loads. Its indicator comes only when the load takes a while, so that quick steps do not
 * flicker; until then the page looks like the one before without its picture.
 */
class HubLoadingPage : public QWidget {
    Q_OBJECT

public:
    explicit HubLoadingPage(QWidget *pParent);

    /** What the page shows of the one before: all of it, or a widget on it, as it stands. */
    void setBackdrop(QWidget *pWidget);

protected:
    void showEvent(QShowEvent *pEvent) override;
    void hideEvent(QHideEvent *pEvent) override;
    void paintEvent(QPaintEvent *pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent *pEvent) override;

private:
    TsLargerModeLoadingWidget *m_pIndicator;
    QTimer *m_pDelay;
    QPixmap m_backdrop;
    QPoint m_backdropPosition;
};
