#include "common/PictureLevels.h"

#include "common/ParallelRows.h"
#include "common/PictureMemory.h"

#include <utility>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define PICTURE_LEVELS_SSE2
#endif

namespace {

// Pictures up to this many pixels are painted from themselves: bilinear sampling is sharp enough there.
constexpr int SmallestSide = 512;
constexpr quint32 OpaqueBits = 0xFF000000U;

quint32 average(quint32 a, quint32 b)
{
    return (a | b) - (((a ^ b) >> 1) & 0x7F7F7F7FU);
}

QImage halved(const QImage &image, PictureMemory &memory)
{
    const QSize size = PictureLevels::nextSize(image.size());
    QImage half = memory.create(size.width(), size.height(), image.format());
    if (half.isNull())
        return half;
    uchar *pTarget = half.bits();
    forRowsInParallel(half.height(), image.sizeInBytes(), [&](int nBegin, int nEnd) {
        for (int y = nBegin; y < nEnd; ++y) {
            PictureLevels::halveRow(
                reinterpret_cast<const quint32 *>(image.constScanLine(2 * y)),
                reinterpret_cast<const quint32 *>(image.constScanLine(qMin(2 * y + 1, image.height() - 1))),
                reinterpret_cast<quint32 *>(pTarget + qsizetype(y) * half.bytesPerLine()), image.width());
        }
    });
    return half;
}

bool isOpaque(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        if (!PictureLevels::isOpaqueRow(reinterpret_cast<const quint32 *>(image.constScanLine(y)), image.width()))
            return false;
    }
    return true;
}

} // namespace

bool PictureLevels::isOpaqueRow(const quint32 *pRow, int nWidth)
{
    // Without a branch for each pixel, so that the compiler takes many at a time.
    quint32 nAll = OpaqueBits;
    for (int x = 0; x < nWidth; ++x)
        nAll &= pRow[x];
    return nAll == OpaqueBits;
}

bool PictureLevels::copyPixels(const quint32 *pSource, quint32 *pTarget, qsizetype nPixels)
{
    quint32 nAll = OpaqueBits;
    qsizetype n = 0;
#if defined(PICTURE_LEVELS_SSE2)
    constexpr quintptr Alignment = 15;
    for (; n < nPixels && (reinterpret_cast<quintptr>(pTarget + n) & Alignment) != 0; ++n)
        nAll &= pTarget[n] = pSource[n];
    __m128i all = _mm_set1_epi32(-1);
    for (; n + 16 <= nPixels; n += 16) {
        const auto *pFrom = reinterpret_cast<const __m128i *>(pSource + n);
        auto *pTo = reinterpret_cast<__m128i *>(pTarget + n);
        const __m128i a = _mm_loadu_si128(pFrom);
        const __m128i b = _mm_loadu_si128(pFrom + 1);
        const __m128i c = _mm_loadu_si128(pFrom + 2);
        const __m128i d = _mm_loadu_si128(pFrom + 3);
        _mm_stream_si128(pTo, a);
        _mm_stream_si128(pTo + 1, b);
        _mm_stream_si128(pTo + 2, c);
        _mm_stream_si128(pTo + 3, d);
        all = _mm_and_si128(all, _mm_and_si128(_mm_and_si128(a, b), _mm_and_si128(c, d)));
    }
    // What was written past the cache must be there before another thread is told that it is.
    _mm_sfence();
    quint32 lanes[4];
    _mm_storeu_si128(reinterpret_cast<__m128i *>(lanes), all);
    nAll &= lanes[0] & lanes[1] & lanes[2] & lanes[3];
#endif
    for (; n < nPixels; ++n)
        nAll &= pTarget[n] = pSource[n];
    return (nAll & OpaqueBits) == OpaqueBits;
}

void PictureLevels::halveRow(const quint32 *pUpper, const quint32 *pLower, quint32 *pTarget, int nWidth)
{
    const int nPairs = nWidth / 2;
    int x = 0;
#if defined(PICTURE_LEVELS_SSE2)
    for (; x + 4 <= nPairs; x += 4) {
        const auto load = [](const quint32 *p) {
            return _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
        };
        const __m128i left = _mm_avg_epu8(load(pUpper + 2 * x), load(pLower + 2 * x));
        const __m128i right = _mm_avg_epu8(load(pUpper + 2 * x + 4), load(pLower + 2 * x + 4));
        const __m128 l = _mm_castsi128_ps(left);
        const __m128 r = _mm_castsi128_ps(right);
        const __m128i even = _mm_castps_si128(_mm_shuffle_ps(l, r, _MM_SHUFFLE(2, 0, 2, 0)));
        const __m128i odd = _mm_castps_si128(_mm_shuffle_ps(l, r, _MM_SHUFFLE(3, 1, 3, 1)));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(pTarget + x), _mm_avg_epu8(even, odd));
    }
#endif
    for (; x < nPairs; ++x) {
        pTarget[x] = average(average(pUpper[2 * x], pLower[2 * x]), average(pUpper[2 * x + 1], pLower[2 * x + 1]));
    }
    if (nWidth % 2 != 0)
        pTarget[nPairs] = average(pUpper[nWidth - 1], pLower[nWidth - 1]);
}

QImage PictureLevels::toScreenFormat(QImage image, bool bOpaque)
{
    if (image.isNull() || image.format() == QImage::Format_RGB32 ||
        image.format() == QImage::Format_ARGB32_Premultiplied) {
        return image;
    }
    // Alpha is the top byte of a pixel in both; an alpha channel that nobody uses would be blended on every paint.
    if (image.format() == QImage::Format_ARGB32 && (bOpaque || isOpaque(image))) {
        image.reinterpretAsFormat(QImage::Format_RGB32);
        return image;
    }
    if (image.format() == QImage::Format_RGBA8888 && (bOpaque || isOpaque(image)))
        image.reinterpretAsFormat(QImage::Format_RGBX8888);
    const QImage::Format target = image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    return std::move(image).convertToFormat(target);
}

QSize PictureLevels::nextSize(const QSize &size)
{
    if (qMax(size.width(), size.height()) <= 2 * SmallestSide)
        return {};
    // Odd sides are rounded up, so that each pixel stands for exactly two by two of the larger picture.
    return {(size.width() + 1) / 2, (size.height() + 1) / 2};
}

QVector<QImage> PictureLevels::build(const QImage &image, PictureMemory &memory, const QImage &first)
{
    QVector<QImage> levels;
    if (image.isNull() || image.depth() != 32)
        return levels;
    QImage current = image;
    while (!nextSize(current.size()).isEmpty()) {
        const bool bThere = levels.isEmpty() && !first.isNull();
        current = bThere ? first : halved(current, memory);
        if (current.isNull()) // out of memory: the larger levels still serve
            break;
        levels.append(current);
    }
    return levels;
}
