#include "services/basemodule/decode/VipsPipeline.h"

#include "services/basemodule/decode/ColorProfile.h"
#include "services/basemodule/decode/VipsReader.h"

#include <QtGlobal>

#include <algorithm>

namespace basemodule {

namespace {

QByteArray profileOf(VipsImage *pImage)
{
    const void *pData = nullptr;
    size_t nLength = 0;
    if (vips_image_get_typeof(pImage, VIPS_META_ICC_NAME) == 0 ||
        vips_image_get_blob(pImage, VIPS_META_ICC_NAME, &pData, &nLength) != 0 || nLength > (1u << 24))
        return {};
    return QByteArray(static_cast<const char *>(pData), int(nLength));
}

bool isFloat(const VipsPicture &image)
{
    return vips_band_format_isfloat(vips_image_get_format(image.get()));
}

VipsPicture firstBands(VipsPicture image, int nBands)
{
    VipsImage *pOut = nullptr;
    if (vips_extract_band(image.get(), &pOut, 0, "n", nBands, nullptr) != 0)
        return {};
    return VipsPicture(pOut);
}

VipsPicture unpackedRadiance(VipsPicture image)
{
    if (vips_image_get_coding(image.get()) != VIPS_CODING_RAD)
        return image;
    VipsImage *pOut = nullptr;
    if (vips_rad2float(image.get(), &pOut, nullptr) != 0)
        return {};
    return VipsPicture(pOut);
}

// The brightest colour value of a float picture, read from a thinned-out copy of its own.
double brightestValue(VipsPicture image)
{
    image = image ? unpackedRadiance(std::move(image)) : VipsPicture();
    if (image && image->Bands > 3)
        image = firstBands(std::move(image), 3);
    if (!image)
        return 1.0;
    const int nStep = std::max(1, std::max(image->Xsize, image->Ysize) / 512);
    VipsImage *pThin = nullptr;
    if (vips_subsample(image.get(), &pThin, std::min(nStep, image->Xsize), std::min(nStep, image->Ysize), nullptr) != 0)
        return 1.0;
    const VipsPicture thin(pThin);
    double fMax = 1.0;
    // A percentile, so that one sparkle does not darken the whole picture, is not worth a histogram of floats here.
    if (vips_max(thin.get(), &fMax, nullptr) != 0 || !(fMax < 1e6))
        return 1.0;
    return fMax;
}

// Compresses values above white (1.0) smoothly: x (1 + x / w²) / (1 + x), so that the brightest value w becomes white.
VipsPicture toneMapped(VipsPicture image, double fBrightest)
{
    VipsImage *pFactor = nullptr;
    VipsImage *pNumerator = nullptr;
    VipsImage *pDivisor = nullptr;
    VipsImage *pOut = nullptr;
    vips_linear1(image.get(), &pFactor, 1.0 / (fBrightest * fBrightest), 1.0, nullptr);
    const VipsPicture factor(pFactor);
    vips_linear1(image.get(), &pDivisor, 1.0, 1.0, nullptr);
    const VipsPicture divisor(pDivisor);
    if (!factor || !divisor || vips_multiply(image.get(), factor.get(), &pNumerator, nullptr) != 0)
        return {};
    const VipsPicture numerator(pNumerator);
    if (vips_divide(numerator.get(), divisor.get(), &pOut, nullptr) != 0)
        return {};
    return VipsPicture(pOut);
}

VipsPicture withAlpha(const VipsPicture &colors, const VipsPicture &alpha)
{
    VipsImage *pOut = nullptr;
    if (!colors || !alpha || vips_bandjoin2(colors.get(), alpha.get(), &pOut, nullptr) != 0)
        return {};
    return VipsPicture(pOut);
}

VipsPicture bandAt(const VipsPicture &image, int nBand)
{
    VipsImage *pOut = nullptr;
    return vips_extract_band(image.get(), &pOut, nBand, nullptr) == 0 ? VipsPicture(pOut) : VipsPicture();
}

VipsPicture asByte(const VipsPicture &image, double fScale)
{
    VipsImage *pScaled = nullptr;
    if (!image || vips_linear1(image.get(), &pScaled, fScale, 0.0, "uchar", TRUE, nullptr) != 0)
        return {};
    return VipsPicture(pScaled);
}

// Scene-referred light (EXR, Radiance, float TIFF and the like): 1.0 is white, more is brighter than white.
VipsPicture fromLight(VipsPicture image, const std::function<VipsPicture()> &reload)
{
    const int nBands = image->Bands;
    const bool bColor = nBands >= 3;
    const bool bAlpha = nBands == 2 || nBands == 4;
    const double fBrightest = brightestValue(reload());
    VipsPicture alpha = bAlpha
                            ? asByte(bandAt(image, nBands - 1), image->Type == VIPS_INTERPRETATION_scRGB ? 1.0 : 255.0)
                            : VipsPicture();
    VipsPicture light = firstBands(std::move(image), bColor ? 3 : 1);
    if (light && !bColor) {
        VipsImage *const same[3] = {light.get(), light.get(), light.get()};
        VipsImage *pOut = nullptr;
        if (vips_bandjoin(const_cast<VipsImage **>(same), &pOut, 3, nullptr) != 0)
            return {};
        light.reset(pOut);
    }
    if (light && fBrightest > 1.05)
        light = toneMapped(std::move(light), fBrightest);
    VipsImage *pOut = nullptr;
    if (!light || vips_colourspace(light.get(), &pOut, VIPS_INTERPRETATION_sRGB, "source_space",
                                   VIPS_INTERPRETATION_scRGB, nullptr) != 0)
        return {};
    VipsPicture colors(pOut);
    return bAlpha ? withAlpha(colors, alpha) : std::move(colors);
}

bool isLight(const VipsPicture &image, PictureFormat format)
{
    if (format == PictureFormat::Exr || format == PictureFormat::Hdr)
        return true;
    if (!isFloat(image))
        return false;
    switch (image->Type) {
    case VIPS_INTERPRETATION_LAB:
    case VIPS_INTERPRETATION_LCH:
    case VIPS_INTERPRETATION_XYZ:
    case VIPS_INTERPRETATION_CMYK:
        return false;
    default:
        return true;
    }
}

VipsPicture throughProfile(const VipsPicture &image)
{
    VipsImage *pOut = nullptr;
    if (vips_icc_transform(image.get(), &pOut, "srgb", "embedded", TRUE, "intent", VIPS_INTENT_RELATIVE,
                           "black_point_compensation", TRUE, "depth", 8, nullptr) != 0)
        return {};
    return VipsPicture(pOut);
}

VipsPicture throughColorSpace(VipsPicture image)
{
    VipsImage *pOut = nullptr;
    if (image->Type == VIPS_INTERPRETATION_sRGB && image->BandFmt == VIPS_FORMAT_UCHAR)
        return image;
    if (vips_colourspace_issupported(image.get()) &&
        vips_colourspace(image.get(), &pOut, VIPS_INTERPRETATION_sRGB, nullptr) == 0)
        return VipsPicture(pOut);
    // Bands of no declared meaning: shown as they are, the first three as red, green and blue.
    const VipsInterpretation guess = image->Bands >= 3 ? VIPS_INTERPRETATION_sRGB : VIPS_INTERPRETATION_B_W;
    if (vips_colourspace(image.get(), &pOut, VIPS_INTERPRETATION_sRGB, "source_space", guess, nullptr) != 0)
        return {};
    return VipsPicture(pOut);
}

struct Watch {
    const DecodeRequest *pRequest;
    bool bGivenUp = false;
};

void onEval(VipsImage *pImage, VipsProgress *, void *pData)
{
    auto *pWatch = static_cast<Watch *>(pData);
    if (pWatch->bGivenUp || pWatch->pRequest->proceed())
        return;
    pWatch->bGivenUp = true;
    vips_image_set_kill(pImage, TRUE);
}

} // namespace

VipsPicture toSrgb(VipsPicture image, PictureFormat format, const std::function<VipsPicture()> &reload)
{
    image = unpackedRadiance(std::move(image));
    if (!image)
        return {};
    const QByteArray icc = profileOf(image.get());
    const bool bEightBitRgb =
        image->BandFmt == VIPS_FORMAT_UCHAR && image->Bands >= 3 && image->Type == VIPS_INTERPRETATION_sRGB;
    VipsPicture result;
    if (isLight(image, format))
        result = fromLight(std::move(image), reload);
    else if (!icc.isEmpty() && (!bEightBitRgb || ColorProfile::changesRgb(icc)))
        result = throughProfile(image);
    if (!result && image)
        result = throughColorSpace(std::move(image));
    if (!result)
        return {};
    if (result->BandFmt != VIPS_FORMAT_UCHAR)
        result = asByte(result, 1.0);
    // Pages are drawn on white: their alpha says nothing.
    const int nMostBands = format == PictureFormat::Pdf ? 3 : 4;
    if (result && result->Bands > nMostBands)
        result = firstBands(std::move(result), nMostBands);
    return result && result->Bands >= 3 ? std::move(result) : VipsPicture();
}

VipsPicture resized(VipsPicture image, const QSize &size)
{
    VipsImage *pOut = nullptr;
    // The profile has been applied: left in place it would be applied again.
    VipsImage *pPlain = nullptr;
    if (vips_copy(image.get(), &pPlain, "interpretation", VIPS_INTERPRETATION_sRGB, nullptr) != 0)
        return {};
    const VipsPicture plain(pPlain);
    vips_image_remove(plain.get(), VIPS_META_ICC_NAME);
    if (vips_thumbnail_image(plain.get(), &pOut, size.width(), "height", size.height(), "size", VIPS_SIZE_FORCE,
                             "no_rotate", TRUE, nullptr) != 0)
        return {};
    return VipsPicture(pOut);
}

VipsPicture mirrored(VipsPicture image)
{
    VipsImage *pOut = nullptr;
    return vips_flip(image.get(), &pOut, VIPS_DIRECTION_HORIZONTAL, nullptr) == 0 ? VipsPicture(pOut) : VipsPicture();
}

DecodedPicture writeToMemory(VipsPicture image, const DecodeRequest &request)
{
    DecodedPicture picture;
    const qint64 nBytes = qint64(image->Xsize) * image->Ysize * image->Bands;
    if (!request.accept(nBytes))
        return picture;
    Watch watch{&request};
    vips_image_set_progress(image.get(), TRUE);
    const gulong nConnection = g_signal_connect(image.get(), "eval", G_CALLBACK(&onEval), &watch);
    size_t nSize = 0;
    void *pPixels = vips_image_write_to_memory(image.get(), &nSize);
    g_signal_handler_disconnect(image.get(), nConnection);
    if (!pPixels)
        return picture;
    picture.memory = PixelMemory::adopt(static_cast<uchar *>(pPixels), qint64(nSize), [pPixels] { g_free(pPixels); });
    picture.width = image->Xsize;
    picture.height = image->Ysize;
    picture.layout = image->Bands == 4 ? IDecodedBitmap::Rgba32 : IDecodedBitmap::Rgb24;
    if (watch.bGivenUp || qint64(nSize) != picture.byteCount())
        return DecodedPicture();
    return picture;
}

VipsPicture wrapped(const DecodedPicture &picture)
{
    const int nBands = DecodedPicture::bytesPerPixel(picture.layout);
    VipsPicture image(vips_image_new_from_memory(picture.memory->data(), size_t(picture.byteCount()), picture.width,
                                                 picture.height, nBands, VIPS_FORMAT_UCHAR));
    if (image)
        image->Type = VIPS_INTERPRETATION_sRGB;
    return image;
}

// Red and blue may stand in either order here: the reduction treats all colours alike.
DecodedPicture scaledPicture(const DecodedPicture &picture, const QSize &size)
{
    if (picture.isNull() || QSize(picture.width, picture.height) == size)
        return picture;
    startVips();
    VipsPicture image = wrapped(picture);
    image = image ? resized(std::move(image), size) : VipsPicture();
    DecodedPicture result = image ? writeToMemory(std::move(image), DecodeRequest()) : DecodedPicture();
    result.layout = picture.layout;
    result.rotation = picture.rotation;
    vips_error_clear();
    return result;
}

} // namespace basemodule
