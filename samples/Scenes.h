#pragma once

#include <QImage>
#include <QPainterPath>

/** The drawn pictures that the samples show. Every one is drawn for its size, so small and large ones are sharp. */
namespace scenes {

/** Mountains before an evening sky; `fPalette` from 0 to 1 shifts the palette so that samples differ at a glance. */
QImage landscape(const QSize &size, double fPalette);

/** A lighthouse at night with its beam: upright is unmistakable. */
QImage lighthouse(const QSize &size);

/** Overlapping translucent discs on nothing. */
QImage discs(const QSize &size);

/** Red, green, blue and white quarters with a marked top left corner: for checking pixels, not for looking at. */
QImage quarters(const QSize &size);

/** One frame of a bouncing ball. */
QImage ball(const QSize &size, double fPhase);

} // namespace scenes
