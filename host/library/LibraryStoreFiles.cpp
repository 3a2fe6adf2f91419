#include "files/NativePath.h"
#include "library/LibraryStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QVariant>

namespace {

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(LibraryStore)
};

/** Bound values for "path = ? OR (path >= ? AND path < ?)": the folder and all below, served by the index. */
void bindFolderRange(QSqlQuery *pQuery, const QString &folder, bool bRecursive)
{
    const QString below = folder.endsWith(QLatin1Char('/')) ? folder : QString(folder + QLatin1Char('/'));
    QString end = below;
    end[end.size() - 1] = QChar('/' + 1);
    pQuery->addBindValue(folder);
    pQuery->addBindValue(below);
    pQuery->addBindValue(bRecursive ? end : below);
}

} // namespace

bool LibraryStore::takeInFile(FileRow *pFile)
{
    prepareTakeIn();
    FileRow &file = *pFile;
    const qint64 nFolderId = folderId(file.folder);
    m_pFindFile->bindValue(0, nFolderId);
    m_pFindFile->bindValue(1, file.name);
    if (nFolderId == 0 || !exec(m_pFindFile.get()))
        return false;
    bool bUnchanged = false;
    if (m_pFindFile->next()) {
        const QSqlQuery &known = *m_pFindFile;
        file.id = known.value(0).toLongLong();
        const bool bSameContent =
            known.value(1).toLongLong() == file.nSize && known.value(2).toLongLong() == file.nModifiedMsec;
        bUnchanged = bSameContent && known.value(3).toLongLong() == file.nType && known.value(4).toInt() == 1 &&
                     known.value(5).toLongLong() == file.nInode;
        file.analysis = bSameContent ? AnalysisState(known.value(6).toInt()) : AnalysisState::Waiting;
    }
    m_pFindFile->finish();
    if (bUnchanged)
        return true;
    if (file.id == 0 && !claimMoved(&file, nFolderId))
        return false;
    if (file.id != 0 && file.bMoved)
        return true;
    const QVariant values[] = {nFolderId,  file.name,      file.nSize, file.nModifiedMsec,
                               file.nType, file.bHasVideo, file.nInode};
    int nPosition = 0;
    for (const QVariant &value : values)
        m_pAddFile->bindValue(nPosition++, value);
    if (!exec(m_pAddFile.get()))
        return false;
    if (file.id == 0)
        file.id = m_pAddFile->lastInsertId().toLongLong();
    return true;
}

void LibraryStore::prepareTakeIn()
{
    if (m_pFindFile != nullptr)
        return;
    const auto make = [this](const char *statement) {
        return std::make_unique<QSqlQuery>(prepared(QLatin1String(statement)));
    };
    m_pFindFile = make("SELECT id, size, mtime, type_id, available, inode, analysis FROM files"
                       " WHERE folder_id = ? AND name = ?");
    m_pAddFile =
        make("INSERT INTO files (folder_id, name, size, mtime, type_id, has_video, inode) VALUES (?, ?, ?, ?, ?, ?, ?)"
             " ON CONFLICT (folder_id, name) DO UPDATE SET"
             " analysis = CASE WHEN size = excluded.size AND mtime = excluded.mtime THEN analysis ELSE 0 END,"
             " size = excluded.size, mtime = excluded.mtime, type_id = excluded.type_id,"
             " has_video = excluded.has_video, inode = excluded.inode, width = NULL, height = NULL, available = 1");
    m_pFindMoved = make("SELECT files.id, path, name, inode, analysis FROM files JOIN folders ON folders.id = folder_id"
                        " WHERE size = ? AND mtime = ? LIMIT 64");
    m_pMoveFile = make("UPDATE files SET folder_id = ?, name = ?, type_id = ?, inode = ?, available = 1 WHERE id = ?");
}

bool LibraryStore::claimMoved(FileRow *pFile, qint64 nFolderId)
{
    FileRow &file = *pFile;
    m_pFindMoved->bindValue(0, file.nSize);
    m_pFindMoved->bindValue(1, file.nModifiedMsec);
    if (!exec(m_pFindMoved.get()))
        return false;
    qint64 nId = 0;
    while (nId == 0 && m_pFindMoved->next()) {
        const QString oldName = m_pFindMoved->value(2).toString();
        // From drive to drive a file keeps its name at best; an empty one resembles every other.
        const bool bSame =
            m_pFindMoved->value(3).toLongLong() == file.nInode || (oldName == file.name && file.nSize > 0);
        const QString oldPath = QDir(m_pFindMoved->value(1).toString()).filePath(oldName);
        if (!bSame || fileState(nativePath(oldPath)).bFile)
            continue;
        nId = m_pFindMoved->value(0).toLongLong();
        file.analysis = AnalysisState(m_pFindMoved->value(4).toInt());
    }
    m_pFindMoved->finish();
    if (nId == 0)
        return true;
    const QVariant values[] = {nFolderId, file.name, file.nType, file.nInode, nId};
    int nPosition = 0;
    for (const QVariant &value : values)
        m_pMoveFile->bindValue(nPosition++, value);
    if (!exec(m_pMoveFile.get()))
        return false;
    file.id = nId;
    file.bMoved = true;
    return true;
}

