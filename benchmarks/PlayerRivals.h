#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QProcess>
#include <QStringList>

#include <atomic>
#include <thread>

struct mpv_handle;

/** The mpv program on a file, watched through its log. */
class PlayerProgram {
public:
    /** Starts it at once. */
    PlayerProgram(const QString &path, const QStringList &options);
    ~PlayerProgram();

    /** Seconds from its start until the log has this; negative when it never comes. */
    double secondsUntil(const QByteArray &logged);
    /** How many frames its output had no time for, when it has ended by itself; negative when it is not told. */
    int droppedFrames();
    /** Processor time that it took so far. */
    double processorSeconds() const;

private:
    bool read();

    QElapsedTimer m_sinceStart;
    QProcess m_process;
    QByteArray m_log;
};

/** A bare player core that plays a file to nowhere. */
class PlayerCore {
public:
    explicit PlayerCore(const QString &path);
    ~PlayerCore();
    PlayerCore(const PlayerCore &) = delete;
    PlayerCore &operator=(const PlayerCore &) = delete;

    void setPaused(bool bPaused);
    /** Seconds until it plays on at another time; negative when it never does. */
    double seek(double fSeconds);

private:
    /** Waits for the next time that it begins to play; false after a while. */
    bool waitForRestart();

    mpv_handle *m_pCore;
};

/** Sees when a core that somebody else owns begins to play a file. The core must outlive it. */
class PlayingWatch {
public:
    explicit PlayingWatch(mpv_handle *pCore);
    ~PlayingWatch();
    PlayingWatch(const PlayingWatch &) = delete;
    PlayingWatch &operator=(const PlayingWatch &) = delete;

    bool hasBegun() const { return m_bBegun; }

private:
    mpv_handle *m_pClient;
    std::atomic_bool m_bBegun{false};
    std::atomic_bool m_bEnough{false};
    std::thread m_thread;
};
