#include "services/basemodule/decode/VipsReader.h"

#include "services/basemodule/decode/ColorProfile.h"
#include "services/basemodule/decode/VipsPipeline.h"

#include <QLoggingCategory>

#include <algorithm>
#include <cmath>
#include <mutex>

namespace basemodule {

Q_LOGGING_CATEGORY(vipsLog, "bigimgpreview.host.vips", QtWarningMsg)

namespace {

constexpr int kVectorSide = 2048;
constexpr double kPageDpi = 160.0;
constexpr int kLargestPage = 8192;
// A reduction has to read every pixel of the file: this bounds its time.
constexpr qint64 kMostPixelsReduced = qint64(1) << 30;

/** How a file is to be loaded; each format reads the members it knows. */
struct LoadOptions {
    double vectorScale = 1.0;
    int reducedLevel = 0;
};

VipsPicture loadSource(VipsSource *pSource, PictureFormat format, const LoadOptions &options)
{
    VipsImage *pOut = nullptr;
    const VipsAccess access = VIPS_ACCESS_SEQUENTIAL;
    switch (format) {
    case PictureFormat::Png:
        vips_pngload_source(pSource, &pOut, "access", access, nullptr);
        break;
    case PictureFormat::Gif:
        vips_gifload_source(pSource, &pOut, "access", access, nullptr);
        break;
    case PictureFormat::Tiff:
        vips_tiffload_source(pSource, &pOut, "access", access, nullptr);
        break;
    case PictureFormat::WebP:
        vips_webpload_source(pSource, &pOut, "access", access, "scale", options.vectorScale, nullptr);
        break;
    case PictureFormat::Heif:
        vips_heifload_source(pSource, &pOut, "access", access, nullptr);
        break;
    case PictureFormat::JpegXl:
        vips_jxlload_source(pSource, &pOut, "access", access, nullptr);
        break;
    case PictureFormat::Jpeg2000:
        vips_jp2kload_source(pSource, &pOut, "access", access, "page", options.reducedLevel, nullptr);
        break;
    case PictureFormat::Svg:
        vips_svgload_source(pSource, &pOut, "access", access, "scale", options.vectorScale, nullptr);
        break;
    case PictureFormat::Pdf:
        vips_pdfload_source(pSource, &pOut, "access", access, "dpi", 72.0 * options.vectorScale, nullptr);
        break;
    case PictureFormat::Hdr:
        vips_radload_source(pSource, &pOut, "access", access, nullptr);
        break;
    case PictureFormat::Pnm:
        vips_ppmload_source(pSource, &pOut, "access", access, nullptr);
        break;
    default:
        break;
    }
    return VipsPicture(pOut);
}

VipsPicture loadFile(const QByteArray &nativePath, PictureFormat format, const LoadOptions &options)
{
    if (format == PictureFormat::Exr) {
        VipsImage *pOut = nullptr;
        vips_openexrload(nativePath.constData(), &pOut, "access", VIPS_ACCESS_SEQUENTIAL, nullptr);
        return VipsPicture(pOut);
    }
    const GObjectPointer<VipsSource> source(vips_source_new_from_file(nativePath.constData()));
    return source ? loadSource(source.get(), format, options) : VipsPicture();
}

/** Opens the picture with these options; called more than once for one. */
using Loader = std::function<VipsPicture(const LoadOptions &)>;

bool isScalable(PictureFormat format)
{
    return format == PictureFormat::Svg || format == PictureFormat::Pdf;
}

// Drawings have no pixels of their own: this is the size at which they are drawn for scale 1.
double drawingScale(PictureFormat format, const QSize &natural)
{
    const double fLongest = std::max(natural.width(), natural.height());
    if (format == PictureFormat::Svg)
        return fLongest < kVectorSide ? kVectorSide / fLongest : 1.0;
    const double fWanted = std::max(kPageDpi / 72.0, 1024.0 / fLongest);
    return std::min(fWanted, kLargestPage / fLongest);
}

QSize sizeOf(const VipsPicture &image)
{
    return QSize(vips_image_get_width(image.get()), vips_image_get_height(image.get()));
}

int orientationOf(VipsImage *pImage, PictureFormat format)
{
    // These loaders have turned the picture already.
    if (format == PictureFormat::Heif || format == PictureFormat::JpegXl)
        return 1;
    if (vips_image_get_typeof(pImage, VIPS_META_ORIENTATION) != 0)
        return vips_image_get_orientation(pImage);
    const void *pExif = nullptr;
    size_t nLength = 0;
    if (vips_image_get_typeof(pImage, VIPS_META_EXIF_NAME) == 0 ||
        vips_image_get_blob(pImage, VIPS_META_EXIF_NAME, &pExif, &nLength) != 0)
        return 1;
    const QByteArray exif(static_cast<const char *>(pExif), int(std::min<size_t>(nLength, 1 << 16)));
    return exifOrientation(exif.startsWith("Exif") ? exif.mid(6) : exif);
}

LoadOptions reducedOptions(PictureFormat format, const QSize &fullSize, const QSize &target, double fDrawing)
{
    LoadOptions options;
    options.vectorScale = fDrawing;
    const double fScale =
        std::max(double(target.width()) / fullSize.width(), double(target.height()) / fullSize.height());
    if (isScalable(format) || format == PictureFormat::WebP)
        options.vectorScale = fDrawing * std::min(1.0, fScale);
    if (format == PictureFormat::Jpeg2000)
        options.reducedLevel = std::max(0, int(std::floor(std::log2(1.0 / fScale) + 1e-9)));
    return options;
}

bool isWithinReach(PictureFormat format, const QSize &fullSize, const QSize &target)
{
    return isScalable(format) || target == fullSize ||
           qint64(fullSize.width()) * fullSize.height() <= kMostPixelsReduced;
}

// A damaged file is no news for the log, and what comes of it is told by the result: only a misuse is a warning. Runs
// in whatever thread the library works in.
void onLibraryMessage(const gchar *pDomain, GLogLevelFlags level, const gchar *pText, gpointer)
{
    if (level & (G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL))
        qCWarning(vipsLog, "%s: %s", pDomain, pText);
    else
        qCDebug(vipsLog, "%s: %s", pDomain, pText);
}

} // namespace

void startVips()
{
    static std::once_flag once;
    std::call_once(once, [] {
        if (vips_init("hostbasemodule") != 0)
            return;
        // Nothing of a picture may outlive its decode: neither its pixels nor a handle on its file.
        vips_cache_set_max(0);
        for (const char *pDomain : {"VIPS", "Poppler", "librsvg"})
            g_log_set_handler(pDomain, GLogLevelFlags(G_LOG_LEVEL_MASK | G_LOG_FLAG_RECURSION), &onLibraryMessage,
                              nullptr);
        vips_concurrency_set(std::min(vips_concurrency_get(), 4));
    });
}

QByteArray inkProfile()
{
    startVips();
    VipsBlob *pBlob = nullptr;
    if (vips_profile_load("cmyk", &pBlob, nullptr) != 0 || !pBlob) {
        vips_error_clear();
        return {};
    }
    size_t nLength = 0;
    const void *pData = vips_blob_get(pBlob, &nLength);
    const QByteArray icc(static_cast<const char *>(pData), int(nLength));
    vips_area_unref(VIPS_AREA(pBlob));
    return icc;
}

static DecodeResult readWith(const Loader &load, PictureFormat format, const DecodeRequest &request)
{
    startVips();
    DecodeResult result;
    VipsPicture image = load(LoadOptions());
    if (!image) {
        vips_error_clear();
        return result;
    }
    const double fDrawing = isScalable(format) ? drawingScale(format, sizeOf(image)) : 1.0;
    const QSize natural = sizeOf(image);
    result.fullSize = QSize(std::max(1, int(std::lround(natural.width() * fDrawing))),
                            std::max(1, int(std::lround(natural.height() * fDrawing))));
    const Orientation orientation = Orientation::fromExif(orientationOf(image.get(), format));
    result.rotation = orientation.rotation;
    const QSize target = request.targetSize(result.fullSize);
    if (request.headerOnly || !isWithinReach(format, result.fullSize, target))
        return result;

    if (isScalable(format) || target != result.fullSize) {
        const LoadOptions options = reducedOptions(format, result.fullSize, target, fDrawing);
        VipsPicture reduced = options.vectorScale != 1.0 || options.reducedLevel > 0 ? load(options) : VipsPicture();
        if (reduced)
            image = std::move(reduced);
        vips_error_clear();
    }
    const auto reload = [&] {
        return load(LoadOptions());
    };
    image = toSrgb(std::move(image), format, reload);
    if (image && target != sizeOf(image) && (!isScalable(format) || target != result.fullSize))
        image = resized(std::move(image), target);
    if (image && orientation.mirrored)
        image = mirrored(std::move(image));
    if (image)
        result.picture = writeToMemory(std::move(image), request);
    if (isScalable(format) && !result.picture.isNull() && target == result.fullSize)
        result.fullSize = QSize(result.picture.width, result.picture.height);
    result.picture.rotation = result.rotation;
    vips_error_clear();
    return result;
}

DecodeResult readWithVips(const QByteArray &nativePath, PictureFormat format, const DecodeRequest &request)
{
    return readWith([&](const LoadOptions &options) { return loadFile(nativePath, format, options); }, format, request);
}

DecodeResult readBytesWithVips(const QByteArray &bytes, PictureFormat format, const DecodeRequest &request)
{
    const auto load = [&](const LoadOptions &options) {
        const GObjectPointer<VipsSource> source(vips_source_new_from_memory(bytes.constData(), size_t(bytes.size())));
        return source ? loadSource(source.get(), format, options) : VipsPicture();
    };
    return readWith(load, format, request);
}

} // namespace basemodule
