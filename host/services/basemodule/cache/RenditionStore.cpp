#include "services/basemodule/cache/RenditionStore.h"

#include "files/NativePath.h"
#include "files/PictureWriter.h"
#include "services/basemodule/cache/ThumbnailFiles.h"
#include "services/basemodule/decode/PictureReader.h"
#include "services/basemodule/decode/RawReader.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QtConcurrent>

#include <algorithm>

namespace basemodule {

namespace {

constexpr int kLargestSide = 3840;
constexpr int kJpegQuality = 92;
constexpr int kPngQuality = 80;

bool isInState(const QString &path, qint64 nSize, qint64 nModifiedMsec)
{
    const FileKey key = fileKey(path);
    return !key.isNull() && key.size == nSize && key.modified / 1000000 == nModifiedMsec;
}

} // namespace

CacheFolders CacheFolders::standard()
{
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return {cache + QStringLiteral("/bigimgpreview/renditions"), cache + QStringLiteral("/thumbnails"),
            cache + QStringLiteral("/bigimgpreview/documents")};
}

RenditionStore::RenditionStore(const CacheFolders &folders)
    : m_folders(folders)
{
    m_pruner.setMaxThreadCount(1);
}

RenditionStore::~RenditionStore()
{
    shutdown();
}

// The names are digests already: eight bytes of one tell all files of a library apart at a tenth of the memory.
quint64 RenditionStore::keyOf(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1, 16).toULongLong(nullptr, 16);
}

RenditionPaths RenditionStore::paths(const QString &path, qint64 nSize, qint64 nModifiedMsec)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(path.toUtf8());
    hash.addData(QByteArray::number(nSize) + '/' + QByteArray::number(nModifiedMsec));
    const QFileInfo info(path);
    RenditionPaths result;
    result.largePreview = m_folders.renditions + QLatin1Char('/') + QString::fromLatin1(hash.result().toHex()) +
                          (mayBeTransparent(info.suffix()) ? QStringLiteral(".png") : QStringLiteral(".jpg"));
    result.thumbnail = ThumbnailFiles(m_folders.thumbnails).pathFor(path, ThumbnailFiles::kXLarge);
    const QMutexLocker lock(&m_sourcesMutex);
    m_sources.insert(keyOf(result.largePreview), Source{path, nSize, nModifiedMsec, false});
    m_sources.insert(keyOf(result.thumbnail), Source{path, nSize, nModifiedMsec, true});
    return result;
}

QString RenditionStore::sourceOf(const QString &path) const
{
    if (!path.startsWith(m_folders.renditions) && !path.startsWith(m_folders.thumbnails))
        return QString();
    const QMutexLocker lock(&m_sourcesMutex);
    return m_sources.value(keyOf(path)).path;
}

bool RenditionStore::provide(const QString &path)
{
    if (sourceOf(path).isEmpty())
        return true;
    Source source;
    {
        const QMutexLocker lock(&m_sourcesMutex);
        source = m_sources.value(keyOf(path));
    }
    if (source.isThumbnail)
        return !ThumbnailFiles(m_folders.thumbnails).isOutdated(path, source.path);
    const QMutexLocker making(&m_makeMutex);
    QFile existing(path);
    if (existing.exists()) {
        // The time of use decides what is pruned; the time of change stays, caches compare it.
        if (existing.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
            existing.setFileTime(QDateTime::currentDateTime(), QFileDevice::FileAccessTime);
        return true;
    }
    return !m_bStop && isInState(source.path, source.size, source.modifiedMsec) && make(source, path);
}

QString RenditionStore::renditionOf(const QString &sourcePath)
{
    const FileKey key = fileKey(sourcePath);
    if (key.isNull())
        return QString();
    const QString path = paths(sourcePath, key.size, key.modified / 1000000).largePreview;
    return provide(path) ? path : QString();
}

bool RenditionStore::make(const Source &source, const QString &target)
{
    if (!QDir().mkpath(m_folders.renditions))
        return false;
    pruneLater();
    if (pictureFormat(source.path) == PictureFormat::Raw && makeFromRaw(source, target))
        return true;
    DecodeRequest request;
    request.longestSide = kLargestSide;
    const DecodeResult result = readPicture(source.path, request);
    QSaveFile file(target);
    if (result.picture.isNull() || !file.open(QIODevice::WriteOnly))
        return false;
    QImage image = result.picture.toUprightImage();
    ThumbnailFiles::noteOriginalSize(&image, result);
    const bool bTransparent = target.endsWith(QLatin1String(".png"));
    return writePicture(&file, image, bTransparent ? QByteArrayLiteral("png") : QByteArrayLiteral("jpg"),
                        bTransparent ? kPngQuality : kJpegQuality) &&
           file.commit();
}

bool RenditionStore::makeFromRaw(const Source &source, const QString &target)
{
    const RawPreview preview = readRawPreview(nativePath(source.path));
    QSaveFile file(target);
    if (preview.jpeg.isEmpty() || !file.open(QIODevice::WriteOnly))
        return false;
    file.write(jpegWithRotation(preview.jpeg, preview.rotation));
    return file.commit();
}

void RenditionStore::pruneLater()
{
    if (!m_bStop && m_pruner.activeThreadCount() == 0)
        QtConcurrent::run(&m_pruner, [this] { prune(); });
}

void RenditionStore::prune() const
{
    QFileInfoList files = QDir(m_folders.renditions).entryInfoList(QDir::Files);
    std::sort(files.begin(), files.end(),
              [](const QFileInfo &a, const QFileInfo &b) { return a.lastRead() > b.lastRead(); });
    qint64 nKept = 0;
    for (const QFileInfo &file : qAsConst(files)) {
        if (m_bStop)
            return;
        nKept += file.size();
        if (nKept > m_nDiskBudget)
            QFile::remove(file.filePath());
    }
}

void RenditionStore::shutdown()
{
    m_bStop = true;
    m_pruner.waitForDone();
    // A rendition that is being made is finished first.
    const QMutexLocker making(&m_makeMutex);
}

} // namespace basemodule
