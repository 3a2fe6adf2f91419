#pragma once

#include <QMetaType>
#include <QRect>
#include <QString>
#include <QVector>

/**
 * One rectangular note on a picture, as the host stores it. The layout is fixed: vectors of notes cross the boundary
 * between host and plug-in.
 */
struct NoteRecord {
    QRect rect;        ///< The noted area in pixels of the upright picture.
    quint32 value = 0; ///< The note's colour, packed as 0x00BBGGRR.
    QString text;      ///< The note, plain text.
};

static_assert(sizeof(void *) != 8 || sizeof(NoteRecord) == 32, "a note takes 32 bytes in 64-bit builds");

Q_DECLARE_METATYPE(NoteRecord)
