#pragma once

#include "interfaces/plugin/IPlugin.h"
#include "interfaces/services/ITsMediaPlayerPlugin.h"
#include "services/mediaplayer/IHostMedia.h"
#include "services/mediaplayer/audio/WaveStore.h"
#include "services/mediaplayer/playback/PlayerThread.h"
#include "services/mediaplayer/playback/PlayerThreads.h"

#include <QObject>
#include <QPointer>
#include <QTemporaryDir>
#include <QThreadPool>

#include <map>
#include <memory>

class CoverItem;
class MpvPlayer;
class SoundReader;
class VideoArea;
class WaveWidget;

/** What the players report, connected by name. Owner: MediaPlayer. Thread: GUI thread only. */
class MediaSignals final : public QObject {
    Q_OBJECT

Q_SIGNALS:
    void signal_TotalTimeChanged(qint64 nMsec);
    void signal_currentTime(qint64 nMsec);
};

/**
 * Root object of the media player service: keeps one player for each owner widget and hands out what it shows.
 *
 * Owner: the Qt plug-in loader, or a test. Thread: GUI thread only.
 */
class MediaPlayer : public QObject, public IPlugin, public ITsMediaPlayerPlugin, public IHostMedia {
    Q_OBJECT
    Q_INTERFACES(IPlugin ITsMediaPlayerPlugin IHostMedia)

public:
    explicit MediaPlayer(QObject *pParent = nullptr);
    /** For tests: how to put out, and where waveforms are kept. */
    MediaPlayer(const PlayerSetup &setup, const QString &waveFolder, QObject *pParent);
    ~MediaPlayer() override;

    QObject *getObject() override { return this; }
    QUuid getPluginId() override;
    void getPluginInfo(PluginInfo &info) override;
    bool setPluginManager(IPluginManager *pManager) override;
    bool initialize() override { return true; }
    bool extensionsInitialized() override { return true; }
    bool aboutToShutdown() override;

    void setProblemHandler(const ProblemHandler &handler) override { m_problemHandler = handler; }

    QObject *getSignalObject() override { return &m_signals; }
    void attachOwner(QWidget *pOwner) override;
    void detachOwner(QWidget *pOwner) override;
    QWidget *videoWidget(QWidget *pOwner) override;
    void resetOwner(QWidget *pOwner) override;
    QString currentFrame(QWidget *pOwner) override;
    void positionShown(QWidget *pOwner) override;
    void attachAudioOwner(QWidget *pOwner, bool bWithWave) override;
    void setWavePosition(QWidget *pOwner, qint64 nMsec) override;
    void setWaveSource(QWidget *pOwner, const QString &path, int nWidth) override;
    void setWaveDuration(QWidget *pOwner, qint64 nMsec) override;
    QWidget *waveWidget(QWidget *pOwner) override;
    void initAudioView() override;
    QGraphicsItem *audioItem() override;
    void animateAudioItem(int nState) override;
    double audioItemScale() override;
    void layoutAudioItem() override;
    void openAndPlay(QWidget *pOwner, const QString &path, int nStartMsec) override;
    void openAudio(const QString &path) override;
    void play() override;
    void pause() override;
    void stop(QWidget *pOwner) override;
    void seek(int nMsec) override;
    void setMute(bool bMute) override;
    void setVolume(float fVolume) override;
    int state() override;
    int videoWidth() override;
    int videoHeight() override;

private:
    /** What belongs to one owner widget. */
    struct Seat;

    static void moveToEnd(QVector<Seat *> *pSeats, Seat *pSeat);
    bool isCurrent(const Seat *pSeat) const;
    Seat *seatOf(QWidget *pOwner) const;
    MpvPlayer *current() const;
    Seat *addSeat(QWidget *pOwner, const PlayerSetup &setup);
    void openIn(Seat *pSeat, const QString &path, qint64 nStartMsec);
    void tellDuration(const Seat &seat, qint64 nMsec);
    void readWave(Seat *pSeat, const QString &path);
    void showCover(const QString &path);
    void report(const QString &problem);
    void reportNoSoundDevice();

    const PlayerSetup m_setup;
    MediaSignals m_signals;
    IPluginManager *m_pManager = nullptr;
    ProblemHandler m_problemHandler;
    WaveStore m_waves;
    QThreadPool m_pool;
    PlayerThreads m_threads;
    std::map<QWidget *, std::unique_ptr<Seat>> m_seats;
    QVector<Seat *> m_lastUsed;  ///< Attached or opened last at the end: operations without an owner mean it.
    QVector<Seat *> m_lastSound; ///< The same of those that were attached for sound.
    QPointer<CoverItem> m_pCover;
    std::unique_ptr<SoundReader> m_pCoverReader;
    QTemporaryDir m_frames;
    int m_nFrames = 0;
    bool m_bNoSoundTold = false;
    bool m_bEnding = false;
};
