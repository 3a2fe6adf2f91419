#include "media/StreamDecoder.h"

namespace media {

StreamDecoder::StreamDecoder(AVFormatContext &input, AVStream &stream)
    : m_input(input)
    , m_stream(stream)
    , m_pFrame(av_frame_alloc())
    , m_pPacket(av_packet_alloc())
{
    const AVCodec *pDecoder = avcodec_find_decoder(stream.codecpar->codec_id);
    std::unique_ptr<AVCodecContext, FreeCodec> pCodec(pDecoder ? avcodec_alloc_context3(pDecoder) : nullptr);
    if (pCodec == nullptr || m_pFrame == nullptr || m_pPacket == nullptr)
        return;
    if (avcodec_parameters_to_context(pCodec.get(), stream.codecpar) < 0)
        return;
    pCodec->pkt_timebase = stream.time_base;
    // Several files are read at once already.
    pCodec->thread_count = 1;
    if (avcodec_open2(pCodec.get(), pDecoder, nullptr) < 0)
        return;
    for (unsigned i = 0; i < input.nb_streams; ++i)
        input.streams[i]->discard = input.streams[i] == &stream ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    m_pCodec = std::move(pCodec);
}

void StreamDecoder::setKeyFramesOnly()
{
    if (m_pCodec != nullptr)
        m_pCodec->skip_frame = AVDISCARD_NONKEY;
}

bool StreamDecoder::seek(qint64 nTimestamp)
{
    if (av_seek_frame(&m_input, m_stream.index, nTimestamp, AVSEEK_FLAG_BACKWARD) < 0)
        return false;
    avcodec_flush_buffers(m_pCodec.get());
    m_bAtEnd = false;
    return true;
}

const AVFrame *StreamDecoder::next()
{
    while (m_pCodec != nullptr) {
        const int nReceived = avcodec_receive_frame(m_pCodec.get(), m_pFrame.get());
        if (nReceived == 0)
            return m_pFrame.get();
        if (m_bAtEnd || (nReceived != AVERROR(EAGAIN) && nReceived != AVERROR_INVALIDDATA))
            return nullptr;
        const int nRead = av_read_frame(&m_input, m_pPacket.get());
        if (nRead < 0) {
            // What the decoder holds back still comes out.
            m_bAtEnd = true;
            avcodec_send_packet(m_pCodec.get(), nullptr);
            continue;
        }
        // A packet that cannot be decoded is left out; the next ones may be whole.
        if (m_pPacket->stream_index == m_stream.index)
            avcodec_send_packet(m_pCodec.get(), m_pPacket.get());
        av_packet_unref(m_pPacket.get());
    }
    return nullptr;
}

} // namespace media