QVector<FileRow> LibraryStore::filesUnder(const QStringList &folders, bool bRecursive)
{
    QVector<FileRow> rows;
    QSet<qint64> taken;
    for (const QString &folder : folders) {
        QSqlQuery query = prepared(
            QStringLiteral("SELECT files.id, folders.path, name, size, mtime, type_id, has_video,"
                           " available, inode, analysis FROM folders"
                           " JOIN files ON files.folder_id = folders.id"
                           " WHERE (path = ? OR (path >= ? AND path < ?)) AND available != 2 ORDER BY folders.id"));
        bindFolderRange(&query, folder, bRecursive);
        if (!exec(&query))
            return rows;
        QString sharedFolder;
        while (query.next()) {
            FileRow row;
            row.id = query.value(0).toLongLong();
            if (taken.contains(row.id))
                continue;
            taken.insert(row.id);
            // One string for all files of a folder: with 100,000 records the paths would otherwise be most of them.
            const QString rowFolder = query.value(1).toString();
            if (rowFolder != sharedFolder)
                sharedFolder = rowFolder;
            row.folder = sharedFolder;
            row.name = query.value(2).toString();
            row.nSize = query.value(3).toLongLong();
            row.nModifiedMsec = query.value(4).toLongLong();
            row.nType = query.value(5).toLongLong();
            row.bHasVideo = query.value(6).toBool();
            row.bAvailable = query.value(7).toInt() == 1;
            row.nInode = query.value(8).toLongLong();
            row.analysis = AnalysisState(query.value(9).toInt());
            rows.append(row);
        }
    }
    return rows;
}

QStringList LibraryStore::foldersUnder(const QString &folder)
{
    QStringList folders;
    QSqlQuery query = prepared(QStringLiteral("SELECT path FROM folders WHERE path = ? OR (path >= ? AND path < ?)"));
    bindFolderRange(&query, folder, true);
    if (!exec(&query))
        return folders;
    while (query.next())
        folders.append(query.value(0).toString());
    return folders;
}

bool LibraryStore::renameFile(const FileRow &file, const QString &newName, qint64 nNewType,
                              const std::function<bool()> &renameOnDisk)
{
    if (!beginTransaction())
        return false;
    QSqlQuery taken = prepared(QStringLiteral("SELECT 1 FROM files WHERE folder_id = ? AND name = ? AND id != ?"));
    const qint64 nFolderId = folderId(file.folder);
    for (const QVariant &value : {QVariant(nFolderId), QVariant(newName), QVariant(file.id)})
        taken.addBindValue(value);
    bool bDone = nFolderId != 0 && exec(&taken);
    if (bDone && taken.next()) {
        m_lastError = Words::tr("the library has another file of this name, which may be missing at present");
        bDone = false;
    }
    taken.finish();
    QSqlQuery rename = prepared(QStringLiteral("UPDATE files SET name = ?, type_id = ? WHERE id = ?"));
    for (const QVariant &value : {QVariant(newName), QVariant(nNewType), QVariant(file.id)})
        rename.addBindValue(value);
    // The disk comes last: what it refuses leaves no trace here.
    bDone = bDone && exec(&rename) && renameOnDisk();
    return finishTransaction(bDone);
}

bool LibraryStore::setAnalysis(const QVector<FileRow> &files)
{
    if (!beginTransaction())
        return false;
    QSqlQuery query = prepared(QStringLiteral("UPDATE files SET analysis = ? WHERE id = ? AND size = ? AND mtime = ?"));
    bool bDone = true;
    for (const FileRow &file : files) {
        query.bindValue(0, int(file.analysis));
        query.bindValue(1, file.id);
        query.bindValue(2, file.nSize);
        query.bindValue(3, file.nModifiedMsec);
        bDone = bDone && exec(&query);
    }
    return finishTransaction(bDone);
}
