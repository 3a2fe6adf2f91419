#include "services/basemodule/decode/BmpReader.h"

#include <QImageReader>

namespace basemodule {

namespace {

DecodedPicture adopted(QImage image)
{
    DecodedPicture picture;
    picture.width = image.width();
    picture.height = image.height();
    picture.layout = IDecodedBitmap::Bgra32;
    auto *pKeeper = new QImage(std::move(image));
    picture.memory = PixelMemory::adopt(pKeeper->bits(), pKeeper->sizeInBytes(), [pKeeper] { delete pKeeper; });
    return picture;
}

DecodedPicture withoutAlpha(const QImage &image, const DecodeRequest &request)
{
    DecodedPicture picture;
    if (!picture.allocate(image.size(), IDecodedBitmap::Bgr24))
        return DecodedPicture();
    for (int y = 0; y < picture.height; ++y) {
        if (y % 64 == 0 && !request.proceed())
            return DecodedPicture();
        const auto *pIn = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        uchar *pOut = picture.row(y);
        for (int x = 0; x < picture.width; ++x, pOut += 3) {
            pOut[0] = uchar(qBlue(pIn[x]));
            pOut[1] = uchar(qGreen(pIn[x]));
            pOut[2] = uchar(qRed(pIn[x]));
        }
    }
    return picture;
}

} // namespace

DecodeResult readBmp(QIODevice &device, const DecodeRequest &request)
{
    DecodeResult result;
    QImageReader reader(&device, QByteArrayLiteral("bmp"));
    const QSize size = reader.size();
    if (size.isEmpty())
        return result;
    result.fullSize = size;
    const qint64 nBytes = qint64(size.width()) * size.height() * 4;
    if (request.headerOnly || !request.accept(nBytes))
        return result;
    QImage image = reader.read();
    if (image.isNull())
        return result;
    if (image.hasAlphaChannel()) {
        result.picture = adopted(std::move(image).convertToFormat(QImage::Format_ARGB32));
    } else {
        image = std::move(image).convertToFormat(QImage::Format_RGB32);
        result.picture = withoutAlpha(image, request);
    }
    result.picture = scaledPicture(result.picture, request.targetSize(result.fullSize));
    return result;
}

} // namespace basemodule
