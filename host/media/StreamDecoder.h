#pragma once

#include "media/MediaInput.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace media {

/**
 * Decodes one stream of an open input, frame by frame; damaged packets are passed over. A value of one thread; the
 * input must outlive it.
 */
class StreamDecoder {
public:
    StreamDecoder(AVFormatContext &input, AVStream &stream);

    /** False when there is no decoder for the stream. */
    bool isOpen() const { return m_pCodec != nullptr; }

    /** Only frames that need no other one: much faster for stills. */
    void setKeyFramesOnly();

    /** Moves to the last key frame at or before this time of the stream; what comes next is decoded from there. */
    bool seek(qint64 nTimestamp);

    /** The next frame, valid until the next call; null at the end of the file. */
    const AVFrame *next();

private:
    struct FreeCodec {
        void operator()(AVCodecContext *pCodec) const { avcodec_free_context(&pCodec); }
    };
    struct FreeFrame {
        void operator()(AVFrame *pFrame) const { av_frame_free(&pFrame); }
    };
    struct FreePacket {
        void operator()(AVPacket *pPacket) const { av_packet_free(&pPacket); }
    };

    AVFormatContext &m_input;
    AVStream &m_stream;
    std::unique_ptr<AVCodecContext, FreeCodec> m_pCodec;
    std::unique_ptr<AVFrame, FreeFrame> m_pFrame;
    std::unique_ptr<AVPacket, FreePacket> m_pPacket;
    bool m_bAtEnd = false;
};

} // namespace media
