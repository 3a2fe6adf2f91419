#pragma once

#include <QString>

/** File-type numbers of the library, as previews expect them. Any thread. */
namespace FileTypes {

enum Type : qint64 { Unknown = 0, Gif = 30, Svg = 100, Heic = 170, Ogg = 620 };

/** Kinds of files that a user tells apart. */
enum class Kind { Any, Picture, Camera, Document, Video, Sound, Other };

/** The kind of a type; never Any. */
Kind kindOf(qint64 nType);

/** The number of a suffix (without dot, any case); Unknown for a suffix that the library does not know. */
qint64 typeOfSuffix(const QString &suffix);

/** The suffix of a file name: what follows its last dot; empty for names without one and for ".name". */
QString suffixOfName(const QString &fileName);

/** Whether files of this type are pictures that the host can show as thumbnails. */
bool isPicture(qint64 nType);

/** Whether files of this type, pictures or not, have a picture: a page, a frame, a cover, a specimen. */
bool hasPicture(qint64 nType);

/** Whether another program has to convert files of this type, which takes seconds. */
bool isConverted(qint64 nType);

/** Whether pictures of this type are drawings, which need a backing to be seen on any background. */
bool isDrawing(qint64 nType);

} // namespace FileTypes
