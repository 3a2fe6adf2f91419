#include "services/basemodule/cache/ThumbnailFiles.h"

#include "files/PictureWriter.h"
#include "services/basemodule/decode/PictureReader.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QTemporaryFile>
#include <QUrl>

#include <algorithm>
#include <cstdio>

namespace basemodule {

namespace {

const char *folderOf(int nBucket)
{
    switch (nBucket) {
    case ThumbnailFiles::kNormal:
        return "normal";
    case ThumbnailFiles::kLarge:
        return "large";
    case ThumbnailFiles::kXLarge:
        return "x-large";
    default:
        return "xx-large";
    }
}

/** Within these bytes of a thumbnail stand the texts that tell where it comes from. */
constexpr int kHeadLength = 2048;

constexpr int kPngQuality = 80;

// The address exactly as other programs of the desktop write it: its digest names the file.
QByteArray uriOf(const QString &path)
{
    // Not the bytes on disk where a name is no valid text: names are wanted while painting, and asking the disk is
    // slow.
    return "file://" + QFile::encodeName(path).toPercentEncoding("!$&'()*+,/:=@");
}

} // namespace

int ThumbnailFiles::bucketFor(int nSide)
{
    for (const int nBucket : {kNormal, kLarge, kXLarge}) {
        if (nSide <= nBucket)
            return nBucket;
    }
    return kXxLarge;
}

QString ThumbnailFiles::pathFor(const QString &sourcePath, int nBucket) const
{
    const QByteArray digest = QCryptographicHash::hash(uriOf(sourcePath), QCryptographicHash::Md5).toHex();
    return m_folder + QLatin1Char('/') + QLatin1String(folderOf(nBucket)) + QLatin1Char('/') +
           QString::fromLatin1(digest) + QStringLiteral(".png");
}

QImage ThumbnailFiles::thumbnail(const QString &sourcePath, int nBucket, DecodeControl *pControl, bool *pbLost) const
{
    const FileKey key = fileKey(sourcePath);
    if (key.isNull())
        return {};
    const QByteArray uri = uriOf(sourcePath);
    const QString path = pathFor(sourcePath, nBucket);
    const qint64 nModifiedSec = key.modified / 1000000000;
    QImage image = load(path, uri, nModifiedSec);
    if (image.isNull())
        image = larger(sourcePath, nBucket, uri, nModifiedSec);
    if (!image.isNull())
        return image;
    DecodeRequest request;
    request.longestSide = nBucket;
    request.control = pControl;
    request.documents = m_pDocuments;
    request.wait = DocumentWait::Worker;
    const DecodeResult result = readPicture(sourcePath, request);
    image = result.picture.toUprightImage();
    noteOriginalSize(&image, result);
    // A picture smaller than its thumbnail, and thumbnails themselves, are not worth a second file.
    const bool bReduced = result.fullSize.width() > nBucket || result.fullSize.height() > nBucket;
    if (!image.isNull() && bReduced && !sourcePath.startsWith(m_folder)) {
        const bool bStored = store(image, path, uri, nModifiedSec);
        if (pbLost != nullptr)
            *pbLost = !bStored;
    }
    return image;
}

QImage ThumbnailFiles::larger(const QString &sourcePath, int nBucket, const QByteArray &uri, qint64 nModifiedSec) const
{
    // The one that the analysis makes serves all smaller sizes, without the file itself being read again.
    if (nBucket >= kXLarge)
        return {};
    const QImage image = load(pathFor(sourcePath, kXLarge), uri, nModifiedSec);
    if (image.width() <= nBucket && image.height() <= nBucket)
        return image;
    QImage result = image.scaled(nBucket, nBucket, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    const QStringList keys = image.textKeys();
    for (const QString &key : keys)
        result.setText(key, image.text(key));
    return result;
}

ThumbnailFiles::Kept ThumbnailFiles::keep(const QString &sourcePath, int nBucket, DecodeControl *pControl) const
{
    const FileKey key = fileKey(sourcePath);
    if (key.isNull())
        return Kept::Away;
    // The texts stand before the pixels: no need to read these.
    QFile file(pathFor(sourcePath, nBucket));
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray head = file.read(kHeadLength);
        const QByteArray time =
            QByteArrayLiteral("Thumb::MTime") + '\0' + QByteArray::number(key.modified / 1000000000);
        if (head.contains(time) && head.contains(uriOf(sourcePath)))
            return Kept::Yes;
    }
    bool bLost = false;
    if (!thumbnail(sourcePath, nBucket, pControl, &bLost).isNull())
        return bLost ? Kept::NotWritten : Kept::Yes;
    // Its drive may have gone while it was read.
    return fileKey(sourcePath).isNull() ? Kept::Away : Kept::Impossible;
}

void ThumbnailFiles::prune(qint64 nBudget, const std::atomic_bool &cancelled) const
{
    QFileInfoList files;
    qint64 nBytes = 0;
    for (const int nBucket : {kNormal, kLarge, kXLarge, kXxLarge}) {
        const QFileInfoList found =
            QDir(m_folder + QLatin1Char('/') + QLatin1String(folderOf(nBucket))).entryInfoList(QDir::Files);
        for (const QFileInfo &file : found)
            nBytes += file.size();
        files += found;
    }
    if (nBytes <= nBudget)
        return;
    std::sort(files.begin(), files.end(),
              [](const QFileInfo &a, const QFileInfo &b) { return a.lastRead() < b.lastRead(); });
    nBytes = 0;
    QFileInfoList ours;
    for (const QFileInfo &info : qAsConst(files)) {
        if (cancelled)
            return;
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly) || !file.read(kHeadLength).contains("bigimgpreview"))
            continue;
        nBytes += info.size();
        ours.append(info);
    }
    for (const QFileInfo &info : qAsConst(ours)) {
        if (nBytes <= nBudget || cancelled)
            return;
        if (QFile::remove(info.filePath()))
            nBytes -= info.size();
    }
}

