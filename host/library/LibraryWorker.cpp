#include "library/LibraryWorker.h"

#include "files/NativePath.h"
#include "files/SafeRename.h"
#include "library/FileTypes.h"
#include "library/LibraryActions.h"

#include <utility>

LibraryWorker::LibraryWorker(QSharedPointer<const RenditionSource> pRenditions)
    : m_pRenditions(std::move(pRenditions))
    , m_collator(fileNameCollator())
    , m_watcher(this)
{
    connect(&m_watcher, &FolderWatcher::signalChanged, this, &LibraryWorker::signalFoldersChanged);
}

void LibraryWorker::open(const QString &path)
{
    QString error;
    m_bKept = m_store.open(path, &error);
    if (m_bKept) {
        Q_EMIT signalUsable();
    } else {
        Q_EMIT signalUnusable(path, error);
        if (!m_store.openCopy(path, &error))
            Q_EMIT signalProblem(tr("There is no SQLite driver: %1").arg(error));
    }
    m_notes = m_store.allNotes();
    m_labels = m_store.allLabels();
    Q_EMIT signalLabelRecords(m_store.labelRecords());
}

void LibraryWorker::close()
{
    m_store.close();
}

FileRecordList LibraryWorker::makeRecords(const QVector<FileRow> &rows)
{
    FileRecordList records;
    records.reserve(rows.size());
    for (const FileRow &row : rows)
        records.append(FileRecordPtr(new FileRecord(row, FileAnnotations{m_notes.value(row.id), m_labels.value(row.id)},
                                                    m_collator.sortKey(row.name), m_pRenditions)));
    return records;
}

void LibraryWorker::announce(int nGeneration, const QVector<FileRow> &rows)
{
    QVector<FileRow> news;
    for (const FileRow &row : rows) {
        // Compared with what was announced, not with the library: another instance may have stored the change.
        const Announced state{row.nSize, row.nModifiedMsec, qHash(row.name, qHash(row.folder)), row.bAvailable};
        const auto known = m_announced.constFind(row.id);
        if (known != m_announced.constEnd() && known.value() == state)
            continue;
        m_announced.insert(row.id, state);
        news.append(row);
    }
    if (!news.isEmpty())
        Q_EMIT signalRecords(nGeneration, makeRecords(news));
}

void LibraryWorker::beginScan(int nGeneration, const QStringList &roots, bool bRecursive, bool bAnnounceKnown)
{
    m_nGeneration = nGeneration;
    m_nScanned = 0;
    m_bLooking = false;
    m_unseen.clear();
    const QVector<FileRow> known = m_store.filesUnder(roots, bRecursive);
    m_unseen.reserve(known.size());
    for (const FileRow &row : known) {
        if (row.bAvailable)
            m_unseen.insert(row.id, row);
    }
    if (!bAnnounceKnown)
        return;
    m_announced.clear();
    announce(nGeneration, known);
}

void LibraryWorker::takeIn(int nGeneration, const QVector<FileRow> &files)
{
    if (nGeneration != m_nGeneration)
        return;
    const QVector<FileRow> rows = m_store.takeIn(files);
    if (rows.isEmpty())
        reportWriteError();
    for (const FileRow &row : rows)
        m_unseen.remove(row.id);
    announce(nGeneration, rows);
    if (m_bLooking)
        return;
    m_nScanned += files.size();
    Q_EMIT signalScanned(nGeneration, m_nScanned);
}

void LibraryWorker::endScan(int nGeneration, const ScanReport &report)
{
    if (nGeneration != m_nGeneration)
        return;
    QVector<FileRow> gone;
    if (!report.bCancelled) {
        QVector<qint64> goneIds;
        for (FileRow row : qAsConst(m_unseen)) {
            // A look meets no hidden files and none that moved on meanwhile.
            const QString path = row.folder + QLatin1Char('/') + row.name;
            if (report.bPartial && fileState(nativePath(path)).bFile)
                continue;
            row.bAvailable = false;
            gone.append(row);
            goneIds.append(row.id);
            m_announced.remove(row.id);
        }
        m_unseen.clear();
        if (!gone.isEmpty() && !m_store.setUnavailable(goneIds))
            reportWriteError();
    }
    Q_EMIT signalScanEnded(nGeneration, makeRecords(gone), report);
}

