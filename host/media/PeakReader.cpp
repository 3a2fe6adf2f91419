#include "media/PeakReader.h"

#include "media/MediaInput.h"
#include "media/StreamDecoder.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace media {

namespace {

// Twice as many as a wide screen has pixels; when they are full, two are joined to one.
constexpr int kMostStretches = 8192;
constexpr int kStretchesPerSecond = 200;
constexpr int kReportMsec = 100;

/** Full scale of a sample type is 1.0. */
template <typename Sample>
float amplitude(Sample value)
{
    if constexpr (std::is_floating_point_v<Sample>)
        return std::fabs(float(value));
    else if constexpr (std::is_same_v<Sample, uint8_t>)
        return std::fabs(float(value) - 128.0F) / 128.0F;
    else
        return std::fabs(float(value)) / (float(std::numeric_limits<Sample>::max()) + 1.0F);
}

/** The loudest of a run of samples; in steps of the sample type, as floating point costs more. */
template <typename Sample>
float loudest(const uint8_t *pData, int nFrom, int nTo)
{
    const auto *pSamples = reinterpret_cast<const Sample *>(pData);
    Sample lowest = pSamples[nFrom];
    Sample highest = lowest;
    for (int i = nFrom; i < nTo; ++i) {
        lowest = std::min(lowest, pSamples[i]);
        highest = std::max(highest, pSamples[i]);
    }
    return std::max(amplitude(lowest), amplitude(highest));
}

float loudestOf(AVSampleFormat packedFormat, const uint8_t *pData, int nFrom, int nTo)
{
    switch (packedFormat) {
    case AV_SAMPLE_FMT_U8:
        return loudest<uint8_t>(pData, nFrom, nTo);
    case AV_SAMPLE_FMT_S16:
        return loudest<int16_t>(pData, nFrom, nTo);
    case AV_SAMPLE_FMT_S32:
        return loudest<int32_t>(pData, nFrom, nTo);
    case AV_SAMPLE_FMT_S64:
        return loudest<int64_t>(pData, nFrom, nTo);
    case AV_SAMPLE_FMT_FLT:
        return loudest<float>(pData, nFrom, nTo);
    case AV_SAMPLE_FMT_DBL:
        return loudest<double>(pData, nFrom, nTo);
    default:
        return 0.0F;
    }
}

/** Gathers samples into stretches of equal length. */
class PeakCollector {
public:
    explicit PeakCollector(int nRate)
        : m_nRate(nRate)
        , m_nStretch(std::max(1, nRate / kStretchesPerSecond))
    {
    }

    void add(const AVFrame &frame)
    {
        const auto format = AVSampleFormat(frame.format);
        const AVSampleFormat packed = av_get_packed_sample_fmt(format);
        const bool bPlanar = av_sample_fmt_is_planar(format) != 0;
        const int nChannels = frame.ch_layout.nb_channels;
        for (int nAt = 0; nAt < frame.nb_samples;) {
            const int nEnd = int(std::min<qint64>(frame.nb_samples, nAt + m_nStretch - m_nInStretch));
            for (int c = 0; c < (bPlanar ? nChannels : 1); ++c) {
                const int nStep = bPlanar ? 1 : nChannels;
                m_fLoudest = std::max(m_fLoudest, loudestOf(packed, frame.extended_data[c], nAt * nStep, nEnd * nStep));
            }
            m_nInStretch += nEnd - nAt;
            m_nSamples += nEnd - nAt;
            nAt = nEnd;
            if (m_nInStretch >= m_nStretch)
                closeStretch();
        }
    }

    Peaks peaks(bool bComplete)
    {
        if (bComplete && m_nInStretch > 0)
            closeStretch();
        Peaks result;
        result.levels = m_levels;
        result.fStretchMsec = double(m_nStretch) * 1000.0 / m_nRate;
        result.nDurationMsec = qint64(double(m_nSamples) * 1000.0 / m_nRate);
        result.bComplete = bComplete;
        return result;
    }

private:
    void closeStretch()
    {
        const float fLevel = std::isfinite(m_fLoudest) ? std::min(m_fLoudest, 1.0F) : 1.0F;
        m_levels.append(quint8(std::lround(fLevel * 255.0F)));
        m_fLoudest = 0.0F;
        m_nInStretch = 0;
        if (m_levels.size() < kMostStretches)
            return;
        for (int i = 0; i < kMostStretches / 2; ++i)
            m_levels[i] = std::max(m_levels.at(2 * i), m_levels.at(2 * i + 1));
        m_levels.resize(kMostStretches / 2);
        m_nStretch *= 2;
    }

    const int m_nRate;
    qint64 m_nStretch;
    qint64 m_nInStretch = 0;
    qint64 m_nSamples = 0;
    float m_fLoudest = 0.0F;
    QVector<quint8> m_levels;
};

} // namespace

Peaks readPeaks(const QByteArray &native, const Cancelled &cancelled, const std::function<void(const Peaks &)> &report)
{
    const InputPointer pInput = openInput(native, cancelled);
    AVStream *pStream = pInput != nullptr ? soundStream(*pInput) : nullptr;
    if (pStream == nullptr || pStream->codecpar->sample_rate <= 0)
        return {};
    StreamDecoder decoder(*pInput, *pStream);
    if (!decoder.isOpen())
        return {};
    std::unique_ptr<PeakCollector> pCollector;
    QElapsedTimer sinceReport;
    sinceReport.start();
    while (const AVFrame *pFrame = cancelled() ? nullptr : decoder.next()) {
        if (pFrame->sample_rate <= 0 || pFrame->ch_layout.nb_channels <= 0)
            continue;
        if (pCollector == nullptr)
            pCollector = std::make_unique<PeakCollector>(pFrame->sample_rate);
        pCollector->add(*pFrame);
        if (sinceReport.elapsed() >= kReportMsec) {
            sinceReport.restart();
            report(pCollector->peaks(false));
        }
    }
    return pCollector != nullptr && !cancelled() ? pCollector->peaks(true) : Peaks();
}

} // namespace media
