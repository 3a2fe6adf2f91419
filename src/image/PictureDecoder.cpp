#include "image/PictureDecoder.h"

#include "common/ParallelRows.h"
#include "common/PictureLevels.h"
#include "common/PictureMemory.h"
#include "interfaces/services/IImageDecoder.h"
#include "plugin/PluginInnerData.h"

#include <QMutexLocker>
#include <QTransform>

#include <atomic>
#include <cstring>
#include <memory>

namespace {

struct Releaser {
    template <typename T>
    void operator()(T *pObject) const
    {
        pObject->release();
    }
};
using DocumentHolder = std::unique_ptr<IDecodedDocument, Releaser>;
using BitmapHolder = std::unique_ptr<IDecodedBitmap, Releaser>;

/** Opens a file in the decoder for as long as it lives; closes it also when it could not be opened. */
class OpenedFile {
public:
    OpenedFile(IImageDecoder *pDecoder, const QString &path)
        : m_pDecoder(pDecoder)
        , m_bOpen(pDecoder->openFile(path.toUtf8()))
    {
    }
    ~OpenedFile() { m_pDecoder->closeFile(); }
    Q_DISABLE_COPY(OpenedFile)

    DocumentHolder takeDocument() const { return DocumentHolder(m_bOpen ? m_pDecoder->takeDocument() : nullptr); }

private:
    IImageDecoder *m_pDecoder;
    bool m_bOpen;
};

struct PixelFormat {
    QImage::Format format = QImage::Format_Invalid;
    int nBytes = 0;
};

PixelFormat formatOf(int nPixelLayout)
{
    switch (nPixelLayout) {
    case IDecodedBitmap::Rgb24:
        return {QImage::Format_RGB888, 3};
    case IDecodedBitmap::Bgr24:
        return {QImage::Format_BGR888, 3};
    case IDecodedBitmap::Bgra32:
    case IDecodedBitmap::Bgra32Layered:
        return {QImage::Format_ARGB32, 4};
    case IDecodedBitmap::Rgba32:
        return {QImage::Format_RGBA8888, 4};
    default:
        return {};
    }
}

/** Copies rows of 32-bit pixels, and halves them while they are in the processor's cache. */
void copyWords(const IDecodedBitmap &bitmap, PictureDecoder::Picture *pPicture)
{
    QImage &image = pPicture->image;
    QImage &half = pPicture->firstLevel;
    const QSize halfSize = PictureLevels::nextSize(image.size());
    // Other formats are not yet what a screen shows.
    if (image.format() == QImage::Format_ARGB32 && !halfSize.isEmpty()) {
        half = PluginInnerData::instance()->pictureMemory()->create(halfSize.width(), halfSize.height(),
                                                                    QImage::Format_RGB32);
    }
    uchar *pPixels = image.bits();
    uchar *pHalfPixels = half.isNull() ? nullptr : half.bits();
    std::atomic_bool bOpaque{true};
    forRowsInParallel((image.height() + 1) / 2, image.sizeInBytes(), [&](int nBegin, int nEnd) {
        const auto source = [&bitmap](int y) {
            return reinterpret_cast<const quint32 *>(bitmap.pixels() + qsizetype(bitmap.rowLength()) * y);
        };
        bool bAllOpaque = true;
        for (int nPair = nBegin; nPair < nEnd; ++nPair) {
            const int nUpper = 2 * nPair;
            const int nLower = qMin(nUpper + 1, image.height() - 1);
            for (int y = nUpper; y <= nLower; ++y) {
                auto *pTarget = reinterpret_cast<quint32 *>(pPixels + qsizetype(y) * image.bytesPerLine());
                if (!PictureLevels::copyPixels(source(y), pTarget, image.width()))
                    bAllOpaque = false;
            }
            if (pHalfPixels != nullptr && bAllOpaque) {
                auto *pHalf = reinterpret_cast<quint32 *>(pHalfPixels + qsizetype(nPair) * half.bytesPerLine());
                PictureLevels::halveRow(source(nUpper), source(nLower), pHalf, image.width());
            }
        }
        if (!bAllOpaque)
            bOpaque = false;
    });
    pPicture->bOpaque = bOpaque;
    if (!bOpaque)
        half = QImage();
}

PictureDecoder::Picture copyPixels(const IDecodedBitmap &bitmap)
{
    const PixelFormat pixel = formatOf(bitmap.pixelLayout());
    const int nRowLength = bitmap.rowLength();
    const int nHeight = bitmap.height();
    if (pixel.nBytes == 0 || bitmap.pixels() == nullptr || nRowLength < pixel.nBytes || nHeight < 1)
        return {};

    PictureDecoder::Picture picture;
    QImage &image = picture.image;
    image = PluginInnerData::instance()->pictureMemory()->create(nRowLength / pixel.nBytes, nHeight, pixel.format);
    if (image.isNull()) // out of memory
        return picture;
    uchar *pPixels = image.bits();
    // Rows that do not begin at whole words are copied by the byte.
    const bool bWords = (reinterpret_cast<quintptr>(bitmap.pixels()) | quintptr(nRowLength)) % sizeof(quint32) == 0;
    if (pixel.nBytes == 4 && bWords) {
        copyWords(bitmap, &picture);
        return picture;
    }
    forRowsInParallel(nHeight, image.sizeInBytes(), [&](int nBegin, int nEnd) {
        // Rows of a QImage are padded to whole words, and a row length may carry spare bytes.
        const size_t nBytes = size_t(qMin(nRowLength, image.bytesPerLine()));
        for (int y = nBegin; y < nEnd; ++y) {
            std::memcpy(pPixels + qsizetype(y) * image.bytesPerLine(), bitmap.pixels() + qsizetype(nRowLength) * y,
                        nBytes);
        }
    });
    return picture;
}

} // namespace

PictureDecoder::Picture PictureDecoder::decode(const QString &path, const std::function<bool()> &isUnwanted)
{
    const auto shallStop = [&isUnwanted] {
        return isUnwanted && isUnwanted();
    };
    if (shallStop())
        return {};
    PluginInnerData *pData = PluginInnerData::instance();
    const QMutexLocker locker(pData->decodeLock());
    IImageDecoder *pDecoder = pData->imageDecoder();
    // Waiting for the lock takes as long as other files' decodes: the user may have stepped on meanwhile.
    if (pDecoder == nullptr || shallStop())
        return {};

    const OpenedFile file(pDecoder, path);
    const DocumentHolder pDocument = file.takeDocument();
    if (!pDocument || pDocument->kind() != IDecodedDocument::Raster || !pDocument->hasImageData() || shallStop())
        return {};
    BitmapHolder pBitmap(pDocument->createBitmap(1.0, 1.0));
    if (!pBitmap || shallStop())
        return {};
    const int nRotation = pDocument->rotation();
    Picture picture = copyPixels(*pBitmap);
    // Before turning, so that no more than two bitmaps exist at a time.
    pBitmap.reset();
    if (nRotation != 0 && !picture.image.isNull()) {
        picture.image = picture.image.transformed(QTransform().rotate(nRotation, Qt::ZAxis), Qt::FastTransformation);
        picture.firstLevel = QImage();
    }
    return picture;
}
