#pragma once

#include <QImage>

/** Turning what a screen shows of a picture, within a frame's time. */
namespace PictureTurn {

/**
 * Writes a picture of 32-bit pixels turned by a right angle, and then mirrored left to right, into one of the same
 * depth that is as wide as the other is high.
 */
void turnInto(const QImage &upright, bool bClockwise, bool bMirrored, QImage *pTurned);

} // namespace PictureTurn
