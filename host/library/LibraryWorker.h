#pragma once

#include "interfaces/data/IResponseInfo.h"
#include "library/FolderScanner.h"
#include "library/FolderWatcher.h"
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

    /** Gives an unusable library file another name, so that a new one can take its place. */
    void putAside(const QString &path);

    /** Announces what is known of these folders and remembers them for endScan. */
    void beginScan(int nGeneration, const QStringList &roots, bool bRecursive, bool bAnnounceKnown);
    void takeIn(int nGeneration, const QVector<FileRow> &files);

    /** Gets ready for looking again at folders in which something changed, within the scan done last. */
    void beginLook(int nGeneration, const QStringList &folders);

    /** Announces the known files that the scan did not meet as missing. */
    void endScan(int nGeneration, const ScanReport &report);

    /** Lists one folder here and now, announced as one list; the wanted file is in it even where it is hidden. */
    void listFolder(int nGeneration, const QString &folder, const QString &wantedName,
                    const std::shared_ptr<std::atomic_bool> &pCancelled);

    void setNotes(qint64 nActionId, qint64 nFileId, const QVector<NoteRecord> &notes);
    void addLabels(qint64 nActionId, const QVector<qint64> &fileIds, const TagRecordList &labels);
    void removeLabels(const QVector<qint64> &fileIds, const QVector<quint64> &labelIds);
    void setLabelColor(quint64 nLabelId, quint32 nColor);
    void deleteLabel(quint64 nLabelId);

    void renameFile(qint64 nActionId, const FileRow &file, const QString &newName);
    void setAnalysis(const QVector<FileRow> &files);

    /** Any thread. */
    FolderWatcher *watcher() { return &m_watcher; }

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
    void signalScanEnded(int nGeneration, const FileRecordList &missing, const ScanReport &report);
    void signalFoldersChanged(const QStringList &folders);
    void signalLabelRecords(const QVector<LabelRecord> &labels);
    /** Without an error the file has its new name. */
    void signalRenamed(qint64 nActionId, qint64 nFileId, const QString &error);

    /** The library file cannot be used; what it says is read where it can be. */
    void signalUnusable(const QString &path, const QString &reason);
    /** The library file is open, and changes are kept. */
    void signalUsable();
    void signalNotesStored(qint64 nActionId, qint64 nFileId, const QVector<NoteRecord> &notes,
                           const QSharedPointer<const IResponseInfo> &pResponse);
    void signalLabelsStored(qint64 nActionId, const QSharedPointer<const IResponseInfo> &pResponse);

private:
    /** Announces those whose state the receiver does not have yet. */
    void announce(int nGeneration, const QVector<FileRow> &rows);
    FileRecordList makeRecords(const QVector<FileRow> &rows);
    void announceLabels(const QVector<qint64> &fileIds);
    void reportWriteError();

    LibraryStore m_store;
    QString m_coverFolder;
    bool m_bKept = false; ///< Changes reach the library file: what only the file knows may be tidied up.
    const QSharedPointer<const RenditionSource> m_pRenditions;
    QCollator m_collator;
    QHash<qint64, QVector<NoteRecord>> m_notes;
    QHash<qint64, TagRecordList> m_labels;
    FolderWatcher m_watcher;
    QHash<qint64, FileRow> m_unseen;
    /** What the receiver knows of a file. */
    struct Announced {
        qint64 nSize = 0;
        qint64 nModifiedMsec = 0;
        uint nPlace = 0; ///< Hash of the path.
        bool bAvailable = true;

        bool operator==(const Announced &other) const
        {
            return nSize == other.nSize && nModifiedMsec == other.nModifiedMsec && nPlace == other.nPlace &&
                   bAvailable == other.bAvailable;
        }
    };
    QHash<qint64, Announced> m_announced;
    int m_nGeneration = 0;
    int m_nScanned = 0;
    bool m_bLooking = false;
};
