#pragma once

#include <QImage>
#include <QSize>
#include <QString>

/** Which picture a smaller rendition or thumbnail stands for. Any thread. */
namespace OriginalSize {

/** What a host wrote into a picture: the keys of desktop thumbnails, upright. Empty where it wrote nothing fitting. */
QSize toldBy(const QImage &picture);

/**
 * The upright size of the picture at the source path, of which the shown one was loaded from another path: by the
 * source's own header where it can still be read, else as the shown file tells. Empty where neither says it.
 */
QSize find(const QString &sourcePath, const QString &shownPath, const QSize &shownSize);

} // namespace OriginalSize
