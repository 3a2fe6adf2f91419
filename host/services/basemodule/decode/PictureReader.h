#pragma once

#include "services/basemodule/decode/DecodeRequest.h"
#include "services/basemodule/decode/PictureFormat.h"

#include <QFile>
#include <QString>

#include <memory>

namespace basemodule {

/** A file in one state; two keys are equal while the file at the path is the same and unchanged. */
struct FileKey {
    QString path;
    qint64 size = -1;
    qint64 modified = -1; ///< Nanoseconds since 1970.
    quint64 inode = 0;

    bool isNull() const { return size < 0; }
    bool operator==(const FileKey &other) const
    {
        return size == other.size && modified == other.modified && inode == other.inode && path == other.path;
    }
};

/**
 * The state of a regular file now; a null key for anything else. Touches the disk.
 */
FileKey fileKey(const QString &path);

/** A regular file opened for reading; null for anything else. Never waits, as a pipe would make it. */
std::unique_ptr<QFile> openRegularFile(const QString &path);

/** What the file holds, by content. Opens and closes it. */
PictureFormat pictureFormat(const QString &path);

/** Decodes one file; any thread. No handle on the file is open when it returns. */
DecodeResult readPicture(const QString &path, const DecodeRequest &request);

} // namespace basemodule
