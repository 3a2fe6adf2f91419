#include "actions/HostRequest.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include <algorithm>

HostRequest::~HostRequest()
{
    release();
}

HostRequest::Sent HostRequest::send(const std::function<qint64()> &request)
{
    const QPointer<HostRequest> pThis(this);
    const quint64 nSerial = m_nSerial;
    // The host's code runs: it may come back here, and may take this object away.
    const QSharedPointer<QObject> pAction = m_pAction;
    m_bSending = true;
    const qint64 nActionId = request();
    if (!pThis || nSerial != m_nSerial)
        return Superseded;
    m_bSending = false;
    m_nActionId = nActionId;
    return isRunning() ? Accepted : Refused;
}

bool HostRequest::hasEarlyResult() const
{
    return std::any_of(m_earlyResults.cbegin(), m_earlyResults.cend(),
                       [this](const Result &result) { return result.nActionId == m_nActionId; });
}

void HostRequest::deliverEarlyResult()
{
    const QVector<Result> results = m_earlyResults;
    m_earlyResults.clear();
    for (const Result &result : results) {
        if (result.nActionId == m_nActionId) {
            receive(result.nActionId, result.pInfo);
            return;
        }
    }
}

void HostRequest::receive(qint64 nActionId, const ResponseInfoPtr &pInfo)
{
    if (m_bSending) {
        m_earlyResults.append({nActionId, pInfo});
        return;
    }
    if (!isRunning() || nActionId != m_nActionId)
        return;
    // A second result of the same request finds nothing to match.
    m_nActionId = -1;
    Q_EMIT signal_result(pInfo);
}

void HostRequest::cancel()
{
    if (!isRunning())
        return;
    const QSharedPointer<QObject> pAction = m_pAction;
    const std::function<void(qint64)> cancel = m_cancel;
    cancel(m_nActionId);
}

void HostRequest::lose()
{
    const bool bHeard = isRunning() || m_bSending;
    release();
    if (bHeard)
        Q_EMIT signal_lost();
}

void HostRequest::release()
{
    ++m_nSerial;
    m_nActionId = -1;
    m_bSending = false;
    m_earlyResults.clear();
    m_cancel = {};
    if (!m_pAction)
        return;
    // This may run inside a signal of the object: it lives until the host's own code has returned.
    QTimer::singleShot(0, QCoreApplication::instance(), [pAction = m_pAction] { Q_UNUSED(pAction) });
    m_pAction.reset();
}
