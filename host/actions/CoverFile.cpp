#include "actions/CoverFile.h"

#include "files/PictureWriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <unistd.h>

namespace {

// As large as a desktop's largest thumbnails.
constexpr int k_nLongestSide = 1024;
constexpr int k_nJpegQuality = 93;

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(CoverFile)
};

bool writeCover(const QImage &image, const QString &path, bool bTransparent)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return false;
    return writePicture(&file, image, bTransparent ? QByteArrayLiteral("png") : QByteArrayLiteral("jpg"),
                        bTransparent ? -1 : k_nJpegQuality) &&
           file.flush() && ::fsync(file.handle()) == 0;
}

} // namespace

PreparedCover prepareCover(const QString &picturePath, const QString &coverFolder, const Leftovers &leftovers,
                           const PictureReaderFunction &read, const ActionTask &task, ActionOutcome *pOutcome)
{
    const QString name = QFileInfo(picturePath).fileName();
    const QImage image = read(picturePath, k_nLongestSide, task.cancelFlag());
    if (task.isCancelled()) {
        pOutcome->addError(ActionOutcome::Cancelled, Words::tr("Cancelled"));
        return {};
    }
    if (image.isNull()) {
        pOutcome->addError(ActionOutcome::Failed, Words::tr("%1 is no picture that can be read").arg(name));
        return {};
    }
    PreparedCover cover;
    const bool bTransparent = image.hasAlphaChannel();
    cover.suffix = bTransparent ? QStringLiteral("png") : QStringLiteral("jpg");
    QDir().mkpath(coverFolder);
    errno = 0;
    cover.pFile = leftovers.make(QFile::encodeName(coverFolder));
    if (writeCover(image, QFile::decodeName(cover.pFile->path()), bTransparent))
        return cover;
    const bool bFull = errno == ENOSPC || errno == EDQUOT;
    pOutcome->addError(bFull ? ActionOutcome::NoSpace : ActionOutcome::Failed,
                       Words::tr("The preview picture cannot be kept in %1").arg(coverFolder));
    return {};
}
