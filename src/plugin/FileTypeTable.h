#pragma once

#include <QHash>
#include <QString>
#include <QtGlobal>

/** What the plug-in knows about one file type of the host. */
struct FileTypeEntry {
    QString extension; ///< Lower case, without dot.
    qint32 group = 0;  ///< Odd for the types that are previewed or played.
    qint32 flags = 0;  ///< FileTypeFlag bits.
};

enum FileTypeFlag { PreviewableFlag = 1, VideoFlag = 2, AudioFlag = 4, FontFlag = 8, CommonPictureFlag = 16 };

/** The host's type ids and what is known of each; constant from the start of the library. */
const QHash<qint64, FileTypeEntry> &FileTypeTable();

bool isPreviewableType(qint64 nTypeId);
bool isVideoType(qint64 nTypeId);
bool isAudioType(qint64 nTypeId);
bool isGifType(qint64 nTypeId);
bool isPresentationType(qint64 nTypeId);
bool isPsdType(qint64 nTypeId);
