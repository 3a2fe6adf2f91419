#include "media/MediaInput.h"
#include "metadata/MetadataReaders.h"

#include <QStringList>

#include <cmath>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/channel_layout.h>
}

namespace {

// A damaged file may claim anything; a line of the panel is not for novels.
constexpr int k_nLongestTag = 300;
constexpr double k_fMostFrames = 1000.0;

QString codecName(const AVStream *pStream)
{
    return pStream != nullptr ? QString::fromLatin1(avcodec_get_name(pStream->codecpar->codec_id)) : QString();
}

/** A text that the file carries of itself or of its sound: some formats keep it with the one, some with the other. */
QString tagOf(const AVFormatContext &input, const AVStream *pSound, std::initializer_list<const char *> keys)
{
    for (const AVDictionary *pTags : {input.metadata, pSound != nullptr ? pSound->metadata : nullptr}) {
        for (const char *pKey : keys) {
            const AVDictionaryEntry *pEntry = av_dict_get(pTags, pKey, nullptr, 0);
            const QString text = pEntry != nullptr ? QString::fromUtf8(pEntry->value).simplified() : QString();
            if (!text.isEmpty())
                return text.left(k_nLongestTag);
        }
    }
    return QString();
}

QString channelsOf(const AVCodecParameters &codec)
{
    char name[64] = "";
    if (codec.ch_layout.nb_channels <= 0 || av_channel_layout_describe(&codec.ch_layout, name, sizeof(name)) <= 0)
        return QString();
    return QString::fromLatin1(name);
}

void readVideo(AVFormatContext *pInput, FileMetadata *pMetadata)
{
    AVStream *pVideo = media::videoStream(*pInput);
    if (pVideo == nullptr)
        return;
    const AVRational aspect = av_guess_sample_aspect_ratio(pInput, pVideo, nullptr);
    QSize size(pVideo->codecpar->width, pVideo->codecpar->height);
    if (aspect.num > 0 && aspect.den > 0)
        size.setWidth(int(qBound<qint64>(1, av_rescale(size.width(), aspect.num, aspect.den), 1 << 16)));
    pMetadata->dimensions = media::uprightRotation(*pVideo) % 180 != 0 ? size.transposed() : size;
    const double fFrames = av_q2d(av_guess_frame_rate(pInput, pVideo, nullptr));
    if (std::isfinite(fFrames) && fFrames > 0.0 && fFrames < k_fMostFrames)
        pMetadata->fFramesPerSecond = fFrames;
}

} // namespace

void readMediaMetadata(const QByteArray &native, FileMetadata *pMetadata)
{
    const media::Cancelled never = [] {
        return false;
    };
    const media::InputPointer pInput = media::openInput(native, never);
    if (pInput == nullptr)
        return;
    if (pInput->duration != AV_NOPTS_VALUE)
        pMetadata->nDurationMsec = pInput->duration / (AV_TIME_BASE / 1000);
    pMetadata->nBitsPerSecond = qMax<qint64>(0, pInput->bit_rate);
    readVideo(pInput.get(), pMetadata);
    const AVStream *pSound = media::soundStream(*pInput);
    if (pSound != nullptr) {
        pMetadata->nSamplesPerSecond = qMax(0, pSound->codecpar->sample_rate);
        pMetadata->channels = channelsOf(*pSound->codecpar);
    }
    QStringList codecs{codecName(media::videoStream(*pInput)), codecName(pSound)};
    codecs.removeAll(QString());
    pMetadata->codec = codecs.join(QStringLiteral(" · "));
    pMetadata->title = tagOf(*pInput, pSound, {"title"});
    pMetadata->artist = tagOf(*pInput, pSound, {"artist", "album_artist", "author"});
    pMetadata->album = tagOf(*pInput, pSound, {"album"});
    pMetadata->year = tagOf(*pInput, pSound, {"date", "year"});
    pMetadata->genre = tagOf(*pInput, pSound, {"genre"});
}
