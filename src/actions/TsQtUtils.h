#pragma once

#include <QFont>
#include <QString>

/** Free helpers that file actions and small widgets share. GUI thread only. */
namespace TsQtUtils {

/** Opens the system's file manager at the file, with the file selected; a folder is opened itself. */
void showInGraphicalShell(const QString &path);

/** Width of the text in pixels; 0 for an empty one. */
int textWidth(const QFont &font, const QString &text);

/** A path with this extension (with its dot) that no file holds, in the folder or the system's temporary one. */
QString makeTempFilePath(const QString &folder, const QString &extension);

} // namespace TsQtUtils
