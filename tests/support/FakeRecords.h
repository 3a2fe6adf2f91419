#pragma once

#include "interfaces/data/IFileInfo.h"
#include "interfaces/data/IResponseInfo.h"
#include "interfaces/data/TagRecord.h"

#include <QSize>

/** A file record made of plain values. Fill it before it is shared. */
class FakeFileInfo final : public IFileInfo {
public:
    FakeFileInfo(qint64 nId, qint64 nType, const QString &filePath)
        : id(nId)
        , type(nType)
        , path(filePath)
    {
    }

    qint64 fileId() const override { return id; }
    qint64 fileType() const override { return type; }
    QString filePath() const override { return path; }
    QString fileName() const override { return path.section(QLatin1Char('/'), -1); }
    QString suffix() const override { return fileName().section(QLatin1Char('.'), -1); }
    QString description() const override { return text; }
    QString largePreviewPath() const override { return largePreview; }
    QString thumbnailPath() const override { return thumbnail; }
    QVector<NoteRecord> notes() const override { return noteList; }
    TagRecordList tags() const override { return tagList; }
    bool hasVideo(const QString &) const override { return videoStream; }
    bool needsLoader() const override { return loaderNeeded; }
    bool isPreviewPictureFixed() const override { return previewFixed; }
    bool isUnavailable() const override { return unavailable; }
    bool hasCachePicture() const override { return cachePicture; }
    bool isFileMissing() const override { return missing; }
    bool isPictureType() const override { return picture; }
    int pictureKind() const override { return kind; }

    qint64 id = 0;
    qint64 type = 0;
    QString path;
    QString text;
    QString largePreview;
    QString thumbnail;
    QVector<NoteRecord> noteList;
    TagRecordList tagList; ///< Labels, which the data source hands out with the record.
    bool videoStream = false;
    bool loaderNeeded = true;
    bool previewFixed = false;
    bool unavailable = false;
    bool cachePicture = false;
    bool missing = false;
    bool picture = false;
    int kind = 0;
};

/** An answer made of plain values; success as it stands. */
class FakeResponse final : public IResponseInfo {
public:
    int returnCode() const override { return code; }
    QString errorMessage() const override { return message; }
    QStringList errorList() const override { return errors; }
    QVector<qint64> failedFiles() const override { return failed; }
    QVector<qint64> skippedFiles() const override { return skipped; }
    QVector<qint64> missingFiles() const override { return missing; }

    static ResponseInfoPtr success() { return QSharedPointer<FakeResponse>::create(); }
    static ResponseInfoPtr failure(int nCode, const QStringList &lines = {})
    {
        const auto pResponse = QSharedPointer<FakeResponse>::create();
        pResponse->code = nCode;
        pResponse->errors = lines;
        return pResponse;
    }

    int code = Success;
    QString message;
    QStringList errors;
    QVector<qint64> failed;
    QVector<qint64> skipped;
    QVector<qint64> missing;
};

inline TagRecordPtr makeTag(quint64 nId, const QString &name = {})
{
    const auto pTag = QSharedPointer<TagRecord>::create();
    pTag->id = nId;
    pTag->name = name;
    return pTag;
}
