#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

/** The plain picture with a centred text that stands for a file that cannot be shown. */
namespace PlaceholderPainter {

/** Paints `text` into a box of `nBoxWidth` pixels, centred on a picture of `size` pixels. */
QImage paint(const QSize &size, const QColor &background, const QColor &textColor, const QString &text, int nBoxWidth,
             int nFontPixels);

/** The picture that previews show: 500 x 500 pixels in theme colours with the file's suffix. */
QImage paintSuffix(const QString &path);

} // namespace PlaceholderPainter