void ThumbnailFiles::noteOriginalSize(QImage *pImage, const DecodeResult &result)
{
    if (pImage->isNull() || result.fullSize.isEmpty())
        return;
    const QSize upright = result.rotation % 180 != 0 ? result.fullSize.transposed() : result.fullSize;
    pImage->setText(QStringLiteral("Thumb::Image::Width"), QString::number(upright.width()));
    pImage->setText(QStringLiteral("Thumb::Image::Height"), QString::number(upright.height()));
}

bool ThumbnailFiles::isOutdated(const QString &thumbnailPath, const QString &sourcePath) const
{
    const FileKey key = fileKey(sourcePath);
    return key.isNull() || load(thumbnailPath, uriOf(sourcePath), key.modified / 1000000000).isNull();
}

QImage ThumbnailFiles::load(const QString &thumbnailPath, const QByteArray &uri, qint64 nModifiedSec) const
{
    if (!QFile::exists(thumbnailPath))
        return {};
    QImageReader reader(thumbnailPath, QByteArrayLiteral("png"));
    const QSize size = reader.size();
    // The reader itself cannot tell texts whose key holds colons; the picture can.
    const QImage image = qMax(size.width(), size.height()) <= kXxLarge ? reader.read() : QImage();
    const QString modified = image.text(QStringLiteral("Thumb::MTime")).section(QLatin1Char('.'), 0, 0);
    const bool bSame =
        modified == QString::number(nModifiedSec) && image.text(QStringLiteral("Thumb::URI")).toUtf8() == uri;
    return bSame ? image : QImage();
}

bool ThumbnailFiles::store(const QImage &image, const QString &thumbnailPath, const QByteArray &uri,
                           qint64 nModifiedSec) const
{
    const QString folder = QFileInfo(thumbnailPath).path();
    if (!QDir().exists(folder)) {
        if (!QDir().mkpath(folder))
            return false;
        QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }
    // A temporary file is made readable by its owner only, as these folders want it.
    QTemporaryFile file(folder + QStringLiteral("/.bigimgpreview-XXXXXX"));
    if (!file.open())
        return false;
    QImage noted = image;
    noted.setText(QStringLiteral("Thumb::URI"), QString::fromUtf8(uri));
    noted.setText(QStringLiteral("Thumb::MTime"), QString::number(nModifiedSec));
    noted.setText(QStringLiteral("Software"), QStringLiteral("bigimgpreview"));
    if (!writePicture(&file, noted, QByteArrayLiteral("png"), kPngQuality) || !file.flush())
        return false;
    const QByteArray from = QFile::encodeName(file.fileName());
    file.close();
    const bool bStored = std::rename(from.constData(), QFile::encodeName(thumbnailPath).constData()) == 0;
    file.setAutoRemove(!bStored);
    return bStored;
}

} // namespace basemodule
