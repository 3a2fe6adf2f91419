#include "actions/CoverTask.h"

#include "actions/TsQtUtils.h"

#include <QFileInfo>
#include <QImage>

namespace {

/** The middle of the picture in a file of its own; the given path where it is a square already, or no picture. */
QString squarePicture(const QString &path)
{
    const QImage picture = TsQtUtils::readPicture(path);
    if (picture.width() == picture.height())
        return path;
    const QString target = TsQtUtils::makeTempPicturePath(QStringLiteral(".webp"));
    const bool bSaved =
        !target.isEmpty() && picture.copy(TsQtUtils::centredSquare(picture.size())).save(target, "webp");
    return bSaved ? target : path;
}

} // namespace

CoverTask::CoverTask(const QString &path, bool bSquare)
    : m_path(path)
    , m_bSquare(bSquare)
{
}

void CoverTask::run()
{
    QString path = m_path;
    if (m_bSquare && QFileInfo::exists(path))
        path = squarePicture(path);
    int nWidth = 0;
    int nHeight = 0;
    Q_EMIT signal_coverReady(TsQtUtils::prepareCoverImage(path, &nWidth, &nHeight));
}
