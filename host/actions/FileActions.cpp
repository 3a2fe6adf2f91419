#include "actions/FileActions.h"

#include "actions/FileRemoval.h"
#include "actions/FolderExport.h"
#include "actions/PackManifest.h"
#include "actions/PackWriter.h"
#include "library/Library.h"

#include <QFile>

#include <utility>

namespace {

/** A handler that emits a progress signal, unless the action is gone by then. */
template <class Action>
ActionRunner::ProgressHandler progressOf(Action *pAction, void (Action::*progress)(qint64, double, int, int))
{
    return [pGuarded = QPointer<Action>(pAction), progress](qint64 nActionId, const ActionProgress &state) {
        if (pGuarded != nullptr)
            Q_EMIT(pGuarded.data()->*progress)(nActionId, state.fPercent, state.nTotal, state.nAlready);
    };
}

using ResponseInfo = QSharedPointer<const IResponseInfo>;

template <class Action>
ActionRunner::EndHandler resultOf(Action *pAction, void (Action::*result)(qint64, ResponseInfo))
{
    return [pGuarded = QPointer<Action>(pAction), result](qint64 nActionId, const ActionOutcome &outcome) {
        if (pGuarded != nullptr)
            Q_EMIT(pGuarded.data()->*result)(nActionId, outcome.response());
    };
}

/** Puts what was refused beforehand into the result of the rest. */
ActionOutcome joined(ActionOutcome outcome, const ActionOutcome &refused)
{
    for (const QString &error : refused.errors)
        outcome.addError(refused.nCode, error);
    outcome.skipped += refused.skipped;
    return outcome;
}

void cancelOn(const ActionDeskPtr &pDesk, qint64 nActionId)
{
    if (pDesk->pRunner != nullptr)
        pDesk->pRunner->cancel(nActionId);
}

/** Starts removing files one way or the other; `leave` tells the library once the preview had its result. */
qint64 startRemoval(const ActionDeskPtr &pDesk, const QVector<qint64> &fileIds,
                    FileRemoval::Result (*remove)(const FileRecordList &, ActionTask &),
                    void (*leave)(Library *, const FileRemoval::Result &),
                    const ActionRunner::ProgressHandler &onProgress, const ActionRunner::EndHandler &onEnd)
{
    const FileRecordList known = pDesk->records(fileIds);
    if (known.isEmpty() || pDesk->pRunner == nullptr)
        return 0;
    ActionOutcome refused;
    const FileRecordList files = pDesk->deletable(known, &refused);
    const auto pResult = std::make_shared<FileRemoval::Result>();
    return pDesk->pRunner->start(
        [files, refused, remove, pResult](ActionTask &task) {
            *pResult = remove(files, task);
            return joined(pResult->outcome, refused);
        },
        onProgress,
        [pDesk, pResult, leave, onEnd](qint64 nActionId, const ActionOutcome &outcome) {
            onEnd(nActionId, outcome);
            if (pDesk->pLibrary != nullptr && !pResult->gone.isEmpty())
                leave(pDesk->pLibrary, *pResult);
        });
}

/** Files that we deleted are forgotten; those that were not there may be on a drive that comes back. */
void forgetDeleted(Library *pLibrary, const FileRemoval::Result &result)
{
    QVector<qint64> deleted;
    for (const qint64 nId : result.gone) {
        if (!result.outcome.missing.contains(nId))
            deleted.append(nId);
    }
    if (!deleted.isEmpty())
        pLibrary->forgetFiles(deleted);
    if (!result.outcome.missing.isEmpty())
        pLibrary->takeOut(result.outcome.missing);
}

void takeOutRecycled(Library *pLibrary, const FileRemoval::Result &result)
{
    pLibrary->takeOut(result.gone);
}

} // namespace

FileRecordList ActionDesk::records(const QVector<qint64> &fileIds) const
{
    FileRecordList files;
    for (const qint64 nId : fileIds) {
        const FileRecordPtr pRecord = pLibrary != nullptr ? pLibrary->record(nId) : FileRecordPtr();
        if (pRecord != nullptr)
            files.append(pRecord);
    }
    return files;
}

FileRecordList ActionDesk::deletable(const FileRecordList &files, ActionOutcome *pRefused) const
{
    FileRecordList allowed;
    for (const FileRecordPtr &pRecord : files) {
        if (pLibrary == nullptr || !pLibrary->isDeletingBlocked(pRecord->row().folder)) {
            allowed.append(pRecord);
            continue;
        }
        pRefused->addError(ActionOutcome::Failed,
                           Library::tr("%1 is in a folder that is protected from deleting").arg(pRecord->fileName()));
        pRefused->skipped.append(pRecord->fileId());
    }
    return allowed;
}

