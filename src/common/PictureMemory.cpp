#include "common/PictureMemory.h"

#include "common/Platform.h"

#include <QPixelFormat>

#include <limits>
#include <memory>

namespace {

// Below this the ordinary allocator is as quick.
constexpr qint64 LargePictureBytes = 4 * 1024 * 1024;

struct Block {
    void *pMemory;
    size_t nBytes;
};

void freeBlock(void *pInfo)
{
    const std::unique_ptr<Block> pBlock(static_cast<Block *>(pInfo));
    Platform::freeLargeMemory(pBlock->pMemory, pBlock->nBytes);
}

} // namespace

QImage PictureMemory::create(int nWidth, int nHeight, QImage::Format format)
{
    const int nBits = QImage::toPixelFormat(format).bitsPerPixel();
    // Rows begin at whole words, as QImage wants it.
    const qint64 nBytesPerLine = (qint64(nWidth) * nBits + 31) / 32 * 4;
    const qint64 nBytes = nBytesPerLine * nHeight;
    if (nWidth < 1 || nHeight < 1 || nBytes < LargePictureBytes || nBytesPerLine > std::numeric_limits<int>::max())
        return {nWidth, nHeight, format};
    auto pBlock = std::make_unique<Block>(Block{Platform::allocateLargeMemory(size_t(nBytes)), size_t(nBytes)});
    if (pBlock->pMemory == nullptr)
        return {};
    auto *pPixels = static_cast<uchar *>(pBlock->pMemory);
    return {pPixels, nWidth, nHeight, int(nBytesPerLine), format, &freeBlock, pBlock.release()};
}
