#pragma once

#include <QFont>
#include <QImage>
#include <QRect>
#include <QString>

/** Free helpers that file actions and small widgets share. GUI thread only, where nothing else is said. */
namespace TsQtUtils {

/** Opens the system's file manager at the file, with the file selected; a folder is opened itself. */
void showInGraphicalShell(const QString &path);

/** Width of the text in pixels; 0 for an empty one. */
int textWidth(const QFont &font, const QString &text);

/** A path with this extension (with its dot) that no file holds, in the folder or the system's temporary one. */
QString makeTempFilePath(const QString &folder, const QString &extension);

/** A path for a temporary picture, made as above in the system's temporary folder. Any thread. */
QString makeTempPicturePath(const QString &extension);

/** Size of the picture as it is to be looked at; invalid where the file does not begin with it. Any thread. */
QSize pictureSize(const QString &path);

/** The picture as it is to be looked at, turned upright; null for a file that is none. Any thread. */
QImage readPicture(const QString &path, const QSize &scaledSize = QSize());

/** The largest square in the middle of a picture of this size. */
QRect centredSquare(const QSize &size);

/** That square of the picture in a file, scaled down where it is too large to be kept. Any thread. */
QImage readSquare(const QString &path);

/**
 * Makes the picture at the path ready to be a file's preview picture: a temporary WebP file, scaled down where it is
 * large. Gives the path to hand to the host, which is the given one when writing failed, and the size of the picture
 * made; an empty path for a file that is missing or has not a picture's suffix. Any thread.
 */
QString prepareCoverImage(const QString &path, int *pWidth, int *pHeight);

} // namespace TsQtUtils
