#pragma once

#include <QPixmap>
#include <QWidget>

class QLabel;
class QTimer;

/**
 * The large "Loading..." indicator: a logo, a ring that turns around it, a word below. Turns while it is shown.
 *
 * Owner: the layout it is placed in gives it its parent.
 */
class TsLargerModeLoadingWidget : public QWidget {
    Q_OBJECT

public:
    /** Sizes in device-independent pixels. The parent is accepted and not used: the layout decides. */
    TsLargerModeLoadingWidget(int nRingSize, int nLogoWidth, int nLogoHeight, QWidget *pParent);

public Q_SLOTS:
    void updatePixmap();

protected:
    void paintEvent(QPaintEvent *pEvent) override;
    void showEvent(QShowEvent *pEvent) override;
    void hideEvent(QHideEvent *pEvent) override;

private:
    void applyTheme();
    QPixmap turnedRing() const;

    QLabel *m_pRingLabel;
    QLabel *m_pLogoLabel;
    QLabel *m_pTextLabel;
    int m_nAngle = 0;
    QTimer *m_pTurnTimer;
    QPixmap m_ringPixmap;
    int m_nRingSize = 76;
    int m_nLogoWidth = 36;
    int m_nLogoHeight = 43;
    int m_nPaintedAngle = -1;
};
