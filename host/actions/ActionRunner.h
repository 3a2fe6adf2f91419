#pragma once

#include "actions/ActionTask.h"

#include <QHash>
#include <QThreadPool>

/**
 * Runs actions on its own threads and brings their progress and result back to the GUI thread. Its end cancels what
 * still runs and waits for it.
 *
 * Owner: HostDataSource. Thread: GUI thread only.
 */
class ActionRunner : public QObject {
    Q_OBJECT

public:
    using Work = std::function<ActionOutcome(ActionTask &task)>;
    using EndHandler = std::function<void(qint64 nActionId, const ActionOutcome &outcome)>;
    using ProgressHandler = std::function<void(qint64 nActionId, const ActionProgress &progress)>;

    explicit ActionRunner(QObject *pParent = nullptr);
    ~ActionRunner() override;

    /** Starts work; its id, greater than 0. Neither handler is called before this returns. */
    qint64 start(const Work &work, const ProgressHandler &onProgress, const EndHandler &onEnd);

    /** An id that is not running is ignored. */
    void cancel(qint64 nActionId);
    bool isRunning() const { return !m_tasks.isEmpty(); }

Q_SIGNALS:
    /** What the user should know of an action that went wrong; previews tell only some of it. */
    void signalProblem(const QString &message);

private:
    QThreadPool m_pool;
    QHash<qint64, std::shared_ptr<ActionTask>> m_tasks;
    qint64 m_nLastId = 0;
};
