#pragma once

#include "services/basemodule/decode/DecodeRequest.h"

#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <jpeglib.h>

class QIODevice;

namespace basemodule {

/**
 * One libjpeg decompression. The library leaves a failed call by longjmp, so every step that calls it is a member
 * that holds plain data only and answers false. Owner and thread: the decode, on its stack.
 */
class JpegSession {
public:
    JpegSession(QIODevice &device, const DecodeRequest &request);
    ~JpegSession();
    JpegSession(const JpegSession &) = delete;
    JpegSession &operator=(const JpegSession &) = delete;

    bool readHeader();
    bool start();
    /** Reads up to nRows rows; the number read, 0 at the end, -1 when the decode failed. */
    int readRows(JSAMPARRAY rows, int nRows);

    jpeg_decompress_struct &info() { return m_info; }
    /** True once the stream ended before the picture did. */
    bool isTruncated() const { return m_bTruncated; }
    bool proceed() const { return m_request.proceed(); }

private:
    static JpegSession *of(j_common_ptr pInfo);
    static void onError(j_common_ptr pInfo);
    static void onMessage(j_common_ptr pInfo, int nLevel);
    static void onProgress(j_common_ptr pInfo);
    static boolean fillBuffer(j_decompress_ptr pInfo);
    static void skipBytes(j_decompress_ptr pInfo, long nBytes);

    QIODevice &m_device;
    const DecodeRequest &m_request;
    jpeg_decompress_struct m_info{};
    jpeg_error_mgr m_error{};
    jpeg_source_mgr m_source{};
    jpeg_progress_mgr m_progress{};
    std::jmp_buf m_jump{};
    bool m_bTruncated = false;
    JOCTET m_buffer[1 << 16];
};

} // namespace basemodule
