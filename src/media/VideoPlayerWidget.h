#pragma once

#include "image/TSBaseViewWidget.h"
#include "media/MediaPlayer.h"

#include <QPointer>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <functional>

class MediaButton;
class QSlider;
class QTimer;
class QVBoxLayout;
class VideoPlayerControlWidget;

/**
 * The surface on which the host's media player plays a video: starts it a moment late, so that a file that is only
 * stepped over is never opened; looks whether it has ended, and plays it again where it is to loop; tells the control
 * bar where it stands. Embedded, an outside bar drives it; otherwise it has a progress slider and a mute button itself.
 *
 * Owner: its parent. Thread: GUI thread; the player may report from another one.
 */
class VideoPlayerWidget : public TSBaseViewWidget {
    Q_OBJECT

public:
    VideoPlayerWidget(const QString &name, const QString &filePath, int nStartPos, bool bEmbed, QWidget *pParent);
    ~VideoPlayerWidget() override;

    /** An empty path changes nothing. */
    void setFilePath(const QString &path, int nStartPos);
    void setControlWidget(VideoPlayerControlWidget *pControl);
    /** The volume at which the next file starts; one that plays keeps its own. */
    void setVolumePercent(int nPercent) { m_nVolume = nPercent; }
    /** Empty until known. */
    QSizeF videoFrameSize() const { return m_sizeVideo; }
    QString currentFrame();
    /** Back to the beginning; the player may forget the last frame. */
    void resetToIdle();
    bool hasPlayer() const { return bool(m_pPlayer); }
    /** Is called when the player stopped without a word of the file it was given. */
    void setFailureHandler(const std::function<void()> &handler) { m_onFailure = handler; }
    /** Is called when the host takes its player away. */
    void setPlayerGoneHandler(const std::function<void()> &handler) { m_pPlayer.onGone(this, handler); }

    void startPlay() override;
    void stopPlay() override;
    void setViewRect(const QRectF &rect) override;
    bool isPlaying() override;
    void viewMousePress(const QPointF &point) override;

Q_SIGNALS:
    /** The surface has the shape of a new frame. */
    void signal_sizeAdaptToVideoFrame();

public Q_SLOTS:
    void slot_TotalTimeChanged(qint64 nmSec);
    void slot_currentTimeChanged(qint64 nMsec);
    void slot_delayStartPlayer();
    void slot_seekPlayPos(int ms);
    void slot_pauseOrPlay();
    void slot_setPlayerToTheStatus(int nStatus);
    void slot_receivedStopSignal();
    void slot_setVolume(float fValue);
    void slot_setPlayRecycle(bool bReplay);
    void slot_timerout();
    void slot_muteBtnClicked();
    void slot_VideoSliderPressed();
    void slot_VideoSliderReleased();

private:
    void layOut();
    void open();
    void goOn();
    void watchForEnd();
    void showPlayLook(bool bPlaying);
    void showMuted();
    void takeFrameSize();
    void resizeToFrame();

    MediaPlayer m_pPlayer;
    QVBoxLayout *m_pLayout;
    QSlider *m_pSlider;
    QString m_name;
    QString m_strFilePath;
    qint64 m_nStartTime = 0;
    bool m_bStarted = false;
    bool m_bTellsTimes = false; ///< The player has told, or will tell, the times of what it plays.
    bool m_bHeardOf = false;    ///< It told a time of the file it opened.
    std::function<void()> m_onFailure;
    QPointer<VideoPlayerControlWidget> m_pControlWidget;
    MediaButton *m_pMuteBtn;
    QTimer *m_pStartTimer; ///< A new start takes the place of one that is still to come.
    QTimer *m_pTimer = nullptr;
    bool m_bReplay = false;
    bool m_bEmbed;
    bool m_bMute = false;
    QRectF m_rectView;
    QSizeF m_sizeVideo{0.0, 0.0};
    int m_nVolume = 50;
    int m_nStartPos;
};
