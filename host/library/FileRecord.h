#pragma once

#include "basemodule/IHostAnalysis.h"
#include "interfaces/data/IFileInfo.h"
#include "library/CoverBook.h"

#include <QCollator>
#include <QDateTime>

#include <memory>

/** Whether the pictures of a file in its present state were made. The numbers are stored. */
enum class AnalysisState { Waiting = 0, Done = 1, Impossible = 2 };

/** What the library stores of one file. A plain value; crosses threads. */
struct FileRow {
    qint64 id = 0;
    QString folder; ///< Absolute, forward slashes, without a trailing one; shared between the files of a folder.
    QString name;
    qint64 nSize = 0;
    qint64 nModifiedMsec = 0; ///< Milliseconds since 1970, UTC.
    qint64 nType = 0;
    bool bHasVideo = false; ///< Looked up for the one container that holds either; see the scanner.
    bool bAvailable = true;
    qint64 nInode = 0; ///< Tells a moved file from a new one.
    AnalysisState analysis = AnalysisState::Waiting;
    bool bMoved = false; ///< Known from another place; set by the store.
};

Q_DECLARE_METATYPE(FileRow)
Q_DECLARE_METATYPE(QVector<FileRow>)

/** What users added to a file. A plain value; crosses threads. */
struct FileAnnotations {
    QVector<NoteRecord> notes;
    TagRecordList labels;
};

/** Where pictures of files stand; shared by all records so that the base module can be missing or come later. */
struct RenditionSource {
    IHostAnalysis *pAnalysis = nullptr;
    const std::shared_ptr<CoverBook> pCovers = std::make_shared<CoverBook>();
};

/**
 * One file of the library as previews and the grid see it: immutable, answers from memory.
 *
 * Owner: shared. Thread: any; made on the library's thread, where the sort key is computed.
 */
class FileRecord final : public IFileInfo {
public:
    FileRecord(FileRow row, FileAnnotations annotations, QCollatorSortKey sortKey,
               QSharedPointer<const RenditionSource> pRenditions);

    qint64 fileId() const override { return m_row.id; }
    qint64 fileType() const override { return m_row.nType; }
    QString filePath() const override;
    QString fileName() const override { return m_row.name; }
    QString suffix() const override;
    QString description() const override { return {}; }
    QString largePreviewPath() const override;
    /** The preview picture chosen by the user, else the desktop's thumbnail. */
    QString thumbnailPath() const override;
    /** The preview picture chosen by the user; empty where there is none. */
    QString coverPath() const;
    QVector<NoteRecord> notes() const override { return m_annotations.notes; }
    TagRecordList tags() const override { return m_annotations.labels; }
    bool hasVideo(const QString &path) const override;
    bool needsLoader() const override { return true; }
    bool isPreviewPictureFixed() const override { return false; }
    bool isUnavailable() const override { return !m_row.bAvailable; }
    bool hasCachePicture() const override;
    bool isFileMissing() const override { return !m_row.bAvailable; }
    bool isPictureType() const override;
    int pictureKind() const override;

    const FileRow &row() const { return m_row; }

    /** Orders names the way people count: "9" before "10", without regard to case. */
    const QCollatorSortKey &sortKey() const { return m_sortKey; }

    /** The same file with other notes or labels. */
    QSharedPointer<const FileRecord> withAnnotations(const FileAnnotations &annotations) const;

private:
    RenditionPaths renditions() const;

    const FileRow m_row;
    const FileAnnotations m_annotations;
    const QCollatorSortKey m_sortKey;
    const QSharedPointer<const RenditionSource> m_pRenditions;
};

using FileRecordPtr = QSharedPointer<const FileRecord>;
using FileRecordList = QVector<FileRecordPtr>;

Q_DECLARE_METATYPE(FileRecordPtr)
Q_DECLARE_METATYPE(FileRecordList)

/** A collator for file names; not thread-safe, one for each thread. */
QCollator fileNameCollator();
