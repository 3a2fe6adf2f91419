#include "metadata/MetadataReaders.h"

#include <QStringList>

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace {

struct CloseInput {
    void operator()(AVFormatContext *pContext) const { avformat_close_input(&pContext); }
};

/** The picture of a sound file's cover is no video. */
bool isCover(const AVStream &stream)
{
    return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

/** A picture is no video either, though the library has demuxers for those: one that is broken got here. */
bool isPicture(const AVInputFormat &format)
{
    const QByteArray name(format.name);
    return name == "image2" || name.endsWith("_pipe");
}

} // namespace

void readMediaMetadata(const QByteArray &native, FileMetadata *pMetadata)
{
    av_log_set_level(AV_LOG_QUIET);
    AVFormatContext *pOpened = nullptr;
    // As a file by name: a name with a colon would be taken for an address.
    const QByteArray address = QByteArrayLiteral("file:") + native;
    if (avformat_open_input(&pOpened, address.constData(), nullptr, nullptr) != 0)
        return;
    const std::unique_ptr<AVFormatContext, CloseInput> pContext(pOpened);
    if (isPicture(*pContext->iformat))
        return;
    // Enough of the file for the codec, never all of it.
    constexpr qint64 k_nMostProbed = 2 << 20;
    pContext->probesize = k_nMostProbed;
    if (avformat_find_stream_info(pContext.get(), nullptr) < 0)
        return;
    if (pContext->duration != AV_NOPTS_VALUE)
        pMetadata->nDurationMsec = pContext->duration / (AV_TIME_BASE / 1000);
    QString video;
    QString sound;
    for (unsigned i = 0; i < pContext->nb_streams; ++i) {
        const AVStream &stream = *pContext->streams[i];
        const AVCodecParameters &codec = *stream.codecpar;
        const QString name = QString::fromLatin1(avcodec_get_name(codec.codec_id));
        if (codec.codec_type == AVMEDIA_TYPE_VIDEO && video.isEmpty() && !isCover(stream)) {
            video = name;
            pMetadata->dimensions = QSize(codec.width, codec.height);
        } else if (codec.codec_type == AVMEDIA_TYPE_AUDIO && sound.isEmpty()) {
            sound = name;
        }
    }
    QStringList codecs{video, sound};
    codecs.removeAll(QString());
    pMetadata->codec = codecs.join(QStringLiteral(" · "));
}
