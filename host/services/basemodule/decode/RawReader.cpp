#include "services/basemodule/decode/RawReader.h"

#include "services/basemodule/decode/JpegReader.h"

#include <QBuffer>

#include <cstring>
#include <memory>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wshadow"
#include <libraw/libraw.h>
#pragma GCC diagnostic pop

namespace basemodule {

namespace {

int rotationOfFlip(int nFlip)
{
    switch (nFlip) {
    case 3:
        return 180;
    case 5:
        return 270;
    case 6:
        return 90;
    default:
        return 0;
    }
}

DecodedPicture plainPreview(const libraw_thumbnail_t &preview)
{
    DecodedPicture picture;
    const QSize size(preview.twidth, preview.theight);
    const qint64 nBytes = qint64(size.width()) * size.height() * 3;
    if (preview.tcolors != 3 || qint64(preview.tlength) < nBytes || !picture.allocate(size, IDecodedBitmap::Rgb24))
        return DecodedPicture();
    std::memcpy(picture.memory->data(), preview.thumb, size_t(nBytes));
    return picture;
}

} // namespace

RawPreview readRawPreview(const QByteArray &nativePath)
{
    RawPreview result;
    const auto pRaw = std::make_unique<LibRaw>();
    if (pRaw->open_file(nativePath.constData()) != LIBRAW_SUCCESS || pRaw->unpack_thumb() != LIBRAW_SUCCESS)
        return result;
    const libraw_thumbnail_t &preview = pRaw->imgdata.thumbnail;
    result.rotation = rotationOfFlip(pRaw->imgdata.sizes.flip);
    if (preview.tformat == LIBRAW_THUMBNAIL_JPEG)
        result.jpeg = QByteArray(preview.thumb, int(preview.tlength));
    else if (preview.tformat == LIBRAW_THUMBNAIL_BITMAP)
        result.picture = plainPreview(preview);
    return result;
}

DecodeResult readRaw(const QByteArray &nativePath, const DecodeRequest &request)
{
    const RawPreview preview = readRawPreview(nativePath);
    DecodeResult result;
    if (!preview.jpeg.isEmpty()) {
        QBuffer buffer;
        buffer.setData(preview.jpeg);
        buffer.open(QIODevice::ReadOnly);
        return readJpeg(buffer, request, preview.rotation);
    }
    if (preview.picture.isNull())
        return result;
    result.fullSize = QSize(preview.picture.width, preview.picture.height);
    result.rotation = preview.rotation;
    if (request.headerOnly)
        return result;
    DecodedPicture picture = preview.picture;
    picture.rotation = preview.rotation;
    result.picture = scaledPicture(picture, request.targetSize(result.fullSize));
    return result;
}

QByteArray jpegWithRotation(const QByteArray &jpeg, int nRotation)
{
    if (nRotation == 0 || jpegOrientation(jpeg) != 0)
        return jpeg;
    const char nOrientation = nRotation == 90 ? 6 : (nRotation == 180 ? 3 : 8);
    QByteArray block = QByteArrayLiteral("\xff\xe1\x00\x22"
                                         "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0");
    block.resize(36);
    block[29] = nOrientation;
    return jpeg.left(2) + block + jpeg.mid(2);
}

} // namespace basemodule
