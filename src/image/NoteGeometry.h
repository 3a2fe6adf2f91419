#pragma once

#include <QPointF>
#include <QRect>

#include <array>

class QTransform;
struct NoteRecord;

/** Where region notes, their handles and their cards lie. Plain arithmetic on values. */
namespace NoteGeometry {

/** Handles from the top left corner clockwise, corners first. */
enum Handle { TopLeft, TopRight, BottomRight, BottomLeft, Top, Right, Bottom, Left, NoHandle = -1 };

/** Two corners of a note in pixels of the picture. */
struct Corners {
    QPointF start;
    QPointF end;
};

/** A stored rectangle's corners; any four numbers are good, so that a damaged note can still be seen and deleted. */
Corners cornersOf(const QRect &rect);

/** The rectangle of these corners, to the nearest pixel and within what a rectangle can hold. */
QRect rectOf(const Corners &corners);

/** A point mapped and kept within what integers of a widget can be used for. */
QPoint mapped(const QTransform &transform, const QPointF &point);

/** Left is the smaller x, top the smaller y, width and height the differences. */
QRect normalised(const QPoint &start, const QPoint &end);

/** Areas that take hold of a region of this size, outside it where it is too small to be held inside as well. */
std::array<QRect, 8> handleAreas(const QRect &rect);
int handleAt(const std::array<QRect, 8> &handles, const QPoint &pos);
Qt::CursorShape cursorOf(int nHandle);

/** A rectangle whose edges at the handle moved by an offset; pulled across, it turns over. */
QRect resized(const QRect &rect, int nHandle, const QPoint &offset);

/** An offset that takes the handle's point no farther out of the bounds than it lies already. */
QPoint offsetWithin(const QRect &rect, int nHandle, const QPoint &offset, const QRect &bounds);

/** Moved into the bounds, as far as it is not larger. */
QRect shiftedInto(const QRect &rect, const QRect &bounds);

/** Where a card of this size goes: beside what is to be seen of the region, inside the free area in any case. */
QRect cardPlace(const QSize &card, const QRect &region, const QRect &freeArea);

/** An edge of a picture that a mapped coordinate means, when it lies within the tolerance of one that is stored. */
double snapped(double fValue, double fFirst, double fSecond, double fTolerance);

/** Towards zero, but not below a whole number that is missed by a rounding error only. */
double truncated(double fValue);

} // namespace NoteGeometry
