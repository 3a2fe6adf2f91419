#include "common/PictureMemory.h"

#include "common/Platform.h"

#include <QMutexLocker>
#include <QPixelFormat>

#include <limits>
#include <memory>
#include <utility>

namespace {

// Below this the ordinary allocator is as quick.
constexpr qint64 LargePictureBytes = 4 * 1024 * 1024;

} // namespace

PictureMemory::~PictureMemory()
{
    trim();
}

QImage PictureMemory::create(int nWidth, int nHeight, QImage::Format format)
{
    const int nBits = QImage::toPixelFormat(format).bitsPerPixel();
    // Rows begin at whole words, as QImage wants it.
    const qint64 nBytesPerLine = (qint64(nWidth) * nBits + 31) / 32 * 4;
    const qint64 nBytes = nBytesPerLine * nHeight;
    if (nWidth < 1 || nHeight < 1 || nBytes < LargePictureBytes || nBytesPerLine > std::numeric_limits<int>::max())
        return {nWidth, nHeight, format};
    auto pBlock = std::make_unique<Block>(take(size_t(nBytes)));
    if (pBlock->pMemory == nullptr)
        return {};
    auto *pPixels = static_cast<uchar *>(pBlock->pMemory);
    return {pPixels, nWidth, nHeight, int(nBytesPerLine), format, &PictureMemory::giveBack, pBlock.release()};
}

PictureMemory::Block PictureMemory::take(size_t nBytes)
{
    Block block;
    {
        const QMutexLocker locker(&m_lock);
        block = std::exchange(m_spare, Block());
    }
    if (block.nBytes == nBytes)
        return block;
    // Before the new memory is taken, so that the two never exist at the same time.
    freeBlock(block);
    return {Platform::allocateLargeMemory(nBytes), nBytes, this};
}

void PictureMemory::giveBack(void *pInfo)
{
    const std::unique_ptr<Block> pBlock(static_cast<Block *>(pInfo));
    PictureMemory *pOwner = pBlock->pOwner;
    Block old = *pBlock;
    {
        const QMutexLocker locker(&pOwner->m_lock);
        std::swap(old, pOwner->m_spare);
    }
    freeBlock(old);
}

void PictureMemory::trim()
{
    Block block;
    {
        const QMutexLocker locker(&m_lock);
        block = std::exchange(m_spare, Block());
    }
    freeBlock(block);
}

void PictureMemory::freeBlock(const Block &block)
{
    Platform::freeLargeMemory(block.pMemory, block.nBytes);
}
