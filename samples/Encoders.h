#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

/** Writes pictures in the formats of the samples through the libraries that know them. Each answers false on failure.
 */
namespace encoders {

/** Starts the libraries; once. */
bool start(const char *pProgram);

/** How a picture is written; each format reads what it knows. */
struct Options {
    QByteArray suffixOptions; ///< Saver options of libvips, such as "[Q=90,interlace]".
    int orientation = 1;      ///< EXIF orientation to record.
    QByteArray icc;           ///< Profile to embed.
    enum class Kind { Rgb8, Rgb16, Gray8, Cmyk8, Float } kind = Kind::Rgb8;
};

/** Through libvips; the format follows from the suffix of the path. */
bool withVips(const QImage &image, const QString &path, const Options &options);

/** Several frames or pages in one file through libvips. */
bool framesWithVips(const QVector<QImage> &frames, const QString &path, const QByteArray &suffixOptions);

/** Through ImageMagick's library with the coder named. */
bool withMagick(const QImage &image, const QString &path, const char *pCoder);

/** A wide-gamut RGB profile made of its primaries. */
QByteArray wideGamutProfile();

/** The picture's colours, given in sRGB, expressed in the wide-gamut profile. */
QImage inWideGamut(const QImage &image);

} // namespace encoders
