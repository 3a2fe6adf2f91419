#include "services/basemodule/decode/JpegReader.h"

#include "services/basemodule/decode/ColorProfile.h"
#include "services/basemodule/decode/JpegSession.h"
#include "services/basemodule/decode/VipsReader.h"

#include <QBuffer>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace basemodule {

namespace {

constexpr int kStripRows = 16;
constexpr int kRowsBetweenChecks = 64;

int orientationOf(const jpeg_decompress_struct &info)
{
    for (auto *pMarker = info.marker_list; pMarker; pMarker = pMarker->next) {
        if (pMarker->marker == JPEG_APP0 + 1 && pMarker->data_length > 6 &&
            std::memcmp(pMarker->data, "Exif\0\0", 6) == 0) {
            return exifOrientation(QByteArray::fromRawData(reinterpret_cast<const char *>(pMarker->data) + 6,
                                                           int(pMarker->data_length) - 6));
        }
    }
    return 0;
}

QByteArray profileOf(jpeg_decompress_struct &info)
{
    JOCTET *pData = nullptr;
    unsigned int nLength = 0;
    // Damaged profile markers only raise warnings here; nothing in this call leaves by longjmp but lack of memory.
    if (!jpeg_read_icc_profile(&info, &pData, &nLength))
        return {};
    const QByteArray icc(reinterpret_cast<const char *>(pData), int(nLength));
    std::free(pData);
    return icc;
}

// Where no profile helps, the inks are taken at their face value.
void convertInks(const uchar *pIn, uchar *pOut, int nWidth, bool bInverted)
{
    const uchar nFlip = bInverted ? 0 : 255;
    for (int x = 0; x < nWidth; ++x, pIn += 4, pOut += 4) {
        const unsigned k = pIn[3] ^ nFlip;
        pOut[0] = uchar((pIn[2] ^ nFlip) * k / 255);
        pOut[1] = uchar((pIn[1] ^ nFlip) * k / 255);
        pOut[2] = uchar((pIn[0] ^ nFlip) * k / 255);
        pOut[3] = 255;
    }
}

/** What is done to a strip between the decompressor and the memory handed out; nothing for most pictures. */
struct Conversion {
    std::unique_ptr<ColorProfile> profile;
    bool inks = false;
    bool invertedInks = false;
    int channels = 4; ///< Of the rows that the decompressor delivers.
    bool mirrored = false;

    bool needsScratch() const { return inks || channels != 4; }
    void apply(const uchar *pIn, uchar *pOut, int nWidth) const
    {
        if (profile)
            profile->convertRow(pIn, pOut, nWidth);
        else if (inks)
            convertInks(pIn, pOut, nWidth, invertedInks);
        if (mirrored)
            mirrorRow(pOut, nWidth, 4);
    }
    bool isNeeded() const { return profile || inks || mirrored; }
};

Conversion chooseConversion(jpeg_decompress_struct &info)
{
    Conversion conversion;
    const QByteArray icc = profileOf(info);
    info.out_color_space = JCS_EXT_BGRA;
    if (info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK) {
        info.out_color_space = JCS_CMYK;
        conversion.inks = true;
        conversion.invertedInks = info.saw_Adobe_marker;
        conversion.profile = ColorProfile::toSrgb(icc.isEmpty() ? inkProfile() : icc,
                                                  conversion.invertedInks ? ColorProfile::Input::CmykInverted
                                                                          : ColorProfile::Input::Cmyk);
    } else if (info.jpeg_color_space == JCS_GRAYSCALE) {
        conversion.profile = ColorProfile::toSrgb(icc, ColorProfile::Input::Gray);
        if (conversion.profile) {
            info.out_color_space = JCS_GRAYSCALE;
            conversion.channels = 1;
        }
    } else {
        conversion.profile = ColorProfile::toSrgb(icc, ColorProfile::Input::Bgra);
    }
    return conversion;
}

bool decodeRows(JpegSession &session, const Conversion &conversion, const DecodedPicture &picture)
{
    std::vector<uchar> scratch(
        conversion.needsScratch() ? size_t(picture.width) * size_t(conversion.channels) * kStripRows : 0);
    std::array<JSAMPROW, kStripRows> rows{};
    int nNextCheck = kRowsBetweenChecks;
    for (int y = 0; y < picture.height;) {
        const int nWanted = std::min(kStripRows, picture.height - y);
        for (int i = 0; i < nWanted; ++i) {
            rows[size_t(i)] = scratch.empty()
                                  ? picture.row(y + i)
                                  : scratch.data() + size_t(i) * size_t(picture.width) * size_t(conversion.channels);
        }
        const bool bAlreadyCut = session.isTruncated();
        const int nRead = session.readRows(rows.data(), nWanted);
        if (nRead <= 0 || (y == 0 && bAlreadyCut && session.info().input_scan_number <= 1)) {
            if (y == 0)
                return false;
            // The rest of a damaged picture stays blank rather than what the memory held before.
            std::memset(picture.row(y), 0, size_t(picture.rowLength()) * size_t(picture.height - y));
            return session.proceed();
        }
        for (int i = 0; conversion.isNeeded() && i < nRead; ++i)
            conversion.apply(rows[size_t(i)], picture.row(y + i), picture.width);
        y += nRead;
        if (y >= nNextCheck) {
            nNextCheck = y + kRowsBetweenChecks;
            if (!session.proceed())
                return false;
        }
    }
    return true;
}

// The decompressor reduces by eighths while it decodes, at a fraction of the cost of scaling afterwards.
void chooseReduction(jpeg_decompress_struct &info, const QSize &fullSize, const QSize &target)
{
    const double fNeeded =
        std::max(double(target.width()) / fullSize.width(), double(target.height()) / fullSize.height());
    info.scale_num = unsigned(std::clamp(int(std::ceil(fNeeded * 8.0 - 1e-6)), 1, 8));
    info.scale_denom = 8;
}

} // namespace

DecodeResult readJpeg(QIODevice &device, const DecodeRequest &request, int nFallbackRotation)
{
    DecodeResult result;
    const auto pSession = std::make_unique<JpegSession>(device, request);
    if (!pSession->readHeader())
        return result;
    jpeg_decompress_struct &info = pSession->info();
    const int nOrientation = orientationOf(info);
    const Orientation orientation = Orientation::fromExif(nOrientation);
    result.fullSize = QSize(int(info.image_width), int(info.image_height));
    result.rotation = nOrientation == 0 ? nFallbackRotation : orientation.rotation;
    if (request.headerOnly)
        return result;

    const QSize target = request.targetSize(result.fullSize);
    chooseReduction(info, result.fullSize, target);
    Conversion conversion = chooseConversion(info);
    conversion.mirrored = orientation.mirrored;
    if (!request.accept(qint64(target.width()) * target.height() * 4) || !pSession->start())
        return result;
    DecodedPicture picture;
    if (!picture.allocate(QSize(int(info.output_width), int(info.output_height)), IDecodedBitmap::Bgra32) ||
        int(info.output_components) != (conversion.channels) || !decodeRows(*pSession, conversion, picture))
        return result;
    picture.rotation = result.rotation;
    result.picture = scaledPicture(picture, target);
    return result;
}

int jpegOrientation(const QByteArray &jpeg)
{
    QBuffer buffer;
    buffer.setData(jpeg);
    buffer.open(QIODevice::ReadOnly);
    const DecodeRequest request;
    const auto pSession = std::make_unique<JpegSession>(buffer, request);
    return pSession->readHeader() ? orientationOf(pSession->info()) : 0;
}

} // namespace basemodule
