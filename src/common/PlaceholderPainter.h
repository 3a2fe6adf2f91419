#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

/** The plain picture with a centred text that stands for a file that cannot be shown. */
namespace PlaceholderPainter {

/** Paints `text` into a box of `nBoxWidth` pixels, centred on a picture of `size` device-independent pixels. */
QImage paint(const QSize &size, const QColor &background, const QColor &textColor, const QString &text, int nBoxWidth,
             int nFontPixels, double fDevicePixelRatio = 1.0);

/**
 * The picture that previews show: 500 x 500 in theme colours with the file's suffix, in device-independent pixels, so
 * that the letters are as sharp as the screen.
 */
QImage paintSuffix(const QString &path, double fDevicePixelRatio);

} // namespace PlaceholderPainter
