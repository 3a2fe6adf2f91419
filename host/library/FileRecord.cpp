#include "library/FileRecord.h"

#include "library/FileTypes.h"

#include <QLocale>

#include <utility>

FileRecord::FileRecord(FileRow row, FileAnnotations annotations, QCollatorSortKey sortKey,
                       QSharedPointer<const RenditionSource> pRenditions)
    : m_row(std::move(row))
    , m_annotations(std::move(annotations))
    , m_sortKey(std::move(sortKey))
    , m_pRenditions(std::move(pRenditions))
{
}

QString FileRecord::filePath() const
{
    return m_row.folder.endsWith(QLatin1Char('/')) ? QString(m_row.folder + m_row.name)
                                                   : QString(m_row.folder + QLatin1Char('/') + m_row.name);
}

QString FileRecord::suffix() const
{
    return FileTypes::suffixOfName(m_row.name);
}

RenditionPaths FileRecord::renditions() const
{
    if (m_pRenditions == nullptr || m_pRenditions->pAnalysis == nullptr)
        return {};
    return m_pRenditions->pAnalysis->renditionPaths(filePath(), m_row.nSize, m_row.nModifiedMsec);
}

QString FileRecord::largePreviewPath() const
{
    return renditions().largePreview;
}

QString FileRecord::thumbnailPath() const
{
    const QString cover = coverPath();
    return cover.isEmpty() ? renditions().thumbnail : cover;
}

QString FileRecord::coverPath() const
{
    return m_pRenditions != nullptr ? m_pRenditions->pCovers->path(m_row.id) : QString();
}

bool FileRecord::hasVideo(const QString &path) const
{
    return path == filePath() && m_row.bHasVideo;
}

bool FileRecord::hasCachePicture() const
{
    return m_row.nType != FileTypes::Unknown || !coverPath().isEmpty();
}

bool FileRecord::isPictureType() const
{
    return FileTypes::isPicture(m_row.nType);
}

int FileRecord::pictureKind() const
{
    constexpr int k_nBackedPicture = 3;
    return FileTypes::isDrawing(m_row.nType) ? k_nBackedPicture : 0;
}

FileRecordPtr FileRecord::withAnnotations(const FileAnnotations &annotations) const
{
    return FileRecordPtr(new FileRecord(m_row, annotations, m_sortKey, m_pRenditions));
}

QCollator fileNameCollator()
{
    // The locale of a bare system compares bytes and cannot count.
    QCollator collator(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}
