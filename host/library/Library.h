#pragma once

#include "library/LibraryWorker.h"

#include <QHash>
#include <QObject>
#include <QThread>
#include <QThreadPool>

/**
 * The files in view and the way to the library file, for the GUI thread. Everything slow happens on the worker's
 * thread and, for scanning, on one more; results arrive by signals.
 *
 * Owner: HostSession. Thread: GUI thread only.
 */
class Library : public QObject {
    Q_OBJECT

public:
    explicit Library(QObject *pParent = nullptr);
    ~Library() override;

    /** Where the library stands unless the user says otherwise. */
    static QString defaultPath();

    /** Starts opening; requests may follow at once. */
    void open(const QString &path);

    /** Opens the same file again, or puts it aside under another name and begins a new one; looks at the files anew. */
    void reopen(bool bStartNew);

    /** Whether a reason why a library is unusable means that another program has it at present. */
    static bool isBusyReason(const QString &reason);

    /** Makes records name their renditions; null: they have none. */
    void setAnalysis(IHostAnalysis *pAnalysis);

    /** Shows the files of these folders and their sub-folders: at once what is known, then what a scan finds. */
    void showFolders(const QStringList &folders);

    /** Shows the files of one folder alone, as they are on disk now, in one list, and this one even where hidden. */
    void showFolderNow(const QString &folder, const QString &wantedName = QString());

    /** Looks again for changes in the folders in view. */
    void rescan();

    /** Stops a running scan; what it found stays. */
    void cancelScan();
    bool isScanning() const { return m_bScanning; }
    const QStringList &folders() const { return m_folders; }

    /** The record of a file in view; null for any other id. */
    FileRecordPtr record(qint64 nFileId) const { return m_records.value(nFileId); }
    int count() const { return m_records.size(); }
    /** Every record in view, in no order; takes time with their number. */
    FileRecordList records() const { return FileRecordList(m_records.cbegin(), m_records.cend()); }

    /** Every label of the library, by name, in view or not. */
    const QVector<LabelRecord> &labels() const { return m_labels; }

    /** Renames a file on disk and here; never replaces another. The id comes back with signalRenamed. */
    qint64 renameFile(qint64 nFileId, const QString &newName);

    void removeLabels(const QVector<qint64> &fileIds, const QVector<quint64> &labelIds);
    void setLabelColor(quint64 nLabelId, quint32 nColor);
    void deleteLabel(quint64 nLabelId);

    /** Keeps how far these files are analysed. */
    void storeAnalysis(const QVector<FileRow> &files);

    /** Drops files from the library with their notes and labels; the disk is not touched. */
    void forgetFiles(const QVector<qint64> &fileIds);

    /** Files went to the recycle bin: out of view; with their notes and labels again should they come back. */
    void takeOut(const QVector<qint64> &fileIds);

    /** Told what went wrong; empty: nothing. Called in the GUI thread. */
    using DoneHandler = std::function<void(const QString &error)>;

    /** Makes a finished picture, which the library takes over, the file's preview picture; an empty one takes the old
     * one away. The guard is held until then. Records that changed come with signalRecords. */
    void setCover(qint64 nFileId, const QString &file, const QString &suffix, const std::shared_ptr<void> &pGuard,
                  const DoneHandler &done);

    /** Takes files over with all that comes with them. */
    void importFiles(const LibraryImport &import, const DoneHandler &done);

    /** Whether files of this folder may not be deleted: the user protected it or one above it. */
    bool isDeletingBlocked(const QString &folder) const;
    bool isProtected(const QString &folder) const { return m_protectedFolders.contains(folder); }
    void protectFolder(const QString &folder, bool bProtected);

    /** Where finished preview pictures stand, and the list of unfinished files; native to this library file. */
    const QString &coverFolder() const { return m_coverFolder; }
    const QString &unfinishedFolder() const { return m_unfinishedFolder; }

    /** Stores notes or labels; the id of the request, which comes back with its signal. */
    qint64 setNotes(qint64 nFileId, const QVector<NoteRecord> &notes);
    qint64 addLabels(const QVector<qint64> &fileIds, const TagRecordList &labels);

Q_SIGNALS:
    /** Other folders are in view: forget every file. */
    void signalCleared();

    /** Files are new, or have a new record. */
    void signalRecords(const FileRecordList &records);

    /** Files left the library or the folders in view. */
    void signalRemoved(const QVector<qint64> &fileIds);

    /** Files are not where they were; their records came before and say so. */
    void signalMissing(const QVector<qint64> &fileIds);
    void signalLabelRecords();
    /** Without an error the file has its new name. */
    void signalRenamed(qint64 nActionId, qint64 nFileId, const QString &error);
    /** The library file cannot be used; changes are not kept. */
    void signalUnusable(const QString &path, const QString &reason);
    void signalScanProgress(int nFiles);
    void signalScanEnded(const ScanReport &report);
    void signalProblem(const QString &message);
    /** This message holds no longer. */
    void signalProblemSolved(const QString &message);
    void signalProtectionChanged();
    void signalNotesStored(qint64 nActionId, const QSharedPointer<const IResponseInfo> &pResponse);
    void signalLabelsStored(qint64 nActionId, const QSharedPointer<const IResponseInfo> &pResponse);

private:
    void connectWorker();
    void withdrawFault();
    void openFile(const QString &path, bool bStartNew);
    void loadKeeping(const QString &path);
    void startScan(bool bAnnounceKnown);
    void changeFolders(const QStringList &folders, bool bRecursive);
    void takeRecords(int nGeneration, const FileRecordList &records);
    void lookAgain(const QStringList &folders);
    void runScanner(int nGeneration, const QStringList &folders, bool bLook);
    void takeScanEnd(int nGeneration, const FileRecordList &missing, const ScanReport &report);
    void takeNotes(qint64 nFileId, const QVector<NoteRecord> &notes);
    void takeLabels(const QHash<qint64, TagRecordList> &labels);

    /** Runs a call on the worker's thread, after everything asked for before. */
    template <typename Call>
    void post(Call call)
    {
        QMetaObject::invokeMethod(m_pWorker, std::move(call), Qt::QueuedConnection);
    }

    const QSharedPointer<RenditionSource> m_pRenditions;
    QThread m_thread;
    QThreadPool m_scanPool;
    LibraryWorker *m_pWorker;
    std::shared_ptr<std::atomic_bool> m_pCancelled;
    QHash<qint64, FileRecordPtr> m_records;
    QString m_path;
    QString m_fault; ///< Told to the user: why the library cannot be used; empty when it can.
    QStringList m_folders;
    QSet<QString> m_protectedFolders;
    QString m_coverFolder;
    QString m_unfinishedFolder;
    bool m_bRecursive = true;
    bool m_bScanning = false;
    bool m_bLooking = false;
    QSet<QString> m_changedFolders; ///< To be looked at when the present scan ends.
    QVector<LabelRecord> m_labels;
    int m_nGeneration = 0;
    qint64 m_nLastActionId = 0;
};
