#include "library/LibraryStore.h"

#include "library/LibrarySchema.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QUuid>
#include <QVariant>

namespace {

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(LibraryStore)
};

} // namespace

LibraryStore::LibraryStore()
    : m_connectionName(QUuid::createUuid().toString())
{
}

LibraryStore::~LibraryStore()
{
    close();
}

bool LibraryStore::open(const QString &path, QString *pError)
{
    close();
    if (path != QLatin1String(":memory:") && !QDir().mkpath(QFileInfo(path).absolutePath())) {
        *pError = Words::tr("its folder cannot be made");
        return false;
    }
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    m_database.setDatabaseName(path);
    m_database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    bool bOpen = m_database.open();
    *pError = bOpen ? QString() : m_database.lastError().text();
    if (bOpen) {
        for (const char *pragma :
             {"PRAGMA journal_mode = WAL", "PRAGMA synchronous = NORMAL", "PRAGMA foreign_keys = ON"})
            QSqlQuery(m_database).exec(QLatin1String(pragma));
        bOpen = LibrarySchema::migrate(&m_database, LibrarySchema::steps(), pError) && isWritable(pError);
    }
    if (!bOpen)
        close();
    return bOpen;
}

bool LibraryStore::isWritable(QString *pError)
{
    // SQLite opens what it may only read without a word.
    QSqlQuery query(m_database);
    const bool bWritable = query.exec(QStringLiteral("BEGIN IMMEDIATE")) &&
                           query.exec(QStringLiteral("PRAGMA user_version = %1").arg(LibrarySchema::steps().size()));
    *pError = bWritable ? QString() : query.lastError().text();
    query.exec(QStringLiteral("ROLLBACK"));
    return bWritable;
}

bool LibraryStore::openCopy(const QString &path, QString *pError)
{
    if (!open(QStringLiteral(":memory:"), pError))
        return false;
    QSqlQuery attach(m_database);
    attach.prepare(QStringLiteral("ATTACH DATABASE ? AS original"));
    attach.addBindValue(path);
    if (!QFileInfo(path).isFile() || !attach.exec())
        return true;
    // In the order of their references. What cannot be read, of another version or damaged, stays out.
    for (const char *table : {"folders", "files", "labels", "file_labels", "notes", "covers", "protected_folders"})
        QSqlQuery(m_database)
            .exec(QStringLiteral("INSERT INTO main.%1 SELECT * FROM original.%1").arg(QLatin1String(table)));
    QSqlQuery(m_database).exec(QStringLiteral("DETACH DATABASE original"));
    return true;
}

void LibraryStore::close()
{
    m_pFindFile.reset();
    m_pAddFile.reset();
    m_pFindMoved.reset();
    m_pMoveFile.reset();
    m_folderIds.clear();
    if (!m_database.isValid())
        return;
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connectionName);
}

QSqlQuery LibraryStore::prepared(const QString &statement)
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    query.prepare(statement);
    return query;
}

bool LibraryStore::exec(QSqlQuery *pQuery)
{
    if (pQuery->exec())
        return true;
    m_lastError = pQuery->lastError().text();
    return false;
}

bool LibraryStore::beginTransaction()
{
    // For writing from the start: a transaction that begins by reading cannot wait when another program writes.
    QSqlQuery query = prepared(QStringLiteral("BEGIN IMMEDIATE"));
    return exec(&query);
}

bool LibraryStore::finishTransaction(bool bDone)
{
    QSqlQuery commit = prepared(QStringLiteral("COMMIT"));
    if (bDone && exec(&commit))
        return true;
    QSqlQuery(m_database).exec(QStringLiteral("ROLLBACK"));
    // A folder that was made in the transaction is gone with it.
    m_folderIds.clear();
    return false;
}

qint64 LibraryStore::folderId(const QString &folder)
{
    const auto known = m_folderIds.constFind(folder);
    if (known != m_folderIds.constEnd())
        return known.value();
    QSqlQuery add = prepared(QStringLiteral("INSERT OR IGNORE INTO folders (path) VALUES (?)"));
    add.addBindValue(folder);
    QSqlQuery find = prepared(QStringLiteral("SELECT id FROM folders WHERE path = ?"));
    find.addBindValue(folder);
    if (!exec(&add) || !exec(&find) || !find.next())
        return 0;
    const qint64 nId = find.value(0).toLongLong();
    m_folderIds.insert(folder, nId);
    return nId;
}

QVector<FileRow> LibraryStore::takeIn(const QVector<FileRow> &files)
{
    QVector<FileRow> result = files;
    bool bDone = beginTransaction();
    if (!bDone)
        return {};
    for (FileRow &file : result)
        bDone = bDone && takeInFile(&file);
    return finishTransaction(bDone) ? result : QVector<FileRow>();
}

bool LibraryStore::setUnavailable(const QVector<qint64> &fileIds)
{
    if (!beginTransaction())
        return false;
    QSqlQuery query = prepared(QStringLiteral("UPDATE files SET available = 0 WHERE id = ? AND available = 1"));
    bool bDone = true;
    for (const qint64 nId : fileIds) {
        query.bindValue(0, nId);
        bDone = bDone && exec(&query);
    }
    return finishTransaction(bDone);
}

bool LibraryStore::forget(const QVector<qint64> &fileIds)
{
    if (!beginTransaction())
        return false;
    QSqlQuery query = prepared(QStringLiteral("DELETE FROM files WHERE id = ?"));
    bool bDone = true;
    for (const qint64 nId : fileIds) {
        query.bindValue(0, nId);
        bDone = bDone && exec(&query);
    }
    return finishTransaction(bDone);
}

QHash<qint64, QVector<NoteRecord>> LibraryStore::allNotes()
{
    QHash<qint64, QVector<NoteRecord>> notes;
    QSqlQuery query = prepared(
        QStringLiteral("SELECT file_id, x, y, width, height, color, text FROM notes ORDER BY file_id, position"));
    if (!exec(&query))
        return notes;
    while (query.next()) {
        NoteRecord note;
        note.rect =
            QRect(query.value(1).toInt(), query.value(2).toInt(), query.value(3).toInt(), query.value(4).toInt());
        note.value = query.value(5).toUInt();
        note.text = query.value(6).toString();
        notes[query.value(0).toLongLong()].append(note);
    }
    return notes;
}

bool LibraryStore::setNotes(qint64 nFileId, const QVector<NoteRecord> &notes)
{
    return beginTransaction() && finishTransaction(writeNotes(nFileId, notes));
}

bool LibraryStore::writeNotes(qint64 nFileId, const QVector<NoteRecord> &notes)
{
    QSqlQuery remove = prepared(QStringLiteral("DELETE FROM notes WHERE file_id = ?"));
    remove.addBindValue(nFileId);
    if (!exec(&remove))
        return false;
    QSqlQuery add = prepared(QStringLiteral("INSERT INTO notes (file_id, position, x, y, width, height, color, text)"
                                            " VALUES (?, ?, ?, ?, ?, ?, ?, ?)"));
    for (int i = 0; i < notes.size(); ++i) {
        const NoteRecord &note = notes.at(i);
        // A null text would be stored as NULL, which the table rightly refuses.
        const QString text = note.text.isNull() ? QStringLiteral("") : note.text;
        const QVariant values[] = {nFileId,    i,   note.rect.x(), note.rect.y(), note.rect.width(), note.rect.height(),
                                   note.value, text};
        int nPosition = 0;
        for (const QVariant &value : values)
            add.bindValue(nPosition++, value);
        if (!exec(&add))
            return false;
    }
    return true;
}
