#include "services/basemodule/decode/MagickReader.h"

#include "services/basemodule/decode/ColorProfile.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>

// The library's headers are not written for the warnings of this project.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wshadow"
#include <magick/MagickCore.h>
#pragma GCC diagnostic pop

namespace basemodule {

namespace {

constexpr int kRowsAtOnce = 64;

struct ExceptionDelete {
    void operator()(ExceptionInfo *pException) const { DestroyExceptionInfo(pException); }
};
struct InfoDelete {
    void operator()(ImageInfo *pInfo) const { DestroyImageInfo(pInfo); }
};
struct ImageDelete {
    void operator()(Image *pImage) const { DestroyImageList(pImage); }
};
using Exception = std::unique_ptr<ExceptionInfo, ExceptionDelete>;
using Info = std::unique_ptr<ImageInfo, InfoDelete>;
using Images = std::unique_ptr<Image, ImageDelete>;

const char *coderOf(PictureFormat format)
{
    switch (format) {
    case PictureFormat::Ico:
        return "ICO";
    case PictureFormat::Tga:
        return "TGA";
    case PictureFormat::Psd:
        return "PSD";
    case PictureFormat::Dds:
        return "DDS";
    case PictureFormat::Pcx:
        return "PCX";
    case PictureFormat::Bmp:
        return "BMP";
    default:
        return nullptr;
    }
}

MagickBooleanType onProgress(const char *, const MagickOffsetType, const MagickSizeType, void *pData)
{
    return static_cast<const DecodeRequest *>(pData)->proceed() ? MagickTrue : MagickFalse;
}

Info makeInfo(const char *pCoder, PictureFormat format, const DecodeRequest &request)
{
    Info info(CloneImageInfo(nullptr));
    // The prefix binds the coder; without it the library would choose one by content.
    std::snprintf(info->filename, sizeof info->filename, "%s:picture", pCoder);
    std::snprintf(info->magick, sizeof info->magick, "%s", pCoder);
    if (format == PictureFormat::Psd || format == PictureFormat::Dds) {
        // Only the merged picture of a layered document, only the largest level of a texture.
        info->scene = 0;
        info->number_scenes = 1;
    }
    SetImageInfoProgressMonitor(info.get(), &onProgress, const_cast<DecodeRequest *>(&request));
    return info;
}

Image *largest(Image *pImages)
{
    Image *pBest = pImages;
    for (Image *p = pImages; p; p = GetNextImageInList(p)) {
        const size_t nArea = p->columns * p->rows;
        const size_t nBest = pBest->columns * pBest->rows;
        if (nArea > nBest || (nArea == nBest && p->depth > pBest->depth))
            pBest = p;
    }
    return pBest;
}

void convertColors(Image *pImage)
{
    const StringInfo *pProfile = GetImageProfile(pImage, "icc");
    if (pProfile) {
        const QByteArray icc(reinterpret_cast<const char *>(GetStringInfoDatum(pProfile)),
                             int(GetStringInfoLength(pProfile)));
        const bool bRgb = pImage->colorspace == sRGBColorspace || pImage->colorspace == RGBColorspace;
        if (!bRgb || ColorProfile::changesRgb(icc)) {
            const QByteArray srgb = ColorProfile::srgbProfile();
            ProfileImage(pImage, "icc", srgb.constData(), size_t(srgb.size()), MagickTrue);
        }
    }
    if (pImage->colorspace != sRGBColorspace)
        TransformImageColorspace(pImage, sRGBColorspace);
}

IDecodedBitmap::PixelLayout layoutOf(const Image *pImage, PictureFormat format)
{
    if (format == PictureFormat::Psd)
        return IDecodedBitmap::Bgra32Layered;
    return pImage->matte ? IDecodedBitmap::Rgba32 : IDecodedBitmap::Bgr24;
}

DecodedPicture exported(Image *pImage, PictureFormat format, const DecodeRequest &request, ExceptionInfo *pException)
{
    DecodedPicture picture;
    const IDecodedBitmap::PixelLayout layout = layoutOf(pImage, format);
    if (!picture.allocate(QSize(int(pImage->columns), int(pImage->rows)), layout))
        return DecodedPicture();
    const char *pMap = layout == IDecodedBitmap::Bgr24 ? "BGR" : (layout == IDecodedBitmap::Rgba32 ? "RGBA" : "BGRA");
    for (int y = 0; y < picture.height; y += kRowsAtOnce) {
        const int nRows = std::min(kRowsAtOnce, picture.height - y);
        if (!request.proceed() || ExportImagePixels(pImage, 0, y, pImage->columns, size_t(nRows), pMap, CharPixel,
                                                    picture.row(y), pException) == MagickFalse)
            return DecodedPicture();
    }
    return picture;
}

void startMagick()
{
    static std::once_flag once;
    std::call_once(once, [] { MagickCoreGenesis(nullptr, MagickFalse); });
}

} // namespace

DecodeResult readWithMagick(const QByteArray &bytes, PictureFormat format, const DecodeRequest &request)
{
    DecodeResult result;
    const char *pCoder = coderOf(format);
    if (!pCoder || bytes.isEmpty())
        return result;
    startMagick();
    const Exception exception(AcquireExceptionInfo());
    const Info info = makeInfo(pCoder, format, request);
    const Images headers(PingBlob(info.get(), bytes.constData(), size_t(bytes.size()), exception.get()));
    if (!headers)
        return result;
    const Image *pHeader = largest(headers.get());
    result.fullSize = QSize(int(pHeader->columns), int(pHeader->rows));
    const qint64 nBytes = qint64(result.fullSize.width()) * result.fullSize.height() * 4;
    // The library works on eight bytes a pixel beside the bitmap handed out.
    if (request.headerOnly || !request.accept(nBytes) || !PixelMemory::isAffordable(2 * nBytes))
        return result;

    const Images images(BlobToImage(info.get(), bytes.constData(), size_t(bytes.size()), exception.get()));
    if (!images || !request.proceed())
        return result;
    Image *pImage = largest(images.get());
    result.fullSize = QSize(int(pImage->columns), int(pImage->rows));
    convertColors(pImage);
    // These coders deliver rows in reading order whatever the file says of its own.
    const DecodedPicture picture = exported(pImage, format, request, exception.get());
    result.picture = scaledPicture(picture, request.targetSize(result.fullSize));
    return result;
}

} // namespace basemodule