void LibraryWorker::beginLook(int nGeneration, const QStringList &folders)
{
    if (nGeneration != m_nGeneration)
        return;
    m_bLooking = true;
    m_unseen.clear();
    QStringList places = folders;
    for (const QString &folder : folders) {
        // What stood in a folder that went away is told by the folder above it.
        const QStringList below = m_store.foldersUnder(folder);
        for (const QString &place : below) {
            if (!m_watcher.contains(place) && !fileState(nativePath(place)).bFolder)
                places.append(place);
        }
    }
    places.removeDuplicates();
    const QVector<FileRow> known = m_store.filesUnder(places, false);
    for (const FileRow &row : known) {
        if (row.bAvailable)
            m_unseen.insert(row.id, row);
    }
}

void LibraryWorker::listFolder(int nGeneration, const QString &folder, const QString &wantedName,
                               const std::shared_ptr<std::atomic_bool> &pCancelled)
{
    beginScan(nGeneration, {folder}, false, false);
    m_announced.clear();
    QVector<FileRow> present;
    QVector<FileRow> changed;
    QHash<QString, FileRow> known;
    const QVector<FileRow> rows = m_store.filesUnder({folder}, false);
    for (const FileRow &row : rows) {
        if (row.bAvailable)
            known.insert(row.name, row);
    }
    bool bWantedListed = wantedName.isEmpty();
    // What is known and unchanged costs no query of its own: the user waits for this list.
    const auto takeBatch = [&](const FolderScanner::Batch &batch) {
        for (const FileRow &file : batch) {
            const FileRow row = known.value(file.name);
            const bool bUnchanged = row.id != 0 && row.nSize == file.nSize && row.nModifiedMsec == file.nModifiedMsec &&
                                    row.nType == file.nType;
            (bUnchanged ? present : changed).append(bUnchanged ? row : file);
            bWantedListed = bWantedListed || file.name == wantedName;
        }
    };
    m_watcher.clear();
    m_watcher.add(folder);
    ScanReport report = FolderScanner(pCancelled, takeBatch).scan({folder}, false);
    if (!bWantedListed) {
        // Hidden, or in a folder that may not be listed: named by the user it is shown all the same.
        const FileRow wanted = readFileRow(folder, wantedName);
        if (wanted.bAvailable)
            takeBatch({wanted});
    }
    if (!changed.isEmpty()) {
        const QVector<FileRow> stored = m_store.takeIn(changed);
        if (stored.isEmpty())
            reportWriteError();
        present += stored;
    }
    report.nFiles = present.size();
    for (const FileRow &row : qAsConst(present))
        m_unseen.remove(row.id);
    announce(nGeneration, present);
    endScan(nGeneration, report);
}

void LibraryWorker::forget(const QVector<qint64> &fileIds)
{
    for (const qint64 nId : fileIds) {
        m_announced.remove(nId);
        m_unseen.remove(nId);
        m_notes.remove(nId);
        m_labels.remove(nId);
    }
    if (!m_store.forget(fileIds))
        Q_EMIT signalProblem(tr("The library cannot be written: %1").arg(m_store.lastError()));
}

void LibraryWorker::setNotes(qint64 nActionId, qint64 nFileId, const QVector<NoteRecord> &notes)
{
    const bool bDone = m_store.setNotes(nFileId, notes);
    if (bDone)
        m_notes.insert(nFileId, notes);
    Q_EMIT signalNotesStored(nActionId, nFileId, m_notes.value(nFileId),
                             LibraryResponse::make(bDone, m_store.lastError(), {nFileId}));
}

void LibraryWorker::addLabels(qint64 nActionId, const QVector<qint64> &fileIds, const TagRecordList &labels)
{
    const bool bDone = m_store.addLabels(fileIds, labels);
    if (bDone)
        announceLabels(fileIds);
    Q_EMIT signalLabelsStored(nActionId, LibraryResponse::make(bDone, m_store.lastError(), fileIds));
}
