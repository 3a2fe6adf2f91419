#include "services/basemodule/decode/PictureReader.h"

#include "files/NativePath.h"
#include "services/basemodule/decode/BmpReader.h"
#include "services/basemodule/decode/FontReader.h"
#include "services/basemodule/decode/JpegReader.h"
#include "services/basemodule/decode/MagickReader.h"
#include "services/basemodule/decode/MediaReader.h"
#include "services/basemodule/decode/RawReader.h"
#include "services/basemodule/decode/VipsReader.h"
#include "services/basemodule/documents/DocumentConverter.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace basemodule {

namespace {

// Formats without a streaming reader are read whole.
constexpr qint64 kLargestWholeFile = qint64(1) << 30;

std::unique_ptr<QFile> openPicture(const QByteArray &native)
{
    // Never waits for a writer: what became a pipe between listing and loading is refused below.
    const int nHandle = ::open(native.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (nHandle < 0)
        return {};
    auto pFile = std::make_unique<QFile>();
    struct stat state = {};
    const bool bRegular = ::fstat(nHandle, &state) == 0 && S_ISREG(state.st_mode);
    if (!pFile->open(nHandle, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle) || !bRegular)
        return {};
    return pFile;
}

QString suffixOf(const QString &path)
{
    return QFileInfo(path).suffix();
}

DecodeResult readWhole(QFile &file, PictureFormat format, const DecodeRequest &request)
{
    if (file.size() > kLargestWholeFile)
        return {};
    return readWithMagick(file.readAll(), format, request);
}

} // namespace

FileKey fileKey(const QString &path)
{
    FileKey key;
    struct stat state = {};
    if (::stat(nativePath(path).constData(), &state) != 0 || !S_ISREG(state.st_mode))
        return key;
    key.path = path;
    key.size = state.st_size;
    key.modified = qint64(state.st_mtim.tv_sec) * 1000000000 + state.st_mtim.tv_nsec;
    key.inode = state.st_ino;
    return key;
}

std::unique_ptr<QFile> openRegularFile(const QString &path)
{
    return openPicture(nativePath(path));
}

PictureFormat pictureFormat(const QString &path)
{
    const auto pFile = openPicture(nativePath(path));
    return pFile ? sniffFormat(pFile->read(kSniffLength), suffixOf(path)) : PictureFormat::Unknown;
}

DecodeResult readPicture(const QString &path, const DecodeRequest &request)
{
    const QByteArray native = nativePath(path);
    const auto pFile = openPicture(native);
    if (!pFile)
        return {};
    const PictureFormat format = sniffFormat(pFile->read(kSniffLength), suffixOf(path));
    pFile->seek(0);
    switch (format) {
    case PictureFormat::Unknown:
        return {};
    case PictureFormat::Jpeg:
        return readJpeg(*pFile, request);
    case PictureFormat::Bmp: {
        const DecodeResult result = readBmp(*pFile, request);
        return result.fullSize.isEmpty() && pFile->seek(0) ? readWhole(*pFile, format, request) : result;
    }
    case PictureFormat::Ico:
    case PictureFormat::Tga:
    case PictureFormat::Psd:
    case PictureFormat::Dds:
    case PictureFormat::Pcx:
        return readWhole(*pFile, format, request);
    case PictureFormat::Media:
        return readMedia(native, request);
    case PictureFormat::Office:
    case PictureFormat::PostScript: {
        const QString pdf = request.documents ? request.documents->firstPage(path, request) : QString();
        return pdf.isEmpty() ? DecodeResult() : readWithVips(nativePath(pdf), PictureFormat::Pdf, request);
    }
    case PictureFormat::Font:
        return pFile->size() > kLargestWholeFile ? DecodeResult() : readFont(pFile->readAll(), request);
    case PictureFormat::Raw: {
        const DecodeResult result = readRaw(native, request);
        return result.fullSize.isEmpty() ? readWithVips(native, PictureFormat::Tiff, request) : result;
    }
    default:
        return readWithVips(native, format, request);
    }
}

} // namespace basemodule
