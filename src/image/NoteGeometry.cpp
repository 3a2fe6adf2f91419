#include "image/NoteGeometry.h"

#include <QTransform>

#include <cmath>
#include <limits>

namespace {

constexpr int HandleSide = 16;
constexpr int RoomInside = 24; ///< What has to be left of a region between its handles.
constexpr int CardGap = 10;
constexpr double WidgetLimit = 1e6;
constexpr double RoundingError = 1e-6;

int toCoordinate(double fValue)
{
    // Comparing this way round keeps out what is no number as well.
    return std::abs(fValue) <= WidgetLimit ? qRound(fValue) : int(fValue < 0.0 ? -WidgetLimit : WidgetLimit);
}

QPoint handlePoint(const QRect &rect, int nHandle)
{
    const int nRight = rect.left() + rect.width();
    const int nBottom = rect.top() + rect.height();
    const QPoint middle(rect.left() + rect.width() / 2, rect.top() + rect.height() / 2);
    switch (nHandle) {
    case NoteGeometry::TopLeft:
        return rect.topLeft();
    case NoteGeometry::TopRight:
        return {nRight, rect.top()};
    case NoteGeometry::BottomRight:
        return {nRight, nBottom};
    case NoteGeometry::BottomLeft:
        return {rect.left(), nBottom};
    case NoteGeometry::Top:
        return {middle.x(), rect.top()};
    case NoteGeometry::Right:
        return {nRight, middle.y()};
    case NoteGeometry::Bottom:
        return {middle.x(), nBottom};
    default:
        return {rect.left(), middle.y()};
    }
}

bool isAtLeft(int nHandle)
{
    return nHandle == NoteGeometry::TopLeft || nHandle == NoteGeometry::BottomLeft || nHandle == NoteGeometry::Left;
}

bool isAtRight(int nHandle)
{
    return nHandle == NoteGeometry::TopRight || nHandle == NoteGeometry::BottomRight || nHandle == NoteGeometry::Right;
}

bool isAtTop(int nHandle)
{
    return nHandle == NoteGeometry::TopLeft || nHandle == NoteGeometry::TopRight || nHandle == NoteGeometry::Top;
}

bool isAtBottom(int nHandle)
{
    return nHandle == NoteGeometry::BottomLeft || nHandle == NoteGeometry::BottomRight ||
           nHandle == NoteGeometry::Bottom;
}

} // namespace

NoteGeometry::Corners NoteGeometry::cornersOf(const QRect &rect)
{
    // Not by width() and height(), which overflow where the corners lie far apart.
    return {QPointF(rect.left(), rect.top()), QPointF(double(rect.right()) + 1.0, double(rect.bottom()) + 1.0)};
}

QRect NoteGeometry::rectOf(const Corners &corners)
{
    const auto whole = [](double fValue) {
        return int(qBound(double(std::numeric_limits<int>::min()), std::round(fValue),
                          double(std::numeric_limits<int>::max())));
    };
    return QRect(QPoint(whole(corners.start.x()), whole(corners.start.y())),
                 QPoint(whole(corners.end.x() - 1.0), whole(corners.end.y() - 1.0)));
}

QPoint NoteGeometry::mapped(const QTransform &transform, const QPointF &point)
{
    const QPointF result = transform.map(point);
    return {toCoordinate(result.x()), toCoordinate(result.y())};
}

QRect NoteGeometry::normalised(const QPoint &start, const QPoint &end)
{
    return {qMin(start.x(), end.x()), qMin(start.y(), end.y()), qAbs(end.x() - start.x()), qAbs(end.y() - start.y())};
}

std::array<QRect, 8> NoteGeometry::handleAreas(const QRect &rect)
{
    const int nOutX = rect.width() < HandleSide + RoomInside ? HandleSide / 2 : 0;
    const int nOutY = rect.height() < HandleSide + RoomInside ? HandleSide / 2 : 0;
    std::array<QRect, 8> areas;
    for (int i = 0; i < 8; ++i) {
        QRect area(0, 0, HandleSide, HandleSide);
        area.moveCenter(handlePoint(rect, i));
        area.translate((isAtRight(i) - isAtLeft(i)) * nOutX, (isAtBottom(i) - isAtTop(i)) * nOutY);
        areas[size_t(i)] = area;
    }
    return areas;
}

