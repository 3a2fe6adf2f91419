#include "library/LibrarySchema.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {

bool run(QSqlDatabase *pDatabase, const QString &statement, QString *pError)
{
    QSqlQuery query(*pDatabase);
    if (query.exec(statement))
        return true;
    *pError = query.lastError().text();
    return false;
}

bool runStep(QSqlDatabase *pDatabase, const QStringList &statements, int nVersion, QString *pError)
{
    if (!pDatabase->transaction()) {
        *pError = pDatabase->lastError().text();
        return false;
    }
    bool bDone = true;
    for (const QString &statement : statements)
        bDone = bDone && run(pDatabase, statement, pError);
    bDone = bDone && run(pDatabase, QStringLiteral("PRAGMA user_version = %1").arg(nVersion), pError);
    if (bDone && pDatabase->commit())
        return true;
    if (bDone)
        *pError = pDatabase->lastError().text();
    pDatabase->rollback();
    return false;
}

} // namespace

const LibrarySchema::Steps &LibrarySchema::steps()
{
    static const Steps all = {
        {
            QStringLiteral("CREATE TABLE folders (id INTEGER PRIMARY KEY, path TEXT NOT NULL UNIQUE)"),
            // AUTOINCREMENT: the id of a file that was dropped never names another one later.
            QStringLiteral("CREATE TABLE files (id INTEGER PRIMARY KEY AUTOINCREMENT,"
                           " folder_id INTEGER NOT NULL REFERENCES folders(id), name TEXT NOT NULL,"
                           " size INTEGER NOT NULL, mtime INTEGER NOT NULL, type_id INTEGER NOT NULL,"
                           " width INTEGER, height INTEGER, has_video INTEGER NOT NULL DEFAULT 0,"
                           " available INTEGER NOT NULL DEFAULT 1, UNIQUE (folder_id, name))"),
            QStringLiteral("CREATE TABLE labels (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL UNIQUE)"),
            QStringLiteral("CREATE TABLE file_labels (file_id INTEGER NOT NULL REFERENCES files(id) ON DELETE CASCADE,"
                           " label_id INTEGER NOT NULL REFERENCES labels(id) ON DELETE CASCADE,"
                           " PRIMARY KEY (file_id, label_id)) WITHOUT ROWID"),
            QStringLiteral("CREATE TABLE notes (file_id INTEGER NOT NULL REFERENCES files(id) ON DELETE CASCADE,"
                           " position INTEGER NOT NULL, x INTEGER NOT NULL, y INTEGER NOT NULL,"
                           " width INTEGER NOT NULL, height INTEGER NOT NULL, color INTEGER NOT NULL,"
                           " text TEXT NOT NULL, PRIMARY KEY (file_id, position)) WITHOUT ROWID"),
            QStringLiteral("CREATE TABLE covers (file_id INTEGER PRIMARY KEY REFERENCES files(id) ON DELETE CASCADE,"
                           " path TEXT NOT NULL)"),
        },
    };
    return all;
}

bool LibrarySchema::migrate(QSqlDatabase *pDatabase, const Steps &steps, QString *pError)
{
    QSqlQuery query(*pDatabase);
    if (!query.exec(QStringLiteral("PRAGMA user_version")) || !query.next()) {
        *pError = query.lastError().text();
        return false;
    }
    const int nVersion = query.value(0).toInt();
    query.finish();
    if (nVersion > steps.size()) {
        *pError = QCoreApplication::translate("LibrarySchema", "it was written by a newer version of the program");
        return false;
    }
    for (int i = nVersion; i < steps.size(); ++i) {
        if (!runStep(pDatabase, steps.at(i), i + 1, pError))
            return false;
    }
    return true;
}
