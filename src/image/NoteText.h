#pragma once

#include <QColor>
#include <QString>

/** How what users wrote is shown, and how colours are packed. */
namespace NoteText {

/** The text as a label may show it: plain, without control characters, and not longer than anybody reads there. */
QString forDisplay(const QString &text);

/** Packed as 0x00BBGGRR, and back to an opaque colour. */
quint32 packed(const QColor &color);
QColor unpacked(quint32 nValue);

/** Black or white, whichever reads better on the colour. */
QColor contrast(const QColor &background);

} // namespace NoteText
