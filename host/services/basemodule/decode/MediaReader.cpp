#include "services/basemodule/decode/MediaReader.h"

#include "media/CoverArt.h"
#include "media/VideoStill.h"
#include "services/basemodule/decode/JpegReader.h"
#include "services/basemodule/decode/MagickReader.h"
#include "services/basemodule/decode/PictureFormat.h"
#include "services/basemodule/decode/VipsReader.h"

#include <QBuffer>

namespace basemodule {

namespace {

DecodeResult readCover(const QByteArray &bytes, const DecodeRequest &request)
{
    const PictureFormat format = sniffFormat(bytes.left(kSniffLength), QString());
    switch (format) {
    case PictureFormat::Jpeg: {
        QBuffer buffer;
        buffer.setData(bytes);
        buffer.open(QIODevice::ReadOnly);
        return readJpeg(buffer, request);
    }
    case PictureFormat::Bmp:
        return readWithMagick(bytes, format, request);
    case PictureFormat::Png:
    case PictureFormat::Gif:
    case PictureFormat::Tiff:
    case PictureFormat::WebP:
        return readBytesWithVips(bytes, format, request);
    default:
        return {};
    }
}

} // namespace

DecodeResult readMedia(const QByteArray &nativePath, const DecodeRequest &request)
{
    const media::Cancelled cancelled = [&request] {
        return !request.proceed();
    };
    const media::InputPointer pInput = media::openInput(nativePath, cancelled);
    if (pInput == nullptr)
        return {};
    const DecodeResult cover = readCover(media::embeddedCover(*pInput), request);
    if (!cover.fullSize.isEmpty())
        return cover;
    const media::VideoStill video = media::videoSize(*pInput);
    DecodeResult result;
    result.fullSize = video.fullSize;
    result.rotation = video.rotation;
    const QSize target = video.fullSize.isEmpty() ? QSize() : request.targetSize(video.fullSize);
    if (request.headerOnly || target.isEmpty() || !request.accept(qint64(target.width()) * target.height() * 3))
        return result;
    const media::VideoStill still = media::videoStill(*pInput, qMax(target.width(), target.height()), cancelled);
    DecodedPicture picture = DecodedPicture::fromImage(still.image);
    if (picture.isNull())
        return result;
    picture.rotation = result.rotation;
    result.picture = scaledPicture(picture, target);
    return result;
}

} // namespace basemodule
