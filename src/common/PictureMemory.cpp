#include "common/PictureMemory.h"

#include "common/Platform.h"

#include <QMutexLocker>
#include <QPixelFormat>
#include <QRunnable>
#include <QThreadPool>

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace {

// Below this the ordinary allocator is as quick.
constexpr qint64 LargePictureBytes = 4 * 1024 * 1024;
constexpr int LargestSpare = 2;

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
    {
        const QMutexLocker locker(&m_lock);
        const auto it =
            std::find_if(m_spare.begin(), m_spare.end(), [nBytes](const Block &b) { return b.nBytes == nBytes; });
        if (it != m_spare.end()) {
            const Block block = *it;
            m_spare.erase(it);
            return block;
        }
    }
    // Before the new memory is taken, so that the two never exist at the same time.
    trim();
    return {Platform::allocateLargeMemory(nBytes), nBytes, this};
}

void PictureMemory::giveBack(void *pInfo)
{
    const std::unique_ptr<Block> pBlock(static_cast<Block *>(pInfo));
    PictureMemory *pOwner = pBlock->pOwner;
    Block oldest;
    {
        const QMutexLocker locker(&pOwner->m_lock);
        if (pOwner->m_spare.size() == LargestSpare)
            oldest = pOwner->m_spare.takeFirst();
        pOwner->m_spare.append(*pBlock);
    }
    freeBlock(oldest);
}

void PictureMemory::trim()
{
    QVector<Block> blocks;
    {
        const QMutexLocker locker(&m_lock);
        blocks.swap(m_spare);
    }
    for (const Block &block : qAsConst(blocks))
        freeBlock(block);
}

void PictureMemory::freeBlock(const Block &block)
{
    Platform::freeLargeMemory(block.pMemory, block.nBytes);
}

void PictureMemory::disposeInWorker(QVector<QImage> pictures)
{
    class Disposer : public QRunnable {
    public:
        explicit Disposer(QVector<QImage> images)
            : m_images(std::move(images))
        {
        }
        void run() override { m_images.clear(); }

    private:
        QVector<QImage> m_images;
    };
    // Before the loads that wait: what is given back serves them.
    QThreadPool::globalInstance()->start(new Disposer(std::move(pictures)), 1);
}
