#pragma once

class QPainter;
class QRect;

/** The number of notes that a file has, in a corner of its thumbnail. */
namespace NoteCountBadge {

/** In the lower right corner of the area; nothing for no notes. */
void paint(QPainter *pPainter, const QRect &area, int nNotes);

} // namespace NoteCountBadge
