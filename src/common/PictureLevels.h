#pragma once

#include <QImage>
#include <QVector>

class PictureMemory;

/**
 * Reduced copies of a large picture, each half as wide and high as the one before, odd sides rounded
 * up (the first is half the picture): a pixel of level n, from 1, stands for 2^n by 2^n of the picture.
 * Painting a picture far larger than the screen from the level that is just large enough keeps it sharp and quick.
 */
namespace PictureLevels {

/**
 * Brings a decoded picture into the pixel format that the screen paints without conversion. A picture that is known to
 * be opaque need not be searched for transparent pixels.
 */
QImage toScreenFormat(QImage image, bool bOpaque = false);

/** Whether every pixel of a row has its top byte, the alpha, at 255. */
bool isOpaqueRow(const quint32 *pRow, int nWidth);

/**
 * Copies rows of 32-bit pixels without a gap between them, past the processor's cache, which they would only sweep out,
 * and tells whether all of them are opaque.
 */
bool copyPixels(const quint32 *pSource, quint32 *pTarget, qsizetype nPixels);

/** The size of the level after one of this size; empty where there is none, as the picture is small. */
QSize nextSize(const QSize &size);

/** Writes a row of the next level from two rows of a picture in screen format, which is nWidth pixels wide. */
void halveRow(const quint32 *pUpper, const quint32 *pLower, quint32 *pTarget, int nWidth);

/**
 * Builds the levels of a picture in screen format, down to about a screen's thumbnail; none for small pictures. Their
 * memory is taken from the one that is given. The first level may be there already.
 */
QVector<QImage> build(const QImage &image, PictureMemory &memory, const QImage &first = {});

} // namespace PictureLevels
