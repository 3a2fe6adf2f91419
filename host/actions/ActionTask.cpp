#include "actions/ActionTask.h"

#include <QTimer>

#include <utility>

namespace {

// A little more than a twentieth of a second: timers fire early by up to a millisecond.
constexpr int k_nIntervalMsec = 52;

/** Immutable; any thread. */
class OutcomeResponse final : public IResponseInfo {
public:
    explicit OutcomeResponse(ActionOutcome outcome)
        : m_outcome(std::move(outcome))
    {
    }
    int returnCode() const override { return m_outcome.nCode; }
    QString errorMessage() const override { return m_outcome.errors.join(QLatin1Char('\n')); }
    QStringList errorList() const override { return m_outcome.errors; }
    QVector<qint64> failedFiles() const override { return m_outcome.failed; }
    QVector<qint64> skippedFiles() const override { return m_outcome.skipped; }
    QVector<qint64> missingFiles() const override { return m_outcome.missing; }

private:
    const ActionOutcome m_outcome;
};

} // namespace

void ActionOutcome::addError(int nErrorCode, const QString &error, qint64 nFileId)
{
    if (nCode != NoSpace)
        nCode = nErrorCode;
    errors.append(error);
    if (nFileId != 0)
        failed.append(nFileId);
}

QSharedPointer<const IResponseInfo> ActionOutcome::response() const
{
    return QSharedPointer<const IResponseInfo>(new OutcomeResponse(*this));
}

ActionTask::ActionTask(QObject *pReceiver, ProgressHandler handler)
    : m_pReceiver(pReceiver)
    , m_handler(std::move(handler))
{
}

void ActionTask::report(const ActionProgress &progress)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_latest = progress;
        if (std::exchange(m_bPosted, true))
            return;
    }
    QMetaObject::invokeMethod(
        m_pReceiver, [pSelf = shared_from_this()] { pSelf->deliver(); }, Qt::QueuedConnection);
}

void ActionTask::deliver()
{
    if (m_bEnded)
        return;
    const qint64 nWait = m_sinceDelivery.isValid() ? k_nIntervalMsec - m_sinceDelivery.elapsed() : 0;
    if (nWait > 0) {
        // Later reports are folded into this delivery.
        QTimer::singleShot(int(nWait), Qt::PreciseTimer, m_pReceiver,
                           [pSelf = shared_from_this()] { pSelf->deliver(); });
        return;
    }
    m_sinceDelivery.start();
    ActionProgress progress;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        progress = m_latest;
        m_bPosted = false;
    }
    if (m_handler)
        m_handler(progress);
}
