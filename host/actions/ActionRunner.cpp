#include "actions/ActionRunner.h"

namespace {

// A long export must not hold up the recycle bin.
constexpr int k_nThreads = 4;

} // namespace

ActionRunner::ActionRunner(QObject *pParent)
    : QObject(pParent)
{
    qRegisterMetaType<QSharedPointer<const IResponseInfo>>("QSharedPointer<const IResponseInfo>");
    m_pool.setMaxThreadCount(k_nThreads);
}

ActionRunner::~ActionRunner()
{
    for (const auto &pTask : qAsConst(m_tasks))
        pTask->cancel();
    m_pool.waitForDone();
}

qint64 ActionRunner::start(const Work &work, const ProgressHandler &onProgress, const EndHandler &onEnd)
{
    const qint64 nId = ++m_nLastId;
    const auto pTask = std::make_shared<ActionTask>(this, [onProgress, nId](const ActionProgress &progress) {
        if (onProgress)
            onProgress(nId, progress);
    });
    m_tasks.insert(nId, pTask);
    m_pool.start([this, nId, pTask, work, onEnd] {
        const ActionOutcome outcome = work(*pTask);
        QMetaObject::invokeMethod(
            this,
            [this, nId, pTask, outcome, onEnd] {
                pTask->end();
                m_tasks.remove(nId);
                if (onEnd)
                    onEnd(nId, outcome);
                if (outcome.nCode != ActionOutcome::Done && outcome.nCode != ActionOutcome::Cancelled &&
                    !outcome.errors.isEmpty())
                    Q_EMIT signalProblem(outcome.errors.first());
            },
            Qt::QueuedConnection);
    });
    return nId;
}

void ActionRunner::cancel(qint64 nActionId)
{
    const auto pTask = m_tasks.value(nActionId);
    if (pTask != nullptr)
        pTask->cancel();
}
