// What the library keeps beside files, notes and labels: preview pictures, protected folders, imports.
#include "library/LibraryStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>
#include <QVariant>

namespace {

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(LibraryStore)
};

} // namespace

QHash<qint64, QString> LibraryStore::allCovers()
{
    QHash<qint64, QString> names;
    QSqlQuery query = prepared(QStringLiteral("SELECT file_id, path FROM covers"));
    if (!exec(&query))
        return names;
    while (query.next())
        names.insert(query.value(0).toLongLong(), query.value(1).toString());
    return names;
}

bool LibraryStore::writeCover(qint64 nFileId, const QString &name)
{
    QSqlQuery query =
        prepared(name.isEmpty() ? QStringLiteral("DELETE FROM covers WHERE file_id = ?")
                                : QStringLiteral("INSERT INTO covers (file_id, path) VALUES (?, ?)"
                                                 " ON CONFLICT (file_id) DO UPDATE SET path = excluded.path"));
    query.addBindValue(nFileId);
    if (!name.isEmpty())
        query.addBindValue(name);
    return exec(&query);
}

QString LibraryStore::takeCoverFile(const QString &folder, const QString &file, const QString &suffix)
{
    const QString name = QUuid::createUuid().toString(QUuid::Id128) + QLatin1Char('.') + suffix;
    if (QFile::rename(file, QDir(folder).filePath(name)))
        return name;
    m_lastError = Words::tr("the preview picture cannot be kept");
    return {};
}

bool LibraryStore::setCover(qint64 nFileId, const QString &folder, const QString &file, const QString &suffix,
                            QString *pName)
{
    pName->clear();
    // The file gets its name inside the transaction: removeStrayCovers of another instance waits for its end.
    if (!beginTransaction())
        return false;
    bool bDone = true;
    if (!file.isEmpty()) {
        *pName = takeCoverFile(folder, file, suffix);
        bDone = !pName->isEmpty();
    }
    bDone = bDone && writeCover(nFileId, *pName);
    if (finishTransaction(bDone))
        return true;
    if (!pName->isEmpty())
        QFile::remove(QDir(folder).filePath(*pName));
    return false;
}

void LibraryStore::removeStrayCovers(const QString &folder)
{
    const QStringList names = QDir(folder).entryList(QDir::Files);
    if (names.isEmpty() || !beginTransaction())
        return;
    m_lastError.clear();
    const QHash<qint64, QString> covers = allCovers();
    const QSet<QString> used(covers.cbegin(), covers.cend());
    for (const QString &name : names) {
        if (m_lastError.isEmpty() && !used.contains(name))
            QFile::remove(QDir(folder).filePath(name));
    }
    finishTransaction(true);
}

QStringList LibraryStore::protectedFolders()
{
    QStringList folders;
    QSqlQuery query = prepared(QStringLiteral("SELECT path FROM protected_folders"));
    if (!exec(&query))
        return folders;
    while (query.next())
        folders.append(query.value(0).toString());
    return folders;
}

bool LibraryStore::setFolderProtected(const QString &folder, bool bProtected)
{
    QSqlQuery query = prepared(bProtected ? QStringLiteral("INSERT OR IGNORE INTO protected_folders (path) VALUES (?)")
                                          : QStringLiteral("DELETE FROM protected_folders WHERE path = ?"));
    query.addBindValue(folder);
    return exec(&query);
}

bool LibraryStore::setRecycled(const QVector<qint64> &fileIds)
{
    if (!beginTransaction())
        return false;
    QSqlQuery query = prepared(QStringLiteral("UPDATE files SET available = 2 WHERE id = ?"));
    bool bDone = true;
    for (const qint64 nId : fileIds) {
        query.bindValue(0, nId);
        bDone = bDone && exec(&query);
    }
    return finishTransaction(bDone);
}

bool LibraryStore::import(QVector<ImportedFile> *pFiles, const QString &coverFolder, QStringList *pCoverNames)
{
    if (!beginTransaction())
        return false;
    bool bDone = true;
    for (ImportedFile &file : *pFiles) {
        TagRecordList labels;
        for (const QString &label : qAsConst(file.labels))
            labels.append(TagRecordPtr(new TagRecord{0, label}));
        QString cover;
        bDone =
            bDone && takeInFile(&file.row) && writeNotes(file.row.id, file.notes) && writeLabels({file.row.id}, labels);
        if (bDone && !file.coverFile.isEmpty()) {
            cover = takeCoverFile(coverFolder, file.coverFile, file.coverSuffix);
            bDone = !cover.isEmpty() && writeCover(file.row.id, cover);
        }
        pCoverNames->append(cover);
    }
    return finishTransaction(bDone);
}
