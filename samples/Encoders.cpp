#include "Encoders.h"

#include <QFile>

#include <cstring>
#include <lcms2.h>
#include <memory>
#undef signals
#include <vips/vips.h>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wshadow"
#include <magick/MagickCore.h>
#pragma GCC diagnostic pop

namespace encoders {

namespace {

struct Unref {
    void operator()(VipsImage *pImage) const { g_object_unref(pImage); }
};
using Vips = std::unique_ptr<VipsImage, Unref>;

QByteArray packedPixels(const QImage &image, int nBands)
{
    const QImage packed = image.convertToFormat(nBands == 4 ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    QByteArray bytes(packed.width() * packed.height() * nBands, Qt::Uninitialized);
    for (int y = 0; y < packed.height(); ++y)
        std::memcpy(bytes.data() + y * packed.width() * nBands, packed.constScanLine(y),
                    size_t(packed.width() * nBands));
    return bytes;
}

Vips toVips(const QImage &image)
{
    const int nBands = image.hasAlphaChannel() ? 4 : 3;
    const QByteArray bytes = packedPixels(image, nBands);
    Vips result(vips_image_new_from_memory_copy(bytes.constData(), size_t(bytes.size()), image.width(), image.height(),
                                                nBands, VIPS_FORMAT_UCHAR));
    result->Type = VIPS_INTERPRETATION_sRGB;
    return result;
}

Vips toKind(Vips image, Options::Kind kind)
{
    static const VipsInterpretation spaces[] = {VIPS_INTERPRETATION_sRGB, VIPS_INTERPRETATION_RGB16,
                                                VIPS_INTERPRETATION_B_W, VIPS_INTERPRETATION_CMYK,
                                                VIPS_INTERPRETATION_scRGB};
    VipsImage *pOut = nullptr;
    if (kind == Options::Kind::Rgb8 || vips_colourspace(image.get(), &pOut, spaces[int(kind)], nullptr) != 0)
        return image;
    return Vips(pOut);
}

bool save(VipsImage *pImage, const QString &path, const QByteArray &suffixOptions)
{
    // The options part of a file name ends it; a bracket inside the name itself would be taken for one.
    const bool bSaved =
        vips_image_write_to_file(pImage, QByteArray(QFile::encodeName(path) + suffixOptions).constData(), nullptr) == 0;
    vips_error_clear();
    return bSaved;
}

} // namespace

bool start(const char *pProgram)
{
    if (vips_init(pProgram) != 0)
        return false;
    MagickCoreGenesis(pProgram, MagickFalse);
    return true;
}

bool withVips(const QImage &image, const QString &path, const Options &options)
{
    const Vips colored = toKind(toVips(image), options.kind);
    VipsImage *pCopy = nullptr;
    if (vips_copy(colored.get(), &pCopy, nullptr) != 0)
        return false;
    const Vips copy(pCopy);
    if (options.orientation != 1)
        vips_image_set_int(copy.get(), VIPS_META_ORIENTATION, options.orientation);
    vips_image_remove(copy.get(), VIPS_META_ICC_NAME);
    if (!options.icc.isEmpty())
        vips_image_set_blob_copy(copy.get(), VIPS_META_ICC_NAME, options.icc.constData(), size_t(options.icc.size()));
    return save(copy.get(), path, options.suffixOptions);
}

bool framesWithVips(const QVector<QImage> &frames, const QString &path, const QByteArray &suffixOptions)
{
    std::vector<Vips> owned;
    std::vector<VipsImage *> plain;
    for (const QImage &frame : frames) {
        owned.push_back(toVips(frame));
        plain.push_back(owned.back().get());
    }
    VipsImage *pOut = nullptr;
    if (vips_arrayjoin(plain.data(), &pOut, int(plain.size()), "across", 1, nullptr) != 0)
        return false;
    const Vips joined(pOut);
    std::vector<int> delays(plain.size(), 60);
    vips_image_set_int(joined.get(), VIPS_META_PAGE_HEIGHT, frames.constFirst().height());
    vips_image_set_array_int(joined.get(), "delay", delays.data(), int(delays.size()));
    vips_image_set_int(joined.get(), "loop", 0);
    return save(joined.get(), path, suffixOptions);
}

bool withMagick(const QImage &image, const QString &path, const char *pCoder)
{
    const bool bAlpha = image.hasAlphaChannel();
    const QByteArray bytes = packedPixels(image, bAlpha ? 4 : 3);
    ExceptionInfo *pException = AcquireExceptionInfo();
    Image *pImage = ConstituteImage(size_t(image.width()), size_t(image.height()), bAlpha ? "RGBA" : "RGB", CharPixel,
                                    bytes.constData(), pException);
    bool bWritten = false;
    if (pImage) {
        ImageInfo *pInfo = CloneImageInfo(nullptr);
        std::snprintf(pInfo->magick, sizeof pInfo->magick, "%s", pCoder);
        std::snprintf(pImage->magick, sizeof pImage->magick, "%s", pCoder);
        size_t nLength = 0;
        void *pBlob = ImageToBlob(pInfo, pImage, &nLength, pException);
        QFile file(path);
        bWritten = pBlob && file.open(QIODevice::WriteOnly) &&
                   file.write(static_cast<const char *>(pBlob), qint64(nLength)) == qint64(nLength);
        RelinquishMagickMemory(pBlob);
        DestroyImageInfo(pInfo);
        DestroyImage(pImage);
    }
    DestroyExceptionInfo(pException);
    return bWritten;
}

namespace {

cmsHPROFILE makeWideGamut()
{
    const cmsCIExyY white = {0.3127, 0.3290, 1.0};
    const cmsCIExyYTRIPLE primaries = {{0.64, 0.33, 1.0}, {0.21, 0.71, 1.0}, {0.15, 0.06, 1.0}};
    cmsToneCurve *pGamma = cmsBuildGamma(nullptr, 2.2);
    cmsToneCurve *curves[3] = {pGamma, pGamma, pGamma};
    cmsHPROFILE pProfile = cmsCreateRGBProfile(&white, &primaries, curves);
    cmsFreeToneCurve(pGamma);
    return pProfile;
}

} // namespace

QByteArray wideGamutProfile()
{
    cmsHPROFILE pProfile = makeWideGamut();
    cmsUInt32Number nSize = 0;
    cmsSaveProfileToMem(pProfile, nullptr, &nSize);
    QByteArray bytes(int(nSize), '\0');
    cmsSaveProfileToMem(pProfile, bytes.data(), &nSize);
    cmsCloseProfile(pProfile);
    return bytes;
}

QImage inWideGamut(const QImage &image)
{
    QImage result = image.convertToFormat(QImage::Format_RGB888);
    cmsHPROFILE pWide = makeWideGamut();
    cmsHPROFILE pSrgb = cmsCreate_sRGBProfile();
    cmsHTRANSFORM pTransform =
        cmsCreateTransform(pSrgb, TYPE_RGB_8, pWide, TYPE_RGB_8, INTENT_RELATIVE_COLORIMETRIC, 0);
    for (int y = 0; y < result.height(); ++y)
        cmsDoTransform(pTransform, result.constScanLine(y), result.scanLine(y), cmsUInt32Number(result.width()));
    cmsDeleteTransform(pTransform);
    cmsCloseProfile(pSrgb);
    cmsCloseProfile(pWide);
    return result;
}

} // namespace encoders
