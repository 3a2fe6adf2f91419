#include "media/MediaInput.h"

#include <QString>

#include <cmath>

extern "C" {
#include <libavutil/display.h>
}

namespace media {

namespace {

// Enough of the file to know its streams, never all of it.
constexpr qint64 kMostProbed = 4 << 20;

int isCancelled(void *pCancelled)
{
    return (*static_cast<const Cancelled *>(pCancelled))() ? 1 : 0;
}

// The library has readers for pictures, texts and lists of other files too.
bool isMedia(const AVInputFormat &format)
{
    const QByteArray name(format.name);
    for (const char *pOther : {"image2", "hls", "concat", "concatf", "dash", "imf", "tty", "webvtt", "srt", "ass"}) {
        if (name == pOther)
            return false;
    }
    return !name.endsWith("_pipe");
}

} // namespace

InputPointer openHead(const QByteArray &native, const Cancelled &cancelled)
{
    av_log_set_level(AV_LOG_QUIET);
    AVFormatContext *pContext = avformat_alloc_context();
    if (pContext == nullptr)
        return {};
    pContext->interrupt_callback.callback = &isCancelled;
    pContext->interrupt_callback.opaque = const_cast<Cancelled *>(&cancelled);
    pContext->probesize = kMostProbed;
    AVDictionary *pOptions = nullptr;
    av_dict_set(&pOptions, "protocol_whitelist", "file", 0);
    // As a file by name: a name with a colon would be taken for an address.
    const QByteArray address = QByteArrayLiteral("file:") + native;
    const int nError = avformat_open_input(&pContext, address.constData(), nullptr, &pOptions);
    av_dict_free(&pOptions);
    if (nError != 0)
        return {};
    InputPointer pInput(pContext);
    if (!isMedia(*pInput->iformat))
        return {};
    return pInput;
}

InputPointer openInput(const QByteArray &native, const Cancelled &cancelled)
{
    InputPointer pInput = openHead(native, cancelled);
    if (pInput != nullptr && avformat_find_stream_info(pInput.get(), nullptr) < 0)
        return {};
    return pInput;
}

bool isAttachedPicture(const AVStream &stream)
{
    return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

AVStream *videoStream(const AVFormatContext &input)
{
    for (unsigned i = 0; i < input.nb_streams; ++i) {
        AVStream *pStream = input.streams[i];
        if (pStream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isAttachedPicture(*pStream))
            return pStream;
    }
    return nullptr;
}

AVStream *soundStream(const AVFormatContext &input)
{
    AVStream *pFirst = nullptr;
    for (unsigned i = 0; i < input.nb_streams; ++i) {
        AVStream *pStream = input.streams[i];
        if (pStream->codecpar->codec_type != AVMEDIA_TYPE_AUDIO)
            continue;
        if ((pStream->disposition & AV_DISPOSITION_DEFAULT) != 0)
            return pStream;
        if (pFirst == nullptr)
            pFirst = pStream;
    }
    return pFirst;
}

int uprightRotation(const AVStream &stream)
{
    const uint8_t *pMatrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (pMatrix == nullptr)
        return 0;
    const double fTurn = av_display_rotation_get(reinterpret_cast<const int32_t *>(pMatrix));
    if (std::isnan(fTurn))
        return 0;
    const int nQuarters = int(std::lround(-fTurn / 90.0)) % 4;
    return (nQuarters + 4) % 4 * 90;
}

} // namespace media
