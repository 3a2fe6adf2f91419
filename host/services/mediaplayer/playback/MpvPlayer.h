#pragma once

#include "services/mediaplayer/playback/MediaProbe.h"
#include "services/mediaplayer/playback/MpvCore.h"

#include <QObject>
#include <QSize>
#include <QThreadPool>
#include <QVariant>

#include <atomic>
#include <memory>
#include <optional>

/**
 * One player: plays one file at a time. What it answers is what it was last told or what the core last reported; no
 * call waits for the core, except currentFrame. A file is loaded only after the one before it is closed, so that
 * nothing of the old one can appear under the name of the new one.
 *
 * Owner: MediaPlayer. Thread: GUI thread only.
 */
class MpvPlayer final : public QObject {
    Q_OBJECT

public:
    /** With the interface's numbers. */
    enum State { Stopped = 0, Paused = 1, Playing = 2 };

    MpvPlayer(PlayerThreads *pThreads, const PlayerSetup &setup, QObject *pParent);
    ~MpvPlayer() override;

    /** Makes the player ready while nobody waits for it; opening does so, too. */
    void warmUp() { m_core.begin(); }

    /** Opens and plays. The same file once more after its end begins again without a gap. */
    void open(const QString &path, qint64 nStartMsec);
    void play();
    void pause();
    void stop();
    /** After the end of the file: pauses at the new position. */
    void seek(qint64 nMsec);
    void setMute(bool bMute) { m_core.set("mute", m_bMute = bMute); }
    void setVolume(double fVolume);

    State state() const;
    /** Of the file that plays or is shown; empty without one. */
    const QString &path() const { return m_path; }
    /** What the open file says of itself, 0 when it says nothing; -1 while none is open. */
    qint64 durationMsec() const { return m_phase == Phase::Loaded || m_phase == Phase::Ended ? m_nDurationMsec : -1; }
    /** As displayed; empty until known. */
    QSize videoSize() const { return m_videoSize; }
    bool hasVideo() const { return m_bHasVideo; }

    /** Where frames are drawn; alive as long as the player. */
    PlayerThread *frames() const { return m_core.thread(); }

    /** The frame on screen in full size; null without one. Waits for the core, a few milliseconds as a rule. */
    QImage currentFrame();

    /** What stands on screen after the end of a file goes. */
    void forgetFrame();

    /** The tracks as the core lists them: maps with "type", "id", "selected", "title", "lang". */
    const QVariantList &tracks() const { return m_tracks; }
    /** Chooses a track of the type "sub" or "audio"; 0 for none. */
    void selectTrack(const QString &type, qint64 nId);

Q_SIGNALS:
    /** A file is open and its duration and size are known, or have changed. */
    void signalOpened(qint64 nDurationMsec);
    void signalPosition(qint64 nMsec);
    /** The frame on screen is gone. */
    void signalFrameForgotten();
    void signalFailed(const QString &path);
    void signalNoSoundDevice();

private:
    enum class Phase { Idle, Opening, Loaded, Ended };
    using CancelFlag = std::shared_ptr<std::atomic_bool>;

    void startCore();
    void cancelProbe();
    void loadProbed();
    void closeFile();
    void handleFileLoaded();
    void handleFileEnd(bool bFailed);
    void handleProperty(const QByteArray &name, const QVariant &value);
    void takePosition(double fSeconds);
    void takeEnd(bool bReached);
    void takeRange(bool bHighRange);
    void takeTracks(const QVariantList &tracks);
    void announce();

    QThreadPool *const m_pReaders;
    MpvCore m_core;
    const PlayerSetup m_setup;
    Phase m_phase = Phase::Idle;
    QString m_path;
    qint64 m_nStartMsec = -1;           ///< Where to begin once the file is open; -1: where it was loaded.
    CancelFlag m_pProbing;              ///< Of the look at its head that is under way.
    std::optional<MediaProbe> m_probed; ///< Ready to be loaded.
    MediaProbe m_loaded;                ///< Of the file in the core.
    bool m_bCoreBusy = false;           ///< From loading a file to the core's word that it is closed.
    bool m_bPaused = false;
    bool m_bMute = false;
    double m_fVolume = 1.0;
    QSize m_reportedSize; ///< Width and height come one by one.
    QSize m_videoSize;
    qint64 m_nDurationMsec = 0;
    qint64 m_nToldPositionMsec = -1;
    qint64 m_nToldDurationMsec = -1;
    QSize m_toldSize;
    bool m_bDurationKnown = false; ///< Also when there is none.
    bool m_bTracksKnown = false;
    bool m_bHasVideo = false;
    QVariantList m_tracks;
};
