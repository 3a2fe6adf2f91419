#include "services/basemodule/decode/JpegSession.h"

#include <QIODevice>

namespace basemodule {

namespace {

// Enough for any honest progressive picture; a crafted one repeats scans for hours.
constexpr int kMaxScans = 200;
// Progressive pictures keep their coefficients: twice the bitmap at most.
constexpr long kMaxWorkMemory = 3L << 30;

} // namespace

JpegSession::JpegSession(QIODevice &device, const DecodeRequest &request)
    : m_device(device)
    , m_request(request)
{
    m_info.err = jpeg_std_error(&m_error);
    m_error.error_exit = &JpegSession::onError;
    m_error.emit_message = &JpegSession::onMessage;
    m_info.client_data = this;
    if (setjmp(m_jump) != 0)
        return;
    jpeg_create_decompress(&m_info);
    m_info.client_data = this;
    m_info.mem->max_memory_to_use = kMaxWorkMemory;
    m_progress.progress_monitor = &JpegSession::onProgress;
    m_info.progress = &m_progress;
    m_source.init_source = [](j_decompress_ptr) {
    };
    m_source.term_source = [](j_decompress_ptr) {
    };
    m_source.fill_input_buffer = &JpegSession::fillBuffer;
    m_source.skip_input_data = &JpegSession::skipBytes;
    m_source.resync_to_restart = jpeg_resync_to_restart;
    m_info.src = &m_source;
}

JpegSession::~JpegSession()
{
    jpeg_destroy_decompress(&m_info);
}

JpegSession *JpegSession::of(j_common_ptr pInfo)
{
    return static_cast<JpegSession *>(pInfo->client_data);
}

void JpegSession::onError(j_common_ptr pInfo)
{
    std::longjmp(of(pInfo)->m_jump, 1);
}

// Warnings come by the million from damaged files; what can be shown of them is shown.
void JpegSession::onMessage(j_common_ptr pInfo, int nLevel)
{
    if (nLevel < 0)
        ++pInfo->err->num_warnings;
}

void JpegSession::onProgress(j_common_ptr pInfo)
{
    JpegSession *pSession = of(pInfo);
    const auto *pDecompress = reinterpret_cast<j_decompress_ptr>(pInfo);
    if (pDecompress->input_scan_number > kMaxScans || !pSession->m_request.proceed())
        onError(pInfo);
}

boolean JpegSession::fillBuffer(j_decompress_ptr pInfo)
{
    JpegSession *pSession = of(reinterpret_cast<j_common_ptr>(pInfo));
    qint64 nRead = pSession->m_device.read(reinterpret_cast<char *>(pSession->m_buffer), sizeof pSession->m_buffer);
    if (nRead <= 0) {
        pSession->m_bTruncated = true;
        pSession->m_buffer[0] = 0xff;
        pSession->m_buffer[1] = JPEG_EOI;
        nRead = 2;
    }
    pSession->m_source.next_input_byte = pSession->m_buffer;
    pSession->m_source.bytes_in_buffer = size_t(nRead);
    return TRUE;
}

void JpegSession::skipBytes(j_decompress_ptr pInfo, long nBytes)
{
    JpegSession *pSession = of(reinterpret_cast<j_common_ptr>(pInfo));
    jpeg_source_mgr &source = pSession->m_source;
    while (nBytes > long(source.bytes_in_buffer)) {
        nBytes -= long(source.bytes_in_buffer);
        fillBuffer(pInfo);
        if (pSession->m_bTruncated)
            return;
    }
    if (nBytes > 0) {
        source.next_input_byte += nBytes;
        source.bytes_in_buffer -= size_t(nBytes);
    }
}

bool JpegSession::readHeader()
{
    if (!m_info.src || setjmp(m_jump) != 0)
        return false;
    jpeg_save_markers(&m_info, JPEG_APP0 + 1, 0xffff);
    jpeg_save_markers(&m_info, JPEG_APP0 + 2, 0xffff);
    return jpeg_read_header(&m_info, TRUE) == JPEG_HEADER_OK;
}

bool JpegSession::start()
{
    if (setjmp(m_jump) != 0)
        return false;
    return jpeg_start_decompress(&m_info) == TRUE;
}

int JpegSession::readRows(JSAMPARRAY rows, int nRows)
{
    if (setjmp(m_jump) != 0)
        return -1;
    if (m_info.output_scanline >= m_info.output_height)
        return 0;
    return int(jpeg_read_scanlines(&m_info, rows, JDIMENSION(nRows)));
}

} // namespace basemodule
