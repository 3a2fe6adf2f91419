#include "services/basemodule/decode/DecodedPicture.h"

#include <QFile>
#include <QTransform>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#endif

namespace basemodule {

namespace {

constexpr qint64 kLargestBitmap = qint64(2) << 30;
constexpr qint64 kHugePage = qint64(2) << 20;
// What the rest of the system keeps however large a picture is.
constexpr qint64 kMemoryLeftAlone = qint64(128) << 20;

qint64 availableMemory()
{
    QFile file(QStringLiteral("/proc/meminfo"));
    if (!file.open(QIODevice::ReadOnly))
        return kLargestBitmap;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("MemAvailable:"))
            return line.mid(13).trimmed().split(' ').constFirst().toLongLong() * 1024;
    }
    return kLargestBitmap;
}

} // namespace

PixelMemory::PixelMemory(uchar *pData, qint64 nBytes, Release release)
    : m_pData(pData)
    , m_nBytes(nBytes)
    , m_release(std::move(release))
{
}

PixelMemory::~PixelMemory()
{
    m_release();
}

bool PixelMemory::isAffordable(qint64 nBytes)
{
    if (nBytes <= 0 || nBytes > kLargestBitmap - 1)
        return false;
    // Reading the memory state costs more than it tells for an everyday picture.
    return nBytes < (kMemoryLeftAlone / 4) || nBytes + kMemoryLeftAlone < availableMemory();
}

QSharedPointer<PixelMemory> PixelMemory::allocate(qint64 nBytes)
{
    if (!isAffordable(nBytes))
        return {};
    const bool bHuge = nBytes >= 2 * kHugePage;
    const qint64 nReserved = bHuge ? (nBytes + kHugePage - 1) / kHugePage * kHugePage : nBytes;
    void *pData = bHuge ? std::aligned_alloc(size_t(kHugePage), size_t(nReserved)) : std::malloc(size_t(nReserved));
    if (!pData)
        return {};
#ifdef MADV_HUGEPAGE
    if (bHuge)
        madvise(pData, size_t(nReserved), MADV_HUGEPAGE);
#endif
    return QSharedPointer<PixelMemory>(
        new PixelMemory(static_cast<uchar *>(pData), nBytes, [pData] { std::free(pData); }));
}

QSharedPointer<PixelMemory> PixelMemory::adopt(uchar *pData, qint64 nBytes, Release release)
{
    return QSharedPointer<PixelMemory>(new PixelMemory(pData, nBytes, std::move(release)));
}

int DecodedPicture::bytesPerPixel(IDecodedBitmap::PixelLayout layout)
{
    return layout == IDecodedBitmap::Rgb24 || layout == IDecodedBitmap::Bgr24 ? 3 : 4;
}

DecodedPicture DecodedPicture::fromImage(const QImage &image)
{
    const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    DecodedPicture picture;
    if (rgb.isNull() || !picture.allocate(rgb.size(), IDecodedBitmap::Rgb24))
        return {};
    for (int y = 0; y < rgb.height(); ++y)
        std::memcpy(picture.row(y), rgb.constScanLine(y), std::size_t(picture.rowLength()));
    return picture;
}

bool DecodedPicture::allocate(const QSize &size, IDecodedBitmap::PixelLayout pixelLayout)
{
    width = size.width();
    height = size.height();
    layout = pixelLayout;
    memory = size.isEmpty() ? QSharedPointer<PixelMemory>()
                            : PixelMemory::allocate(qint64(width) * height * bytesPerPixel(layout));
    return !memory.isNull();
}

QImage DecodedPicture::toImage() const
{
    if (isNull())
        return {};
    QImage::Format format = QImage::Format_ARGB32;
    if (layout == IDecodedBitmap::Rgb24)
        format = QImage::Format_RGB888;
    else if (layout == IDecodedBitmap::Bgr24)
        format = QImage::Format_BGR888;
    else if (layout == IDecodedBitmap::Rgba32)
        format = QImage::Format_RGBA8888;
    auto *pKeeper = new QSharedPointer<PixelMemory>(memory);
    return QImage(
        static_cast<const uchar *>(memory->data()), width, height, rowLength(), format,
        [](void *pOpaque) { delete static_cast<QSharedPointer<PixelMemory> *>(pOpaque); }, pKeeper);
}

QImage DecodedPicture::toUprightImage() const
{
    const QImage image = toImage();
    return rotation == 0 ? image : image.transformed(QTransform().rotate(rotation));
}

} // namespace basemodule
