#pragma once

#include <QString>

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

} // namespace Platform
