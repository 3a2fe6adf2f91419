#include "actions/FileRemoval.h"

#include "actions/DesktopTrash.h"
#include "actions/FileCopy.h"
#include "files/NativePath.h"

#include <QCoreApplication>

#include <cerrno>
#include <functional>
#include <sys/stat.h>

namespace {

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(FileRemoval)
};

IoStatus removeFile(const FileRecordPtr &pRecord)
{
    const QByteArray path = nativePath(pRecord->filePath());
    struct stat state = {};
    if (::lstat(path.constData(), &state) != 0)
        return IoStatus::ofErrno(errno, pRecord->fileName());
    if (S_ISDIR(state.st_mode))
        return {IoStatus::Failed, Words::tr("%1 is a folder now").arg(pRecord->fileName())};
    if (::unlink(path.constData()) == 0)
        return {};
    const int nError = errno;
    // Some file systems protect files that are not writable.
    const bool bProtected = S_ISREG(state.st_mode) && (nError == EACCES || nError == EPERM);
    if (bProtected && ::chmod(path.constData(), state.st_mode | S_IWUSR) == 0) {
        if (::unlink(path.constData()) == 0)
            return {};
        ::chmod(path.constData(), state.st_mode & 07777);
    }
    return IoStatus::ofErrno(nError, pRecord->fileName());
}

IoStatus recycleFile(const FileRecordPtr &pRecord)
{
    const int nError = DesktopTrash::moveToTrash(nativePath(pRecord->filePath()));
    if (nError == 0)
        return {};
    if (nError == ENOTSUP || nError == EXDEV)
        return {IoStatus::Failed, Words::tr("There is no recycle bin for %1").arg(pRecord->fileName())};
    return IoStatus::ofErrno(nError, pRecord->fileName());
}

FileRemoval::Result forEachFile(const FileRecordList &files, ActionTask &task,
                                const std::function<IoStatus(const FileRecordPtr &)> &remove)
{
    FileRemoval::Result result;
    int nDone = 0;
    for (const FileRecordPtr &pRecord : files) {
        if (task.isCancelled()) {
            result.outcome.skipped.append(pRecord->fileId());
            continue;
        }
        const IoStatus status = remove(pRecord);
        // What is gone already is what the user wanted.
        if (status.kind == IoStatus::Missing)
            result.outcome.missing.append(pRecord->fileId());
        if (status.isDone() || status.kind == IoStatus::Missing)
            result.gone.append(pRecord->fileId());
        else
            result.outcome.addError(status.outcomeCode(), status.error, pRecord->fileId());
        ++nDone;
        task.report({100.0 * nDone / files.size(), files.size(), nDone});
    }
    return result;
}

} // namespace

FileRemoval::Result FileRemoval::removeFiles(const FileRecordList &files, ActionTask &task)
{
    return forEachFile(files, task, &removeFile);
}

FileRemoval::Result FileRemoval::recycleFiles(const FileRecordList &files, ActionTask &task)
{
    return forEachFile(files, task, &recycleFile);
}
