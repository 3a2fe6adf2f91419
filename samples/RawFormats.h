#pragma once

#include <QByteArray>
#include <QImage>
#include <QVector>

/** Formats that no library at hand writes, put together byte by byte. */
namespace rawformats {

/** An uncompressed OpenEXR picture of 32-bit floats; sRGB white becomes `fWhite` times scene white. */
QByteArray exr(const QImage &image, double fWhite);

/** A digital negative: a small colour-filter mosaic and a large JPEG preview, turned by an EXIF orientation. */
QByteArray dng(const QImage &mosaicScene, const QByteArray &previewJpeg, const QSize &previewSize, int nOrientation);

/** An icon file that holds these pictures as PNG. */
QByteArray icon(const QVector<QImage> &images);

} // namespace rawformats
