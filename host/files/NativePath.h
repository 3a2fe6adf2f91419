#pragma once

#include <QByteArray>
#include <QString>

/**
 * The bytes under which a file stands on disk. A name that is no valid text is spelt with replacement characters in
 * texts; its bytes are then looked for in its folder, which touches the disk. Any thread.
 */
QByteArray nativePath(const QString &path);

/** What the disk says of a path; links are followed. */
struct FileState {
    bool bFile = false; ///< A regular file.
    bool bFolder = false;
    qint64 nSize = 0;
    qint64 nModifiedMsec = 0; ///< Milliseconds since 1970, UTC.
    qint64 nInode = 0;        ///< The same for a file that was moved within its drive.
};

/** The state of what stands at these native bytes. Any thread; touches the disk. */
FileState fileState(const QByteArray &native);
