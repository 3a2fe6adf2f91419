#pragma once

#include "interfaces/data/IResponseInfo.h"
#include "library/FolderScanner.h"
#include "library/LibraryStore.h"

#include <QObject>
#include <QSet>

/**
 * The one thread that reads and writes the library file. Turns rows into records, so that the GUI thread only takes
 * them over.
 *
 * Owner: Library. Thread: its own; every operation is called there, signals are received queued.
 */
class LibraryWorker : public QObject {
    Q_OBJECT

public:
    explicit LibraryWorker(QSharedPointer<const RenditionSource> pRenditions);

    /** Opens the file; where that fails, an empty library in memory stands in and signalProblem tells. */
    void open(const QString &path);
    void close();

    /** Announces what is known of these folders and remembers them for endScan. */
    void beginScan(int nGeneration, const QStringList &roots, bool bRecursive, bool bAnnounceKnown);
    void takeIn(int nGeneration, const QVector<FileRow> &files);

    /** Announces the known files that the scan did not meet as gone. */
    void endScan(int nGeneration, const ScanReport &report);

    /** Lists one folder here and now, announced as one list; the wanted file is in it even where it is hidden. */
    void listFolder(int nGeneration, const QString &folder, const QString &wantedName,
                    const std::shared_ptr<std::atomic_bool> &pCancelled);

    void setNotes(qint64 nActionId, qint64 nFileId, const QVector<NoteRecord> &notes);
    void addLabels(qint64 nActionId, const QVector<qint64> &fileIds, const TagRecordList &labels);

    /** Drops files with what was added to them. */
    void forget(const QVector<qint64> &fileIds);
    void setRecycled(const QVector<qint64> &fileIds);

    /** Reads what is kept beside files, notes and labels. */
    void loadKeeping(const QString &coverFolder);
    /** Each answers with what went wrong; empty: nothing. */
    QString setCover(qint64 nFileId, const QString &file, const QString &suffix);
    QString importFiles(const LibraryImport &import);
    void setFolderProtected(const QString &folder, bool bProtected);

Q_SIGNALS:
    void signalProblem(const QString &message);
    void signalProtectedFolders(const QStringList &folders);

    /** These files have other labels now. */
    void signalLabels(const QHash<qint64, TagRecordList> &labels);
    void signalRecords(int nGeneration, const FileRecordList &records);
    void signalScanned(int nGeneration, int nFiles);
    void signalScanEnded(int nGeneration, const QVector<qint64> &goneIds, const ScanReport &report);
    void signalNotesStored(qint64 nActionId, qint64 nFileId, const QVector<NoteRecord> &notes,
                           const QSharedPointer<const IResponseInfo> &pResponse);
    void signalLabelsStored(qint64 nActionId, const QSharedPointer<const IResponseInfo> &pResponse);

private:
    /** Announces those whose state the receiver does not have yet. */
    void announce(int nGeneration, const QVector<FileRow> &rows);
    FileRecordList makeRecords(const QVector<FileRow> &rows);

    LibraryStore m_store;
    QString m_coverFolder;
    bool m_bKept = false; ///< Changes reach the library file: what only the file knows may be tidied up.
    const QSharedPointer<const RenditionSource> m_pRenditions;
    QCollator m_collator;
    QHash<qint64, QVector<NoteRecord>> m_notes;
    QHash<qint64, TagRecordList> m_labels;
    QSet<qint64> m_unseen;
    QHash<qint64, QPair<qint64, qint64>> m_announced; ///< Size and time of change by file.
    int m_nGeneration = 0;
    int m_nScanned = 0;
};
