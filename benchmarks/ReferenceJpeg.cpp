#include "ReferenceJpeg.h"

#include <QFile>
#include <QImage>

#include <cmath>
#include <cstdio>
#include <jpeglib.h>
#include <memory>
#include <vector>

bool decodeWithLibjpeg(const QString &path)
{
    struct Close {
        void operator()(std::FILE *pFile) const { std::fclose(pFile); }
    };
    const std::unique_ptr<std::FILE, Close> pFile(std::fopen(QFile::encodeName(path).constData(), "rb"));
    if (!pFile)
        return false;
    jpeg_decompress_struct decompress{};
    jpeg_error_mgr errors{};
    decompress.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&decompress);
    jpeg_stdio_src(&decompress, pFile.get());
    jpeg_read_header(&decompress, TRUE);
    decompress.out_color_space = JCS_EXT_BGRX;
    jpeg_start_decompress(&decompress);
    const size_t nRow = size_t(decompress.output_width) * 4;
    // Not initialised: clearing the memory first is no part of decoding.
    const std::unique_ptr<JSAMPLE[]> pPixels(new JSAMPLE[nRow * decompress.output_height]);
    while (decompress.output_scanline < decompress.output_height) {
        JSAMPROW pRow = pPixels.get() + nRow * decompress.output_scanline;
        jpeg_read_scanlines(&decompress, &pRow, 1);
    }
    jpeg_finish_decompress(&decompress);
    jpeg_destroy_decompress(&decompress);
    return true;
}

bool writePhoto(const QString &path, int nWidth, int nHeight, unsigned nSeed)
{
    QImage image(nWidth, nHeight, QImage::Format_RGB32);
    unsigned nState = nSeed * 2654435761U + 1;
    for (int y = 0; y < nHeight; ++y) {
        auto *pRow = reinterpret_cast<QRgb *>(image.scanLine(y));
        const double fSlow = std::sin((y + nSeed * 211.0) * 0.003) * 60.0;
        for (int x = 0; x < nWidth; ++x) {
            nState = nState * 1664525U + 1013904223U;
            const int nGrain = int(nState >> 28U);
            const int nEdge = ((x / 37 + y / 53) % 7 == 0) ? 40 : 0;
            const int nBase = int(128.0 + fSlow + std::sin(x * 0.011 + nSeed) * 40.0) + nGrain + nEdge;
            pRow[x] = qRgb(qBound(0, nBase, 255), qBound(0, nBase + int(x * 40L / nWidth) - 20, 255),
                           qBound(0, 200 - nBase / 2 + nGrain, 255));
        }
    }
    return image.save(path, "jpg", 90);
}
