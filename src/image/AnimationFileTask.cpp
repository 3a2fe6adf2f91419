#include "image/AnimationFileTask.h"

#include "common/Platform.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QMovie>

namespace {

// An animation plays from memory; one that would take more than this is shown by its first frame.
constexpr qint64 LargestAnimationFile = 256 * 1024 * 1024;
// Frames are decoded in the GUI thread while they play: larger ones would make everything else wait.
constexpr int LargestAnimationPixels = 2500 * 1000;
constexpr qint64 ChunkBytes = 1024 * 1024;

bool isAnimated(QByteArray *pFileData)
{
    QBuffer buffer(pFileData);
    if (!buffer.open(QIODevice::ReadOnly))
        return false;
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    // Zero frames means that the format does not tell without reading on.
    return reader.supportsAnimation() && QMovie::supportedFormats().contains(reader.format()) &&
           reader.imageCount() != 1 && qint64(size.width()) * size.height() <= LargestAnimationPixels;
}

} // namespace

AnimationFileTask::AnimationFileTask(qint64 nFileId, const QString &path, const QSharedPointer<QAtomicInt> &pCancel)
    : m_nFileId(nFileId)
    , m_path(path)
    , m_pCancel(pCancel)
{
}

bool AnimationFileTask::canBeAnimated(const QString &extension)
{
    return QMovie::supportedFormats().contains(extension.toLatin1());
}

void AnimationFileTask::run()
{
    QFile file;
    if (!Platform::openForReading(&file, m_path) || file.size() > LargestAnimationFile)
        return;
    QByteArray fileData;
    while (!file.atEnd()) {
        if (m_pCancel->loadRelaxed() != 0)
            return;
        const QByteArray chunk = file.read(ChunkBytes);
        if (chunk.isEmpty()) // it became unreadable meanwhile
            return;
        fileData += chunk;
    }
    if (isAnimated(&fileData))
        Q_EMIT signal_animationRead(m_nFileId, m_path, fileData);
}
