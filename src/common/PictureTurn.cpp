#include "common/PictureTurn.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define PICTURE_TURN_SSE2
#endif

namespace {

// Blocks of this many pixels fit the nearest cache; a multiple of Step.
constexpr int Block = 32;
constexpr int Step = 4;

/** Where a pixel of the turned picture comes from. */
struct Turn {
    const quint32 *pSource;
    quint32 *pTarget;
    qptrdiff nSourceLine;
    qptrdiff nTargetLine;
    int nWidth;
    int nHeight;
    bool bFromBelow;
    bool bFromLeft;

    const quint32 *sourceRow(int x) const { return pSource + (bFromBelow ? nWidth - 1 - x : x) * nSourceLine; }
    int sourceColumn(int y) const { return bFromLeft ? y : nHeight - 1 - y; }
};

void turnPixels(const Turn &turn, int nLeft, int nTop, int nRight, int nBottom)
{
    for (int y = nTop; y < nBottom; ++y) {
        quint32 *pRow = turn.pTarget + y * turn.nTargetLine;
        for (int x = nLeft; x < nRight; ++x)
            pRow[x] = turn.sourceRow(x)[turn.sourceColumn(y)];
    }
}

#if defined(PICTURE_TURN_SSE2)
/** Four by four pixels at once. */
void turnStep(const Turn &turn, int nLeft, int nTop)
{
    // Of each source row the columns of four target rows, which follow each other either way.
    const int nColumn = qMin(turn.sourceColumn(nTop), turn.sourceColumn(nTop + Step - 1));
    const auto load = [&](int i) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i *>(turn.sourceRow(nLeft + i) + nColumn));
    };
    const auto store = [&](int j, __m128i pixels) {
        const int y = turn.bFromLeft ? nTop + j : nTop + Step - 1 - j;
        _mm_storeu_si128(reinterpret_cast<__m128i *>(turn.pTarget + y * turn.nTargetLine + nLeft), pixels);
    };
    const __m128i a = load(0);
    const __m128i b = load(1);
    const __m128i c = load(2);
    const __m128i d = load(3);
    const __m128i abLow = _mm_unpacklo_epi32(a, b);
    const __m128i cdLow = _mm_unpacklo_epi32(c, d);
    const __m128i abHigh = _mm_unpackhi_epi32(a, b);
    const __m128i cdHigh = _mm_unpackhi_epi32(c, d);
    store(0, _mm_unpacklo_epi64(abLow, cdLow));
    store(1, _mm_unpackhi_epi64(abLow, cdLow));
    store(2, _mm_unpacklo_epi64(abHigh, cdHigh));
    store(3, _mm_unpackhi_epi64(abHigh, cdHigh));
}

void turnBlock(const Turn &turn, int nLeft, int nTop, int nRight, int nBottom)
{
    const int nWholeRight = nRight - (nRight - nLeft) % Step;
    const int nWholeBottom = nBottom - (nBottom - nTop) % Step;
    for (int y = nTop; y < nWholeBottom; y += Step) {
        for (int x = nLeft; x < nWholeRight; x += Step)
            turnStep(turn, x, y);
    }
    turnPixels(turn, nWholeRight, nTop, nRight, nWholeBottom);
    turnPixels(turn, nLeft, nWholeBottom, nRight, nBottom);
}
#else
void turnBlock(const Turn &turn, int nLeft, int nTop, int nRight, int nBottom)
{
    turnPixels(turn, nLeft, nTop, nRight, nBottom);
}
#endif

} // namespace

void PictureTurn::turnInto(const QImage &upright, bool bClockwise, bool bMirrored, QImage *pTurned)
{
    const Turn turn = {reinterpret_cast<const quint32 *>(upright.constBits()),
                       reinterpret_cast<quint32 *>(pTurned->bits()),
                       upright.bytesPerLine() / 4,
                       pTurned->bytesPerLine() / 4,
                       pTurned->width(),
                       pTurned->height(),
                       bClockwise != bMirrored,
                       bClockwise};
    for (int nTop = 0; nTop < turn.nHeight; nTop += Block) {
        for (int nLeft = 0; nLeft < turn.nWidth; nLeft += Block)
            turnBlock(turn, nLeft, nTop, qMin(nLeft + Block, turn.nWidth), qMin(nTop + Block, turn.nHeight));
    }
}
