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

/** The version of the file; -1 when it cannot be read. */
int versionOf(const QSqlDatabase &database, QString *pError)
{
    QSqlQuery query(database);
    if (query.exec(QStringLiteral("PRAGMA user_version")) && query.next())
        return query.value(0).toInt();
    *pError = query.lastError().text();
    return -1;
}

bool runStep(QSqlDatabase *pDatabase, const QStringList &statements, int nVersion, QString *pError)
{
    // Locked before looking: another instance may start with the same new file.
    if (!run(pDatabase, QStringLiteral("BEGIN IMMEDIATE"), pError))
        return false;
    bool bDone = true;
    if (versionOf(*pDatabase, pError) < nVersion) {
        for (const QString &statement : statements)
            bDone = bDone && run(pDatabase, statement, pError);
        bDone = bDone && run(pDatabase, QStringLiteral("PRAGMA user_version = %1").arg(nVersion), pError);
    }
    if (bDone && run(pDatabase, QStringLiteral("COMMIT"), pError))
        return true;
    QString ignored;
    run(pDatabase, QStringLiteral("ROLLBACK"), &ignored);
    return false;
}

/** Folders in which the user forbids deleting. */
QStringList protectedFoldersStep()
{
    return {QStringLiteral("CREATE TABLE protected_folders (path TEXT PRIMARY KEY) WITHOUT ROWID")};
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
        protectedFoldersStep(),
        {
            // Moved files are found again by what does not change on the way.
            QStringLiteral("ALTER TABLE files ADD COLUMN inode INTEGER NOT NULL DEFAULT 0"),
            QStringLiteral("CREATE INDEX files_by_state ON files (size, mtime)"),
            QStringLiteral("ALTER TABLE files ADD COLUMN analysis INTEGER NOT NULL DEFAULT 0"),
            // 0: no colour of its own.
            QStringLiteral("ALTER TABLE labels ADD COLUMN color INTEGER NOT NULL DEFAULT 0"),
        },
    };
    return all;
}

bool LibrarySchema::migrate(QSqlDatabase *pDatabase, const Steps &steps, QString *pError)
{
    const int nVersion = versionOf(*pDatabase, pError);
    if (nVersion < 0)
        return false;
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
