#include "plugin/NoteStore.h"

#include "interfaces/actions/ICommentAction.h"
#include "interfaces/data/IPreviewDataSource.h"

std::optional<qint64> NoteStore::send(IPreviewDataSource *pSource, qint64 nFileId, const QVector<NoteRecord> &notes)
{
    const quint64 nSerial = ++m_nLastSerial;
    m_unstored.insert(nFileId, {nSerial, notes});
    Request request;
    request.nFileId = nFileId;
    request.pAction = pSource != nullptr ? pSource->commentAction() : QSharedPointer<ICommentAction>();
    if (!request.pAction) {
        finish(nSerial, false);
        return std::nullopt;
    }
    request.connection =
        connect(request.pAction.data(), &ICommentAction::signalCommentResult, this,
                [this, nSerial](qint64 nId, const ResponseInfoPtr &pInfo) { take(nSerial, nId, pInfo); });
    m_requests.insert(nSerial, request);
    m_bSending = true;
    const qint64 nActionId = request.pAction->setCommentsOfFile(nFileId, notes);
    m_bSending = false;
    const bool bEarly = m_early.contains(nActionId);
    const bool bEarlyStored = m_early.take(nActionId);
    m_early.clear();
    const auto it = m_requests.find(nSerial);
    if (it != m_requests.end())
        it->nActionId = nActionId;
    if (nActionId < 1 || bEarly)
        finish(nSerial, nActionId > 0 && bEarlyStored);
    return nActionId;
}

void NoteStore::take(quint64 nSerial, qint64 nActionId, const ResponseInfoPtr &pInfo)
{
    const auto it = m_requests.constFind(nSerial);
    if (it == m_requests.constEnd() || nActionId < 1)
        return;
    const bool bStored = pInfo && pInfo->returnCode() == IResponseInfo::Success;
    if (m_bSending && it->nActionId == 0)
        m_early.insert(nActionId, bStored);
    else if (it->nActionId == nActionId)
        finish(nSerial, bStored);
}

void NoteStore::finish(quint64 nSerial, bool bStored)
{
    const Request request = m_requests.take(nSerial);
    disconnect(request.connection);
    // The action may be emitting at this moment: it goes when it is done.
    QMetaObject::invokeMethod(
        this, [pAction = request.pAction] { Q_UNUSED(pAction) }, Qt::QueuedConnection);
    for (auto it = m_unstored.begin(); it != m_unstored.end(); ++it) {
        if (it->nSerial != nSerial)
            continue;
        const qint64 nFileId = it.key();
        if (bStored) {
            m_unstored.erase(it);
            Q_EMIT signal_stored(nFileId);
        } else {
            Q_EMIT signal_failed(nFileId);
        }
        return;
    }
}

QVector<NoteRecord> NoteStore::newest(qint64 nFileId, const QVector<NoteRecord> &ofRecord) const
{
    const auto it = m_unstored.constFind(nFileId);
    return it != m_unstored.constEnd() ? it->notes : ofRecord;
}

void NoteStore::clear()
{
    m_requests.clear();
    m_unstored.clear();
    m_nRequestedFile = -1;
}

void NoteStore::requestShow(qint64 nFileId, int nPosition)
{
    m_nRequestedFile = nFileId;
    m_nRequestedNote = nPosition;
    Q_EMIT signal_showRequested(nFileId);
}

int NoteStore::takeRequested(qint64 nFileId)
{
    if (m_nRequestedFile != nFileId)
        return -1;
    m_nRequestedFile = -1;
    return m_nRequestedNote;
}
