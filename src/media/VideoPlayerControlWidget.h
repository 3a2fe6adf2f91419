#pragma once

#include <QString>
#include <QWidget>

class MediaButton;
class QHBoxLayout;
class QSlider;
class SoundControl;
class TimeLabel;

/**
 * The bar under a video: play, volume, times, progress, loop. Has no player: it shows what it is told and signals what
 * the user wants. A click on the progress slider seeks; its handle is not for dragging.
 *
 * Owner: the video page. Thread: GUI thread.
 */
class VideoPlayerControlWidget : public QWidget {
    Q_OBJECT

public:
    explicit VideoPlayerControlWidget(QWidget *pParent = nullptr);

    void setPlayLook(bool bPlaying);
    void requestPlayStatus(int nStatus);
    void requestStop();
    /** Percent. */
    int volume() const;
    /** Shows a volume that is set already. */
    void showVolume(int nPercent);

Q_SIGNALS:
    void signal_setPlayStatus(int nMediaPlayerSTatus);
    void signal_PlayPause();
    void signal_seekPlay(int nMsec);
    void signal_stopPlay();
    void signal_setVolume(float fValue);
    void signal_setReplay(bool bReplay);
    void signal_VideoSliderPressed();
    void signal_VideoSliderReleased();

public Q_SLOTS:
    void slot_setVideoTotalTime(int nMsec);
    void slot_updatePlayPos(int nCurMsec);
    void slot_stopPlay();
    void SlotSoundChange(int value);
    void SlotShowSoundWin();
    void slot_recycleBtnClicked();
    void slot_playOrpauseBtnClicked();
    void slot_sliderPressed();
    void slot_sliderReleased();
    void SlotVolumClick();

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
    void layOut();
    void connectButtons();
    void applyStyle();

    QHBoxLayout *m_pLayout;
    MediaButton *m_pPlayBtn;
    MediaButton *m_pVolumeBtn;
    TimeLabel *m_pCurrentTime;
    TimeLabel *m_pTotalTime;
    QSlider *m_pProgress;
    MediaButton *m_pLoopBtn;
    SoundControl *m_pSound = nullptr;
    int m_nTotalMsec = 0;
    bool m_bLoop = false;
    QString m_totalText;
};
