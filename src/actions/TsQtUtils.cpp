#include "actions/TsQtUtils.h"

#include "common/Platform.h"

#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QFontMetrics>
#include <QImageReader>
#include <QSet>
#include <QUrl>

namespace {

// Preview pictures that are large in bytes and in both directions are scaled down to this shorter side.
constexpr qint64 LargestUnscaledFile = 0x40000;
constexpr int SmallestScaledSide = 901;
constexpr int ScaledSide = 320;

bool isPictureSuffix(const QString &suffix)
{
    static const QSet<QString> suffixes = {QStringLiteral("png"), QStringLiteral("webp"), QStringLiteral("jpg"),
                                           QStringLiteral("jpeg"), QStringLiteral("bmp")};
    return suffixes.contains(suffix.toLower());
}

/** The size with the shorter side scaled down; the ratio in single precision, the product cut off. */
QSize scaledCoverSize(const QSize &size)
{
    if (size.width() > size.height())
        return {int(float(size.width()) / float(size.height()) * ScaledSide), ScaledSide};
    return {ScaledSide, int(float(size.height()) / float(size.width()) * ScaledSide)};
}

/** A phone's picture lies on its side in the file. */
bool isOnItsSide(const QImageReader &reader)
{
    return reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
}

/** A picture that is to become this small: formats that can are spared most of what is thrown away. */
QImage readScaled(const QString &path, const QSize &size)
{
    return TsQtUtils::readPicture(path, 2 * size).scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

void TsQtUtils::showInGraphicalShell(const QString &path)
{
    const QString absolutePath = QFileInfo(path).absoluteFilePath();
    if (absolutePath.size() <= Platform::longestRevealPath()) {
        Platform::revealInFileManager(absolutePath);
        return;
    }
    // Absolute paths carry forward slashes, so as a rule nothing is cut and the file itself is opened.
    const QUrl url = QUrl::fromLocalFile(absolutePath.left(absolutePath.lastIndexOf(QLatin1Char('\\'))));
    QDesktopServices::openUrl(url);
    qInfo().noquote() << QStringLiteral("TsQtUtils::showInGraphicalShell org_path ") + path +
                             QStringLiteral(" type2 cmd ") + url.toString();
}

int TsQtUtils::textWidth(const QFont &font, const QString &text)
{
    return text.isEmpty() ? 0 : QFontMetrics(font).boundingRect(text).width();
}

QString TsQtUtils::makeTempFilePath(const QString &folder, const QString &extension)
{
    // The name without the extension is free again, which says nothing of the one with it.
    constexpr int MostTries = 100;
    for (int i = 0; i < MostTries; ++i) {
        const QString name = Platform::uniqueTemporaryName(folder);
        if (name.isEmpty())
            break;
        if (!QFileInfo::exists(name + extension))
            return name + extension;
    }
    return {};
}

QString TsQtUtils::makeTempPicturePath(const QString &extension)
{
    return makeTempFilePath(QDir::toNativeSeparators(QDir::tempPath()), extension);
}

QSize TsQtUtils::pictureSize(const QString &path)
{
    const QImageReader reader(path);
    const QSize size = reader.size();
    return isOnItsSide(reader) ? size.transposed() : size;
}

QImage TsQtUtils::readPicture(const QString &path, const QSize &scaledSize)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    if (scaledSize.isValid())
        reader.setScaledSize(isOnItsSide(reader) ? scaledSize.transposed() : scaledSize);
    return reader.read();
}

QImage TsQtUtils::readSquare(const QString &path)
{
    // The longest side that WebP can hold: what is larger becomes as small as a preview picture at once.
    constexpr int LongestSide = 16383;
    const QSize size = pictureSize(path);
    QImage picture;
    if (qMin(size.width(), size.height()) > LongestSide)
        picture = readPicture(path, scaledCoverSize(size));
    else
        picture = readPicture(path);
    return picture.copy(centredSquare(picture.size()));
}

QRect TsQtUtils::centredSquare(const QSize &size)
{
    const int nSide = qMin(size.width(), size.height());
    return {(size.width() - nSide) / 2, (size.height() - nSide) / 2, nSide, nSide};
}

QString TsQtUtils::prepareCoverImage(const QString &path, int *pWidth, int *pHeight)
{
    const QFileInfo file(path);
    if (!file.exists() || !isPictureSuffix(file.suffix()))
        return {};
    QSize size = pictureSize(path);
    const bool bLargeSides = qMin(size.width(), size.height()) >= SmallestScaledSide;
    const bool bScaled = file.size() > LargestUnscaledFile && bLargeSides;
    if (bScaled)
        size = scaledCoverSize(size);
    const QImage picture = bScaled ? readScaled(path, size) : readPicture(path);
    if (!bScaled || picture.isNull())
        size = picture.size();
    *pWidth = size.width();
    *pHeight = size.height();
    const QString target = makeTempPicturePath(QStringLiteral(".webp"));
    return !target.isEmpty() && picture.save(target, "webp") ? target : path;
}
