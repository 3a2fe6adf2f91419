#pragma once

#include <QString>

/** What is wrong with a file name, readable by the user; empty for one that can be used. Touches no disk. */
QString fileNameFault(const QString &name);

/**
 * Renames a file; never replaces another one, not even one that appears at the last moment. False with a reason that
 * the user can read. Any thread.
 */
bool renameWithoutReplacing(const QString &from, const QString &to, QString *pError);
