#pragma once

#include <QColor>
#include <QMetaType>
#include <QPoint>
#include <QRect>
#include <QString>

#include <array>

class QWidget;

/** What a region is going through; the values are those of NoteRegin::nState. */
enum NoteState {
    NotePressed = 0,  ///< New, by a press; dropped unless it is drawn.
    NoteDrawing = 1,  ///< Being drawn.
    NoteIdle = 2,     ///< Stored, or drawn and being described.
    NoteMoving = 4,   ///< Held inside.
    NoteMoved = 5,    ///< Let go at another place.
    NoteResizing = 6, ///< Held at a handle.
    NoteResized = 7   ///< Let go in another size.
};

/** One region note while it is drawn, shown or edited over a picture; coordinates in pixels of the overlay. */
struct NoteRegin {
    qint32 nId = 0;       ///< Position in the file's list of notes, and its key there.
    qint32 nState = 0;    ///< A NoteState value.
    qint32 nReserved = 0; ///< Always 0.
    QPoint ptStart;       ///< The two corners as drawn.
    QPoint ptEnd;
    QPoint ptPress; ///< Press and last position of a drag; null when idle.
    QPoint ptLast;
    QRect rect; ///< The normalised rectangle of the two corners.
    QString strText;
    QColor color;
    std::array<QRect, 8> handles; ///< Corners and edge midpoints used for resizing.
    QWidget *pWidget = nullptr;   ///< The region's card while it is open, not owned.
};

Q_DECLARE_METATYPE(NoteRegin *)
