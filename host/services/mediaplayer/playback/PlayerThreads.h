#pragma once

#include <QThreadPool>
#include <QVector>

#include <memory>

class PlayerThread;
struct PlayerSetup;

/**
 * All player threads, those that are ending included, so that the plug-in can wait for the last of them before it goes.
 *
 * Owner: MediaPlayer. Thread: GUI thread only.
 */
class PlayerThreads {
public:
    PlayerThreads();
    ~PlayerThreads();
    PlayerThreads(const PlayerThreads &) = delete;
    PlayerThreads &operator=(const PlayerThreads &) = delete;

    /** A thread that waits for begin(); stays ours. */
    PlayerThread *create(const PlayerSetup &setup);

    /** Lets a thread end by itself; the pointer is dead afterwards. */
    void end(PlayerThread *pThread);

    /** Ends all and waits for them. */
    void endAll();

    /**
     * Where files are looked at before they are opened. A pool of its own: a file on a medium that does not answer
     * holds its thread, and nothing else is to wait for that.
     */
    QThreadPool *readers() { return &m_readers; }

    int count() const { return int(m_threads.size()); }

private:
    QVector<PlayerThread *> m_threads;
    QThreadPool m_readers;
};
