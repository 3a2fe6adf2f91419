#pragma once

#include <QByteArray>

/** The recycle bin that the desktop's programs share, one for each file system. Functions of any thread. */
namespace DesktopTrash {

/**
 * Moves a file to the bin of its file system, with the note from which the desktop restores it. 0, or an errno, and the
 * file is where it was: ENOTSUP where there can be no bin. Native path; nothing is ever copied between disks.
 *
 * Not QFile::moveToTrash: its notes cannot be read back for names with a percent sign or a line break.
 */
int moveToTrash(const QByteArray &path);

} // namespace DesktopTrash
