#include "media/VideoStill.h"

#include "media/StreamDecoder.h"
#include "media/ToneMapping.h"

#include <algorithm>
#include <array>

extern "C" {
#include <libswscale/swscale.h>
}

namespace media {

namespace {

// Where in the video to look, in the order of liking.
constexpr std::array<double, 5> kPlaces{0.1, 0.25, 0.5, 0.75, 0.0};

// A frame is told from black by a small copy of it: how bright it is and how much there is to see.
constexpr int kSampleSide = 32;
constexpr int kGoodContrast = 40;

// A damaged file may hold very many frames that are none.
constexpr int kMostFramesTried = 60;

struct FreeScaler {
    void operator()(SwsContext *pScaler) const { sws_freeContext(pScaler); }
};

QSize squarePixels(const QSize &size, AVRational aspect)
{
    if (aspect.num <= 0 || aspect.den <= 0 || aspect.num == aspect.den)
        return size;
    const qint64 nWidth = av_rescale(size.width(), aspect.num, aspect.den);
    return nWidth > 0 && nWidth < 1 << 16 ? QSize(int(nWidth), size.height()) : size;
}

QImage toImage(const AVFrame &frame, const QSize &size)
{
    const auto format = AVPixelFormat(frame.format);
    const bool bHighRange = isHighRange(frame.color_trc);
    const std::unique_ptr<SwsContext, FreeScaler> pScaler(
        sws_getContext(frame.width, frame.height, format, size.width(), size.height(),
                       bHighRange ? AV_PIX_FMT_RGBA64 : AV_PIX_FMT_RGB24, SWS_AREA, nullptr, nullptr, nullptr));
    if (pScaler == nullptr)
        return {};
    const int *pMatrix = sws_getCoefficients(frame.colorspace == AVCOL_SPC_UNSPECIFIED
                                                 ? (frame.height >= 720 ? SWS_CS_ITU709 : SWS_CS_ITU601)
                                                 : int(frame.colorspace));
    sws_setColorspaceDetails(pScaler.get(), pMatrix, frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0,
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
    QImage image(size, bHighRange ? QImage::Format_RGBX64 : QImage::Format_RGB888);
    if (image.isNull())
        return {};
    uint8_t *planes[4] = {image.bits(), nullptr, nullptr, nullptr};
    const int strides[4] = {image.bytesPerLine(), 0, 0, 0};
    sws_scale(pScaler.get(), frame.data, frame.linesize, 0, frame.height, planes, strides);
    return bHighRange ? toScreenRange(image, frame) : image;
}

/** 0 for a frame of one shade; a picture with dark and bright parts gives more than kGoodContrast. */
int contrastOf(const QImage &image)
{
    const QImage sample = image.scaled(kSampleSide, kSampleSide, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    std::array<uchar, std::size_t(kSampleSide) * kSampleSide> shades{};
    for (int y = 0; y < kSampleSide; ++y) {
        for (int x = 0; x < kSampleSide; ++x)
            shades[std::size_t(y) * kSampleSide + std::size_t(x)] = uchar(qGray(sample.pixel(x, y)));
    }
    std::sort(shades.begin(), shades.end());
    // The outermost shades may be a station's sign or noise.
    constexpr std::size_t kMargin = shades.size() / 20;
    return shades[shades.size() - 1 - kMargin] - shades[kMargin];
}

/** The key frame at a place of the video, fitted; null when there is none. */
QImage frameAt(StreamDecoder *pDecoder, const AVStream &stream, double fPlace, qint64 nDuration, int nLongestSide,
               const Cancelled &cancelled)
{
    const qint64 nFirst = stream.start_time != AV_NOPTS_VALUE ? stream.start_time : 0;
    // A file without an index cannot seek: it is read on from where it stands.
    if (fPlace > 0.0 && nDuration > 0)
        pDecoder->seek(nFirst + qint64(fPlace * double(nDuration)));
    else
        pDecoder->seek(nFirst);
    for (int i = 0; i < kMostFramesTried && !cancelled(); ++i) {
        const AVFrame *pFrame = pDecoder->next();
        if (pFrame == nullptr)
            return {};
        QSize size = squarePixels(QSize(pFrame->width, pFrame->height), pFrame->sample_aspect_ratio);
        if (nLongestSide > 0 && (size.width() > nLongestSide || size.height() > nLongestSide))
            size.scale(nLongestSide, nLongestSide, Qt::KeepAspectRatio);
        const QImage image = toImage(*pFrame, size.expandedTo(QSize(1, 1)));
        if (!image.isNull())
            return image;
    }
    return {};
}

} // namespace

VideoStill videoSize(const AVFormatContext &input)
{
    VideoStill still;
    const AVStream *pStream = videoStream(input);
    if (pStream == nullptr)
        return still;
    const AVCodecParameters &codec = *pStream->codecpar;
    const AVRational aspect =
        pStream->sample_aspect_ratio.num > 0 ? pStream->sample_aspect_ratio : codec.sample_aspect_ratio;
    still.fullSize = squarePixels(QSize(codec.width, codec.height), aspect);
    still.rotation = uprightRotation(*pStream);
    return still;
}

VideoStill videoStill(AVFormatContext &input, int nLongestSide, const Cancelled &cancelled)
{
    VideoStill still = videoSize(input);
    AVStream *pStream = videoStream(input);
    if (pStream == nullptr || still.fullSize.isEmpty())
        return still;
    StreamDecoder decoder(input, *pStream);
    if (!decoder.isOpen())
        return still;
    decoder.setKeyFramesOnly();
    qint64 nDuration = pStream->duration;
    if (nDuration == AV_NOPTS_VALUE && input.duration != AV_NOPTS_VALUE)
        nDuration = av_rescale_q(input.duration, AVRational{1, AV_TIME_BASE}, pStream->time_base);
    int nBest = -1;
    for (const double fPlace : kPlaces) {
        if (cancelled() || nBest >= kGoodContrast)
            break;
        const QImage image = frameAt(&decoder, *pStream, fPlace, nDuration, nLongestSide, cancelled);
        const int nContrast = image.isNull() ? -1 : contrastOf(image);
        if (nContrast > nBest) {
            nBest = nContrast;
            still.image = image;
        }
    }
    return still;
}

} // namespace media
