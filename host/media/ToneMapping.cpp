#include "media/ToneMapping.h"

#include <QRgba64>
#include <QVector>

#include <algorithm>
#include <cmath>

extern "C" {
#include <libavutil/mastering_display_metadata.h>
}

namespace media {

namespace {

// The brightness of white in such videos, in candelas per square metre: 1.0 in what follows.
constexpr double kWhite = 203.0;
// A brightness that nobody told, in hundreds of candelas.
constexpr double kUnknownPeak = 10.0;
// Below it nothing is toned down.
constexpr double kLinearPart = 0.3;
constexpr double kScreenGamma = 2.4;
constexpr int kInputSteps = 1 << 16;
constexpr int kOutputSteps = 1 << 12;

double fromPerceptual(double fValue)
{
    constexpr double kM1 = 2610.0 / 16384.0;
    constexpr double kM2 = 2523.0 / 4096.0 * 128.0;
    constexpr double kC1 = 3424.0 / 4096.0;
    constexpr double kC2 = 2413.0 / 4096.0 * 32.0;
    constexpr double kC3 = 2392.0 / 4096.0 * 32.0;
    const double fRoot = std::pow(fValue, 1.0 / kM2);
    return std::pow(std::max(fRoot - kC1, 0.0) / (kC2 - kC3 * fRoot), 1.0 / kM1) * 10000.0 / kWhite;
}

double fromHybridLog(double fValue)
{
    constexpr double kA = 0.17883277;
    constexpr double kB = 1.0 - 4.0 * kA;
    const double kC = 0.5 - kA * std::log(4.0 * kA);
    return fValue <= 0.5 ? fValue * fValue / 3.0 : (std::exp((fValue - kC) / kA) + kB) / 12.0;
}

/** How bright the brightest part may be, in hundreds of candelas. */
double peakOf(const AVFrame &frame)
{
    if (const AVFrameSideData *pLevel = av_frame_get_side_data(&frame, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL)) {
        const unsigned nBrightest = reinterpret_cast<const AVContentLightMetadata *>(pLevel->data)->MaxCLL;
        if (nBrightest > 0)
            return nBrightest / 100.0;
    }
    if (const AVFrameSideData *pScreen = av_frame_get_side_data(&frame, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA)) {
        const auto *pMastering = reinterpret_cast<const AVMasteringDisplayMetadata *>(pScreen->data);
        const double fBrightest = pMastering->has_luminance != 0 ? av_q2d(pMastering->max_luminance) : 0.0;
        if (std::isfinite(fBrightest) && fBrightest > 0.0)
            return fBrightest / 100.0;
    }
    return kUnknownPeak;
}

/** A Moebius transform that goes on smoothly where the linear part ends, and takes the peak to 1. */
class Curve {
public:
    explicit Curve(double fPeak)
    {
        constexpr double kJ = kLinearPart;
        const double fAbove = std::max(fPeak - 1.0, 1e-6);
        m_fA = -kJ * kJ * fAbove / (kJ * kJ - 2.0 * kJ + fPeak);
        m_fB = (kJ * kJ - 2.0 * kJ * fPeak + fPeak) / fAbove;
        m_fScale = (m_fB * m_fB + 2.0 * m_fB * kJ + kJ * kJ) / (m_fB - m_fA);
    }

    double operator()(double fValue) const
    {
        return fValue <= kLinearPart ? fValue : m_fScale * (fValue + m_fA) / (fValue + m_fB);
    }

private:
    double m_fA;
    double m_fB;
    double m_fScale;
};

/** Values of 0 to 1 as light, and light as values of the screen. */
struct Tables {
    QVector<float> light;
    QVector<uchar> screen;

    explicit Tables(bool bPerceptual)
        : light(kInputSteps)
        , screen(kOutputSteps + 1)
    {
        for (int i = 0; i < kInputSteps; ++i) {
            const double fValue = double(i) / (kInputSteps - 1);
            light[i] = float(bPerceptual ? fromPerceptual(fValue) : fromHybridLog(fValue));
        }
        for (int i = 0; i <= kOutputSteps; ++i)
            screen[i] = uchar(std::lround(std::pow(double(i) / kOutputSteps, 1.0 / kScreenGamma) * 255.0));
    }

    uchar toScreen(double fLight) const
    {
        return screen.at(int(std::lround(std::clamp(fLight, 0.0, 1.0) * kOutputSteps)));
    }
};

const Tables &tablesFor(bool bPerceptual)
{
    if (bPerceptual) {
        static const Tables perceptual(true);
        return perceptual;
    }
    static const Tables hybridLog(false);
    return hybridLog;
}

} // namespace

bool isHighRange(AVColorTransferCharacteristic transfer)
{
    return transfer == AVCOL_TRC_SMPTE2084 || transfer == AVCOL_TRC_ARIB_STD_B67;
}

QImage toScreenRange(const QImage &image, const AVFrame &frame)
{
    const bool bPerceptual = frame.color_trc == AVCOL_TRC_SMPTE2084;
    const Tables &tables = tablesFor(bPerceptual);
    const Curve curve(peakOf(frame));
    QImage result(image.size(), QImage::Format_RGB888);
    if (result.isNull())
        return {};
    for (int y = 0; y < image.height(); ++y) {
        const auto *pFrom = reinterpret_cast<const QRgba64 *>(image.constScanLine(y));
        uchar *pTo = result.scanLine(y);
        for (int x = 0; x < image.width(); ++x, pTo += 3) {
            double fRed = double(tables.light.at(pFrom[x].red()));
            double fGreen = double(tables.light.at(pFrom[x].green()));
            double fBlue = double(tables.light.at(pFrom[x].blue()));
            if (!bPerceptual) {
                // A camera's light becomes that of a screen of 1,000 candelas.
                const double fLuminance = 0.2627 * fRed + 0.6780 * fGreen + 0.0593 * fBlue;
                const double fScreen = std::pow(fLuminance, 0.2) * 1000.0 / kWhite;
                fRed *= fScreen;
                fGreen *= fScreen;
                fBlue *= fScreen;
            }
            const double fR = 1.6605 * fRed - 0.5876 * fGreen - 0.0728 * fBlue;
            const double fG = -0.1246 * fRed + 1.1329 * fGreen - 0.0083 * fBlue;
            const double fB = -0.0182 * fRed - 0.1006 * fGreen + 1.1187 * fBlue;
            const double fBrightest = std::max({fR, fG, fB, 1e-6});
            const double fFactor = curve(fBrightest) / fBrightest;
            pTo[0] = tables.toScreen(fR * fFactor);
            pTo[1] = tables.toScreen(fG * fFactor);
            pTo[2] = tables.toScreen(fB * fFactor);
        }
    }
    return result;
}

} // namespace media
