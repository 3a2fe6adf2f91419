#include "image/AnimationFileTask.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QMovie>

namespace {

// An animation plays from memory; one that would take more than this is shown by its first frame.
constexpr qint64 LargestAnimationFile = 256 * 1024 * 1024;
// Frames are decoded while they play; larger ones could not keep up with the screen.
constexpr int LargestAnimationPixels = 16 * 1000 * 1000;

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

AnimationFileTask::AnimationFileTask(qint64 nFileId, const QString &path)
    : m_nFileId(nFileId)
    , m_path(path)
{
}

void AnimationFileTask::run()
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > LargestAnimationFile)
        return;
    {
        QImageReader reader(&file);
        if (!reader.supportsAnimation())
            return;
    }
    file.seek(0);
    QByteArray fileData = file.readAll();
    if (isAnimated(&fileData))
        Q_EMIT signal_animationRead(m_nFileId, m_path, fileData);
}
