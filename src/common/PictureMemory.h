#pragma once

#include <QImage>
#include <QMutex>
#include <QVector>

/**
 * Memory of decoded pictures. Taking and clearing a hundred megabytes costs as much time as decoding them, so the
 * memory of the picture before, which is given back when the next one is loaded, is used again for it: that of the
 * picture itself and that of its half.
 *
 * Owner: the shared state; outlives every picture. Thread: any.
 */
class PictureMemory {
public:
    PictureMemory() = default;
    ~PictureMemory();
    Q_DISABLE_COPY(PictureMemory)

    /** A picture with undefined pixels, as QImage's own constructor makes it; null when there is no memory for it. */
    QImage create(int nWidth, int nHeight, QImage::Format format);

    /** Gives back what is kept for the next picture. */
    void trim();

    /** Lets go of pictures in a worker: giving hundreds of megabytes back takes longer than a frame. GUI thread. */
    static void disposeInWorker(QVector<QImage> pictures);

private:
    struct Block {
        void *pMemory = nullptr;
        size_t nBytes = 0;
        PictureMemory *pOwner = nullptr;
    };

    static void giveBack(void *pInfo);
    static void freeBlock(const Block &block);
    Block take(size_t nBytes);

    QMutex m_lock;
    QVector<Block> m_spare;
};
