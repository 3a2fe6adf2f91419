#include "library/LibraryActions.h"

#include "library/Library.h"

QSharedPointer<const IResponseInfo> LibraryResponse::make(bool bDone, const QString &error,
                                                          const QVector<qint64> &fileIds)
{
    auto *pResponse = new LibraryResponse;
    if (!bDone) {
        pResponse->m_nReturnCode = 1;
        pResponse->m_errors.append(error);
        pResponse->m_failed = fileIds;
    }
    return QSharedPointer<const IResponseInfo>(pResponse);
}

LibraryCommentAction::LibraryCommentAction(Library *pLibrary)
    : m_pLibrary(pLibrary)
{
    connect(pLibrary, &Library::signalNotesStored, this,
            [this](qint64 nActionId, const QSharedPointer<const IResponseInfo> &pResponse) {
                if (m_running.remove(nActionId))
                    Q_EMIT signalCommentResult(nActionId, pResponse);
            });
}

qint64 LibraryCommentAction::setCommentsOfFile(qint64 nFileId, const QVector<NoteRecord> &notes)
{
    if (m_pLibrary == nullptr || m_pLibrary->record(nFileId) == nullptr)
        return 0;
    const qint64 nActionId = m_pLibrary->setNotes(nFileId, notes);
    m_running.insert(nActionId);
    return nActionId;
}

LibraryTagAction::LibraryTagAction(Library *pLibrary)
    : m_pLibrary(pLibrary)
{
    connect(pLibrary, &Library::signalLabelsStored, this,
            [this](qint64 nActionId, const QSharedPointer<const IResponseInfo> &pResponse) {
                if (m_running.remove(nActionId))
                    Q_EMIT signalTagResult(nActionId, pResponse);
            });
}

qint64 LibraryTagAction::associateTagsWithFiles(const QVector<qint64> &fileIds, const TagRecordList &tags)
{
    if (m_pLibrary == nullptr || fileIds.isEmpty() || tags.isEmpty())
        return 0;
    const qint64 nActionId = m_pLibrary->addLabels(fileIds, tags);
    m_running.insert(nActionId);
    return nActionId;
}
