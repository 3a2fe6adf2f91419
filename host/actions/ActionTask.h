#pragma once

#include "interfaces/data/IResponseInfo.h"

#include <QElapsedTimer>
#include <QObject>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

/** How an action ended. A plain value; crosses threads. */
struct ActionOutcome {
    enum Code {
        Done = IResponseInfo::Success,
        Failed = 1,
        Cancelled = 2,
        NoSpace = IResponseInfo::InsufficientDiskSpace
    };

    int nCode = Done;
    QStringList errors;
    QVector<qint64> failed;
    QVector<qint64> skipped;
    QVector<qint64> missing;

    /** Adds what went wrong with one file; lack of space outweighs other failures. */
    void addError(int nErrorCode, const QString &error, qint64 nFileId = 0);

    /** The same as an answer to the preview. */
    QSharedPointer<const IResponseInfo> response() const;
};

struct ActionProgress {
    double fPercent = 0.0;
    int nTotal = 0;
    int nAlready = 0;
};

/**
 * One running action as its two sides see it: the worker asks whether to go on and reports how far it is, the GUI
 * thread cancels and receives reports, at most 20 a second however many the worker makes.
 *
 * Owner: shared by ActionRunner and the worker. Thread: as said at each operation.
 */
class ActionTask : public std::enable_shared_from_this<ActionTask> {
public:
    using ProgressHandler = std::function<void(const ActionProgress &)>;

    /** The handler is called in the receiver's thread; the receiver outlives the task. */
    ActionTask(QObject *pReceiver, ProgressHandler handler);
    Q_DISABLE_COPY(ActionTask)

    /** Any thread. */
    void cancel() { m_bCancelled = true; }
    bool isCancelled() const { return m_bCancelled; }
    const std::atomic_bool &cancelFlag() const { return m_bCancelled; }

    /** Worker. */
    void report(const ActionProgress &progress);

    /** Receiver's thread: no report is delivered afterwards. */
    void end() { m_bEnded = true; }

private:
    void deliver();

    QObject *const m_pReceiver;
    const ProgressHandler m_handler;
    std::atomic_bool m_bCancelled{false};
    std::mutex m_mutex;
    ActionProgress m_latest;
    bool m_bPosted = false;
    bool m_bEnded = false;
    QElapsedTimer m_sinceDelivery;
};
