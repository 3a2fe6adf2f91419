#pragma once

#include "interfaces/data/NoteRecord.h"
#include "interfaces/data/TagRecord.h"

#include <QMetaType>
#include <QSharedPointer>
#include <QString>
#include <QVector>

/**
 * The host's record of one file: read-only, shared, a picture of the moment it was asked for.
 *
 * Every operation answers at once from memory (none may touch the disk) and may be called from any thread. Paths use
 * forward slashes; on Windows back slashes are understood as well. A text that is not known is empty.
 */
class IFileInfo {
public:
    /** The file's id in the host's library. */
    virtual qint64 fileId() const = 0;

    /** File-type number of the host; 0 when the type is unknown. */
    virtual qint64 fileType() const = 0;

    /** Absolute path of the file itself. */
    virtual QString filePath() const = 0;

    /** File name with suffix, without folder. */
    virtual QString fileName() const = 0;

    /** Suffix without dot, as the file spells it. */
    virtual QString suffix() const = 0;

    /** A further line about the file that the host wants shown beside the name; may be empty. */
    virtual QString description() const = 0;

    /** Path of the large rendition made by the host; empty or not existing when there is none. */
    virtual QString largePreviewPath() const = 0;

    /** Path of the thumbnail made by the host; empty or not existing when there is none. */
    virtual QString thumbnailPath() const = 0;

    /** Region notes in the host's order. */
    virtual QVector<NoteRecord> notes() const = 0;

    /** Labels of the file. */
    virtual TagRecordList tags() const = 0;

    /** Whether the file at this path holds a video stream; told apart audio from video in shared containers. */
    virtual bool hasVideo(const QString &path) const = 0;

    /** Whether the picture must be read by the loader; false when the thumbnail cache holds it large enough. */
    virtual bool needsLoader() const = 0;

    /** Whether the user may not change this file's preview picture: hides that entry of an image's menu. */
    virtual bool isPreviewPictureFixed() const = 0;

    /** The file cannot be reached now (drive away, removed by another program): drawn dimmed. */
    virtual bool isUnavailable() const = 0;

    /** The host can give a picture of the file through ITSCacheManager. */
    virtual bool hasCachePicture() const = 0;

    /** The file itself is gone. */
    virtual bool isFileMissing() const = 0;

    /** The file counts as a picture where its type is shown as text. */
    virtual bool isPictureType() const = 0;

    /** Kind of picture: 3 asks for a grey backing behind it (line drawings, transparent pictures); else 0. */
    virtual int pictureKind() const = 0;

protected:
    ~IFileInfo() = default;
};

using FileInfoPtr = QSharedPointer<const IFileInfo>;

Q_DECLARE_METATYPE(QSharedPointer<const IFileInfo>)
