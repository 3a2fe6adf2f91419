#pragma once

#include "services/mediaplayer/playback/PlayerThread.h"

#include <QObject>
#include <QVariant>

#include <atomic>

class PlayerThreads;
struct mpv_event;

/**
 * The GUI thread's end of one player core: sends it commands without waiting and tells what it reports.
 *
 * Owner: MpvPlayer. Thread: GUI thread only.
 */
class MpvCore final : public QObject {
    Q_OBJECT

public:
    MpvCore(PlayerThreads *pThreads, const PlayerSetup &setup, QObject *pParent);
    ~MpvCore() override;

    /** Makes the core, if that was not asked for before; signalReady follows. */
    void begin() { m_pThread->begin(); }
    /** Until signalReady everything sent is dropped. */
    bool isReady() const { return m_pCore != nullptr; }
    /** There is none and never will be. */
    bool isBroken() const { return m_bBroken; }
    PlayerThread *thread() const { return m_pThread; }

    /** Loads a file by its native bytes with options of its own, in place of the present one. */
    void load(const QByteArray &native, const QVector<QPair<QByteArray, QByteArray>> &options);
    void command(const QVector<QByteArray> &arguments);
    void set(const char *pName, bool bValue);
    void set(const char *pName, double fValue);
    void set(const char *pName, const QByteArray &value);

    /** The core's present frame; waits for the core. Null without one. */
    QImage screenshot();

Q_SIGNALS:
    /** The core is there, or broken. */
    void signalReady();
    void signalFileLoaded();
    /** The file that was loaded is closed, or could not be opened; nothing of it is shown any more. */
    void signalFileEnded(bool bFailed);
    void signalProperty(const QByteArray &name, const QVariant &value);

private:
    void takeCore();
    void drainEvents();
    void handleEvent(const mpv_event &event);

    PlayerThreads *const m_pThreads;
    PlayerThread *const m_pThread;
    mpv_handle *m_pCore = nullptr;
    bool m_bBroken = false;
    std::atomic_bool m_bEventsWait{false};
};
