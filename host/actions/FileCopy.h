#pragma once

#include "actions/ActionTask.h"
#include "actions/UniqueFd.h"

#include <functional>

struct stat;

/** How a step that reads or writes ended. */
struct IoStatus {
    enum Kind { Done, Cancelled, NoSpace, Missing, Failed };

    Kind kind = Done;
    QString error; ///< Readable by the user; empty unless something went wrong.

    bool isDone() const { return kind == Done; }
    int outcomeCode() const;

    /** What this errno means for a file called so. */
    static IoStatus ofErrno(int nError, const QString &what);
};

/** Told of each stretch of bytes; false stops the work. */
using BytesHandler = std::function<bool(qint64 nBytes)>;

/** Opens a regular file for reading; links are followed, and nothing else is waited for. */
UniqueFd openSource(const QByteArray &path, struct stat *pState, IoStatus *pStatus);

/** Whether the open file is still in the state it was opened in. */
bool isUnchanged(int nFd, const struct stat &before);

/**
 * Copies a file to a new name in an open folder: content with its holes, permissions, times and the user's attributes.
 * Shares the blocks where the file system can, otherwise lets the kernel copy. With bSync the content is on the disk
 * when this returns. A file that changes meanwhile is copied again, at most twice. Any thread.
 */
IoStatus copyFile(const QByteArray &source, int nFolder, const QByteArray &name, bool bSync,
                  const BytesHandler &onBytes);

/** Keeps a growing file's unwritten part small, so that neither a cancel nor the final sync waits for long. */
class WriteBehind {
public:
    explicit WriteBehind(int nFd)
        : m_nFd(nFd)
    {
    }
    void written(qint64 nEnd);

private:
    const int m_nFd;
    qint64 m_nStarted = 0;
    qint64 m_nPrevious = 0;
};
