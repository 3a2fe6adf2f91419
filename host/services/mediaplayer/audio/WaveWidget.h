#pragma once

#include "media/PeakReader.h"

#include <QElapsedTimer>
#include <QWidget>

/**
 * The waveform of a sound, which is also where one seeks: by a click or by dragging. What was played stands in the
 * accent colour; what is not read yet is a thin line.
 *
 * Owner: the widget it is placed in. Thread: GUI thread only.
 */
class WaveWidget final : public QWidget {
    Q_OBJECT

public:
    explicit WaveWidget(QWidget *pParent = nullptr);

    void setPeaks(const media::Peaks &peaks);
    void setDuration(qint64 nMsec);
    /** -1: nothing was played. */
    void setPosition(qint64 nMsec);

    QSize sizeHint() const override;

Q_SIGNALS:
    void signal_seekPlay(qint64 nMsec);

protected:
    void paintEvent(QPaintEvent *pEvent) override;
    void mousePressEvent(QMouseEvent *pEvent) override;
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void mouseReleaseEvent(QMouseEvent *pEvent) override;

private:
    qint64 durationMsec() const;
    qint64 timeAt(int nX) const;
    double markAt(qint64 nMsec) const;
    int levelBetween(double fFromMsec, double fToMsec) const;
    void moveMark(qint64 nMsec);
    void dragTo(int nX, bool bFinal);

    media::Peaks m_peaks;
    qint64 m_nDurationMsec = 0;
    qint64 m_nPositionMsec = -1;
    qint64 m_nSoughtMsec = -1; ///< Where the player was last sent by this press of the button.
    bool m_bDragged = false;
    QElapsedTimer m_sinceSeek;
};
