#pragma once

#include <QString>

#include <cstddef>

class QFile;
class QMimeData;

/** The few things that every desktop does its own way. One source file a platform implements them. */
namespace Platform {

/** Longest path, in characters, that the file manager accepts for revealInFileManager. */
int longestRevealPath();

/**
 * Opens the desktop's file manager with the file selected, or with the folder open when the path is one. Returns at
 * once; failures are silent.
 */
void revealInFileManager(const QString &absolutePath);

/**
 * A path in the folder that no file holds, without an extension; made by the system, not guessed. An empty folder
 * stands for the system's temporary one. Empty when the folder cannot be used.
 */
QString uniqueTemporaryName(const QString &folder);

/**
 * Opens the file so that others can rename and delete it meanwhile; closed as any QFile is. False when it cannot be
 * opened, as when another program keeps it to itself. Thread: any.
 */
bool openForReading(QFile *pFile, const QString &path);

/**
 * Adds what this desktop's file managers want beside the list of addresses that the data hold already, to know that
 * the files are to be copied and not moved.
 */
void addCopyFormats(QMimeData *pMimeData);

/**
 * Memory for a large picture, in pages as large as the system offers, because taking a hundred megabytes in small ones
 * costs as much time as decoding them. Null when there is none; given back by freeLargeMemory with the same size.
 */
void *allocateLargeMemory(size_t nBytes);
void freeLargeMemory(void *pMemory, size_t nBytes);

} // namespace Platform
