// What the library keeps beside files, notes and labels: preview pictures, protected folders, imports.
#include "library/LibraryWorker.h"

#include <QDir>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

void LibraryWorker::loadKeeping(const QString &coverFolder)
{
    m_coverFolder = coverFolder;
    if (m_bKept)
        m_store.removeStrayCovers(coverFolder);
    const QHash<qint64, QString> covers = m_store.allCovers();
    for (auto cover = covers.cbegin(); cover != covers.cend(); ++cover)
        m_pRenditions->pCovers->set(cover.key(), QDir(coverFolder).filePath(cover.value()));
    Q_EMIT signalProtectedFolders(m_store.protectedFolders());
}

QString LibraryWorker::setCover(qint64 nFileId, const QString &file, const QString &suffix)
{
    QString name;
    if (!m_store.setCover(nFileId, m_coverFolder, file, suffix, &name))
        return tr("The library cannot be written: %1").arg(m_store.lastError());
    const QString old = m_pRenditions->pCovers->path(nFileId);
    m_pRenditions->pCovers->set(nFileId, name.isEmpty() ? QString() : QDir(m_coverFolder).filePath(name));
    if (!old.isEmpty() && m_bKept)
        QFile::remove(old);
    return {};
}

void LibraryWorker::setFolderProtected(const QString &folder, bool bProtected)
{
    if (!m_store.setFolderProtected(folder, bProtected))
        Q_EMIT signalProblem(tr("The library cannot be written: %1").arg(m_store.lastError()));
    Q_EMIT signalProtectedFolders(m_store.protectedFolders());
}

void LibraryWorker::setRecycled(const QVector<qint64> &fileIds)
{
    for (const qint64 nId : fileIds) {
        m_announced.remove(nId);
        m_unseen.remove(nId);
    }
    if (!m_store.setRecycled(fileIds))
        Q_EMIT signalProblem(tr("The library cannot be written: %1").arg(m_store.lastError()));
}

QString LibraryWorker::importFiles(const LibraryImport &import)
{
    QVector<ImportedFile> files = import.files;
    QStringList covers;
    // The library first: what it knows of files that are not there yet does no harm, the other way round notes would
    // be lost with the program's end in between.
    if (!m_store.import(&files, m_coverFolder, &covers)) {
        for (const QString &cover : qAsConst(covers)) {
            if (!cover.isEmpty())
                QFile::remove(QDir(m_coverFolder).filePath(cover));
        }
        return tr("The library cannot be written: %1").arg(m_store.lastError());
    }
    if (::renameat2(AT_FDCWD, import.stagedFolder.constData(), AT_FDCWD, import.finalFolder.constData(),
                    RENAME_NOREPLACE) != 0) {
        const QString reason = qt_error_string(errno);
        QVector<qint64> ids;
        for (const ImportedFile &file : qAsConst(files))
            ids.append(file.row.id);
        m_store.forget(ids);
        return tr("The folder %1 cannot be made: %2").arg(QFile::decodeName(import.finalFolder), reason);
    }
    for (int i = 0; i < files.size(); ++i) {
        if (!covers.at(i).isEmpty())
            m_pRenditions->pCovers->set(files.at(i).row.id, QDir(m_coverFolder).filePath(covers.at(i)));
        m_notes.insert(files.at(i).row.id, files.at(i).notes);
    }
    m_labels = m_store.allLabels();
    Q_EMIT signalLabelRecords(m_store.labelRecords());
    return {};
}
