#pragma once

#include "actions/ActionTask.h"
#include "library/FileRecord.h"

/** How files leave the disk. Functions of the action's worker thread. */
namespace FileRemoval {

/** What left the disk, beyond the outcome. */
struct Result {
    ActionOutcome outcome;
    QVector<qint64> gone; ///< Removed by us, or found to be gone already.
};

/** Deletes files for good, write-protected ones too; folders are never deleted. */
Result removeFiles(const FileRecordList &files, ActionTask &task);

/** Moves files to the desktop's recycle bin. */
Result recycleFiles(const FileRecordList &files, ActionTask &task);

} // namespace FileRemoval
