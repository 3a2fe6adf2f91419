#pragma once

#include "media/MediaPlayer.h"

#include <QImage>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

class ElidedLabel;
class MediaButton;
class QBoxLayout;
class QHBoxLayout;
class QLabel;
class QTimer;
class QVBoxLayout;
class SoundControl;
class TimeLabel;

/**
 * Plays an audio file and shows the player's waveform, which is where one seeks, with the file's picture, name and
 * times, and the buttons for play, volume and loop. Opens a file a moment late, so that one that is only stepped over
 * is never opened. Beats the time for the animation of the cover.
 *
 * Owner: the audio page. Thread: GUI thread; the player may report from another one.
 */
class AudioPlayerControlWidget : public QWidget {
    Q_OBJECT

public:
    explicit AudioPlayerControlWidget(bool bAnimation, QWidget *pParent = nullptr);
    ~AudioPlayerControlWidget() override;

    /** An empty path changes nothing. */
    void setFilePath(const QString &path);
    /** The volume at which the next file starts. */
    void setVolumePercent(int nPercent);
    /** Shows a picture from a file beside the waveform. */
    void setCoverImage(const QString &path);
    /** The same for one that was read already, in the pixels of coverPixels(). */
    void showCover(const QImage &picture);
    QSize coverPixels() const;
    void start();
    void stopAudio();
    /** A state of the player. */
    void setPlayStatus(int nStatus);
    /** Percent. */
    int volume() const;
    void setPlayLook(bool bPlaying);
    /** Is called when the player stopped without a word of the file it was given. */
    void setFailureHandler(const std::function<void()> &handler) { m_onFailure = handler; }

Q_SIGNALS:
    void signal_animationUpdate(int nState);

public Q_SLOTS:
    void slot_setAudioTotalTime(qint64 nMSec);
    void slot_seekPlay(qint64 nMsec);
    void SlotSoundChange(int value);
    void slot_delayStartPlayer();
    void slot_updateWave(qint64 nMsec);
    void slot_pauseOrPlay();
    void SlotVolumClick();
    void slot_cycleBtnClicked();
    void slot_timerout();
    void slot_animationTimerout();

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
    void createTimers(bool bAnimation);
    QBoxLayout *layOutButtons();
    QBoxLayout *layOutInformation();
    void connectButtons();
    void connectPlayer();
    void applyStyle();
    void open();
    void showDuration(qint64 nMSec);

    MediaPlayer m_pPlayer;
    QVBoxLayout *m_pLayout;
    QLabel *m_pCover;
    ElidedLabel *m_pFileName;
    MediaButton *m_pPlayBtn;
    MediaButton *m_pVolumeBtn;
    TimeLabel *m_pCurrentTime;
    TimeLabel *m_pTotalTime;
    MediaButton *m_pLoopBtn;
    QPointer<QWidget> m_pWave;
    qint64 m_nDuration = 0;
    qint64 m_nPosition = 0;
    QString m_totalText;
    QString m_path;
    QString m_wavePath;         ///< The file whose waveform the player was asked for.
    QString m_coverPath;        ///< The file shown in the cover label.
    int m_nCoverTurn = 0;       ///< Tells the picture that is waited for from those before it.
    bool m_bTellsTimes = false; ///< The player has told, or will tell, the times of what it plays.
    bool m_bHeardOf = false;    ///< It told a time of the file it opened.
    std::function<void()> m_onFailure;
    SoundControl *m_pSound = nullptr;
    QTimer *m_pStartTimer;
    QTimer *m_pTimer = nullptr;
    QTimer *m_pAnimationTimer = nullptr;
    bool m_bLoop = false;
    int m_nVolume = 50;
};