int NoteGeometry::handleAt(const std::array<QRect, 8> &handles, const QPoint &pos)
{
    for (int i = 0; i < 8; ++i) {
        if (handles[size_t(i)].contains(pos))
            return i;
    }
    return NoHandle;
}

Qt::CursorShape NoteGeometry::cursorOf(int nHandle)
{
    switch (nHandle) {
    case TopLeft:
    case BottomRight:
        return Qt::SizeFDiagCursor;
    case TopRight:
    case BottomLeft:
        return Qt::SizeBDiagCursor;
    case Top:
    case Bottom:
        return Qt::SizeVerCursor;
    case Left:
    case Right:
        return Qt::SizeHorCursor;
    default:
        return Qt::ArrowCursor;
    }
}

QRect NoteGeometry::resized(const QRect &rect, int nHandle, const QPoint &offset)
{
    QPoint first = rect.topLeft();
    QPoint second(rect.left() + rect.width(), rect.top() + rect.height());
    if (isAtLeft(nHandle))
        first.rx() += offset.x();
    if (isAtRight(nHandle))
        second.rx() += offset.x();
    if (isAtTop(nHandle))
        first.ry() += offset.y();
    if (isAtBottom(nHandle))
        second.ry() += offset.y();
    return normalised(first, second);
}

QPoint NoteGeometry::offsetWithin(const QRect &rect, int nHandle, const QPoint &offset, const QRect &bounds)
{
    const QPoint from = handlePoint(rect, nHandle);
    const QPoint to = from + offset;
    const int nRight = bounds.left() + bounds.width();
    const int nBottom = bounds.top() + bounds.height();
    return QPoint(qBound(qMin(bounds.left(), from.x()), to.x(), qMax(nRight, from.x())),
                  qBound(qMin(bounds.top(), from.y()), to.y(), qMax(nBottom, from.y()))) -
           from;
}

QRect NoteGeometry::shiftedInto(const QRect &rect, const QRect &bounds)
{
    QRect result = rect;
    result.moveLeft(qMax(bounds.left(), qMin(rect.left(), bounds.left() + bounds.width() - rect.width())));
    result.moveTop(qMax(bounds.top(), qMin(rect.top(), bounds.top() + bounds.height() - rect.height())));
    return result;
}

QRect NoteGeometry::cardPlace(const QSize &card, const QRect &region, const QRect &freeArea)
{
    // Of a region that is larger than the view, or partly outside it, what can be seen counts.
    QRect seen = region.intersected(freeArea);
    if (seen.isEmpty())
        seen = shiftedInto(QRect(region.topLeft(), QSize(1, 1)), freeArea);
    const int nRight = seen.right() + 1 + CardGap;
    const int nLeft = seen.left() - CardGap - card.width();
    const int nBelow = seen.bottom() + 1 + CardGap;
    const int nAbove = seen.top() - CardGap - card.height();
    const QPoint places[] = {{nRight, seen.top()}, {nLeft, seen.top()}, {seen.left(), nBelow}, {seen.left(), nAbove}};
    for (const QPoint &place : places) {
        const QRect result = shiftedInto(QRect(place, card), freeArea);
        if (!result.intersects(seen))
            return result;
    }
    // No room anywhere: in the corner of the region that hides least of its middle.
    return shiftedInto(
        QRect(QPoint(seen.right() - card.width() - CardGap, seen.bottom() - card.height() - CardGap), card), freeArea);
}

double NoteGeometry::snapped(double fValue, double fFirst, double fSecond, double fTolerance)
{
    if (std::abs(fValue - fFirst) <= fTolerance)
        return fFirst;
    return std::abs(fValue - fSecond) <= fTolerance ? fSecond : fValue;
}

double NoteGeometry::truncated(double fValue)
{
    return std::trunc(fValue + std::copysign(RoundingError, fValue));
}
