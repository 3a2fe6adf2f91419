#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVector>

/** The tables of a library file and how older files become newer ones. */
namespace LibrarySchema {

/** Statements that lead from one version to the next. Entry 0 leads from an empty file to version 1. */
using Steps = QVector<QStringList>;

/** The steps of this program. Published steps never change; a change of the tables is a further step. */
const Steps &steps();

/**
 * Brings the file to the last version, each step in a transaction of its own. False with a reason, and the file as it
 * was, when it is newer than the steps or a step fails.
 */
bool migrate(QSqlDatabase *pDatabase, const Steps &steps, QString *pError);

} // namespace LibrarySchema
