#pragma once

#include <QColor>
#include <QPoint>
#include <QRect>
#include <QString>

#include <array>

class QWidget;

/** One region note while it is drawn, shown or edited over a picture; coordinates in pixels of the overlay. */
struct NoteRegin {
    qint32 nId = 0;       ///< Position in the file's list of notes, and its key there.
    qint32 nState = 0;    ///< Interaction state.
    qint32 nReserved = 0; ///< Always 0.
    QPoint ptStart;       ///< The two corners as drawn.
    QPoint ptEnd;
    QPoint ptPress; ///< Press and last position of a drag; null when idle.
    QPoint ptLast;
    QRect rect; ///< The normalised rectangle of the two corners.
    QString strText;
    QColor color;
    std::array<QRect, 8> handles; ///< Corners and edge midpoints used for resizing.
    QWidget *pWidget = nullptr;   ///< The region's badge or card, not owned.
};
