#include "actions/CoverTask.h"

#include "actions/TsQtUtils.h"

#include <QFileInfo>
#include <QImage>

namespace {

/** The middle of the picture in a file of its own; the given path where it is a square already, or no picture. */
QString squarePicture(const QString &path)
{
    const QSize size = TsQtUtils::pictureSize(path);
    if (size.isValid() && size.width() == size.height())
        return path;
    const QImage square = TsQtUtils::readSquare(path);
    const QString target = square.isNull() ? QString() : TsQtUtils::makeTempPicturePath(QStringLiteral(".webp"));
    return !target.isEmpty() && square.save(target, "webp") ? target : path;
}

} // namespace

CoverTask::CoverTask(const QString &path, bool bSquare)
    : m_path(path)
    , m_bSquare(bSquare)
{
}

CoverTask::CoverTask(const QImage &picture)
    : m_picture(picture)
{
}

void CoverTask::run()
{
    QString path = m_path;
    if (!m_picture.isNull()) {
        path = TsQtUtils::makeTempPicturePath(QStringLiteral(".png"));
        if (!path.isEmpty() && !m_picture.save(path, "png"))
            path.clear();
    }
    if (m_bSquare && QFileInfo::exists(path))
        path = squarePicture(path);
    int nWidth = 0;
    int nHeight = 0;
    Q_EMIT signal_coverReady(TsQtUtils::prepareCoverImage(path, &nWidth, &nHeight));
}
