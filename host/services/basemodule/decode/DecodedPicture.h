#pragma once

#include "interfaces/services/IImageDecoder.h"

#include <QImage>
#include <QSharedPointer>
#include <QSize>

#include <functional>

namespace basemodule {

/**
 * The bytes of one bitmap, shared by everyone who looks at it. Allocated here on huge pages where the system has
 * them (a third of the page-fault time of a large decode), or adopted from the library that decoded.
 * Thread: any; written by the decode that made it, read-only afterwards.
 */
class PixelMemory {
public:
    using Release = std::function<void()>;

    /** Null when the bitmap is larger than the limit or than what the machine has left. */
    static QSharedPointer<PixelMemory> allocate(qint64 nBytes);
    static QSharedPointer<PixelMemory> adopt(uchar *pData, qint64 nBytes, Release release);

    /** Whether a bitmap of this size would be taken on. */
    static bool isAffordable(qint64 nBytes);

    ~PixelMemory();
    PixelMemory(const PixelMemory &) = delete;
    PixelMemory &operator=(const PixelMemory &) = delete;

    uchar *data() const { return m_pData; }
    qint64 size() const { return m_nBytes; }

private:
    PixelMemory(uchar *pData, qint64 nBytes, Release release);

    uchar *m_pData;
    qint64 m_nBytes;
    Release m_release;
};

/** A decoded picture: pixels, how to read them, and how far to turn them. A value; copies share the pixels. */
struct DecodedPicture {
    QSharedPointer<PixelMemory> memory;
    int width = 0;
    int height = 0;
    IDecodedBitmap::PixelLayout layout = IDecodedBitmap::Bgra32;
    int rotation = 0; ///< Clockwise degrees to stand upright.

    static int bytesPerPixel(IDecodedBitmap::PixelLayout layout);

    bool isNull() const { return memory.isNull(); }
    int rowLength() const { return width * bytesPerPixel(layout); }
    qint64 byteCount() const { return qint64(rowLength()) * height; }

    /** Reserves memory for a picture of this size; false when it is refused. */
    bool allocate(const QSize &size, IDecodedBitmap::PixelLayout pixelLayout);
    uchar *row(int y) const { return memory->data() + qint64(y) * rowLength(); }

    /** A copy of an opaque image; null when there is no memory for it. */
    static DecodedPicture fromImage(const QImage &image);

    /** The pixels as an image that keeps them alive; not turned. */
    QImage toImage() const;
    /** The same, turned upright. */
    QImage toUprightImage() const;
};

} // namespace basemodule
