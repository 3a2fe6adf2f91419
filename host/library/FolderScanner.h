#pragma once

#include "library/FileRecord.h"

#include <QSet>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>

/** What a scan could not take in. */
struct ScanReport {
    int nFiles = 0;             ///< Files found.
    int nUnreadableFolders = 0; ///< Folders that could not be listed.
    int nUnrepresentable = 0;   ///< Entries whose names cannot be told apart as text.
    bool bCancelled = false;
};

Q_DECLARE_METATYPE(ScanReport)

/**
 * Finds the files of folders: follows links to folders once each, leaves hidden entries out.
 *
 * Owner: whoever scans. Thread: one at a time, away from the GUI thread; the cancel flag may be set from any.
 */
class FolderScanner {
public:
    using Batch = QVector<FileRow>;
    using BatchHandler = std::function<void(const Batch &)>;

    FolderScanner(std::shared_ptr<std::atomic_bool> pCancelled, BatchHandler handler);

    /** Hands the files of the folders over in batches, each file once. Ids are left 0. */
    ScanReport scan(const QStringList &roots, bool bRecursive);

private:
    void scanFolder(const QString &folder, QStringList *pSubFolders, ScanReport *pReport);
    void addFile(const FileRow &row, ScanReport *pReport);
    void flush();

    std::shared_ptr<std::atomic_bool> m_pCancelled;
    BatchHandler m_handler;
    Batch m_batch;
    QSet<QByteArray> m_visited;
};

/** The state of one file on disk as a row without id; bAvailable is false when there is no such regular file. */
FileRow readFileRow(const QString &folder, const QString &name);