HostExportAction::HostExportAction(ActionDeskPtr pDesk)
    : m_pDesk(std::move(pDesk))
{
}

qint64 HostExportAction::requestExport(const QString &path, const QVector<qint64> &fileIds, bool bPackage)
{
    const FileRecordList files = m_pDesk->records(fileIds);
    if (path.isEmpty() || files.isEmpty() || m_pDesk->pRunner == nullptr)
        return 0;
    const auto pLeftovers = m_pDesk->pLeftovers;
    ActionRunner::Work work;
    if (bPackage)
        work = [path, files, pLeftovers](ActionTask &task) {
            return PackWriter(path, files, *pLeftovers).run(task);
        };
    else
        work = [path, files, pLeftovers](ActionTask &task) {
            return FolderExport(path, files, *pLeftovers).run(task);
        };
    return m_pDesk->pRunner->start(work, progressOf<IExportAction>(this, &IExportAction::signalExportProgress),
                                   resultOf<IExportAction>(this, &IExportAction::signalExportResult));
}

void HostExportAction::requestCancel(qint64 nActionId)
{
    cancelOn(m_pDesk, nActionId);
}

HostRemoveAction::HostRemoveAction(ActionDeskPtr pDesk)
    : m_pDesk(std::move(pDesk))
{
}

qint64 HostRemoveAction::requestRemove(const QVector<qint64> &fileIds)
{
    return startRemoval(m_pDesk, fileIds, &FileRemoval::removeFiles, &forgetDeleted,
                        progressOf<IRemoveAction>(this, &IRemoveAction::signalRemoveProgress),
                        resultOf<IRemoveAction>(this, &IRemoveAction::signalRemoveResult));
}

void HostRemoveAction::requestCancel(qint64 nActionId)
{
    cancelOn(m_pDesk, nActionId);
}

HostRecycleAction::HostRecycleAction(ActionDeskPtr pDesk)
    : m_pDesk(std::move(pDesk))
{
}

qint64 HostRecycleAction::requestRecycle(const QVector<qint64> &fileIds)
{
    return startRemoval(m_pDesk, fileIds, &FileRemoval::recycleFiles, &takeOutRecycled,
                        progressOf<IRecycleAction>(this, &IRecycleAction::signalRecycleProgress),
                        resultOf<IRecycleAction>(this, &IRecycleAction::signalRecycleResult));
}

void HostRecycleAction::requestCancel(qint64 nActionId)
{
    cancelOn(m_pDesk, nActionId);
}

HostFileAction::HostFileAction(ActionDeskPtr pDesk)
    : m_pDesk(std::move(pDesk))
{
}

qint64 HostFileAction::setFileCover(qint64 nFileId, const QString &path)
{
    if (m_pDesk->records({nFileId}).isEmpty() || m_pDesk->pRunner == nullptr)
        return 0;
    const auto onResult = resultOf<IFileAction>(this, &IFileAction::signalFileResult);
    const auto pCover = std::make_shared<PreparedCover>();
    const auto work = [path, pCover, pLeftovers = m_pDesk->pLeftovers, read = m_pDesk->readPicture,
                       folder = m_pDesk->pLibrary->coverFolder()](ActionTask &task) {
        ActionOutcome outcome;
        if (!path.isEmpty())
            *pCover = prepareCover(path, folder, *pLeftovers, read, task, &outcome);
        return outcome;
    };
    return m_pDesk->pRunner->start(
        work, {}, [pDesk = m_pDesk, pCover, nFileId, onResult](qint64 nActionId, const ActionOutcome &outcome) {
            // A large picture takes longer than the one that was chosen after it, and is replaced when it is ready.
            qint64 &nLatest = (*pDesk->pCoverRequests)[nFileId];
            if (outcome.nCode != ActionOutcome::Done || pDesk->pLibrary == nullptr || nLatest > nActionId) {
                onResult(nActionId, outcome);
                return;
            }
            nLatest = nActionId;
            const QString file = pCover->pFile != nullptr ? QFile::decodeName(pCover->pFile->path()) : QString();
            pDesk->pLibrary->setCover(nFileId, file, pCover->suffix, pCover->pFile,
                                      [nActionId, nFileId, onResult](const QString &error) {
                                          ActionOutcome stored;
                                          if (!error.isEmpty())
                                              stored.addError(ActionOutcome::Failed, error, nFileId);
                                          onResult(nActionId, stored);
                                      });
        });
}

void HostFileAction::requestCancel(qint64 nActionId)
{
    cancelOn(m_pDesk, nActionId);
}
