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
    bool bPartial = false; ///< Only folders in which something changed were looked at.
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

    /** Told of each folder before it is listed; false keeps the scan out of it. */
    using FolderFilter = std::function<bool(const QString &folder)>;

    FolderScanner(std::shared_ptr<std::atomic_bool> pCancelled, BatchHandler handler);

    /** Without a filter every folder is entered. */
    void setFolderFilter(FolderFilter filter) { m_filter = std::move(filter); }

    /** Hands the files of the folders over in batches, each file once. Ids are left 0. */
    ScanReport scan(const QStringList &roots, bool bRecursive);

private:
    void scanFolder(const QString &folder, QStringList *pSubFolders, ScanReport *pReport);
    void addFile(const FileRow &row, ScanReport *pReport);
    void flush();

    std::shared_ptr<std::atomic_bool> m_pCancelled;
    BatchHandler m_handler;
    FolderFilter m_filter;
    Batch m_batch;
    QSet<QByteArray> m_visited;
};

/** The state of one file on disk as a row without id; bAvailable is false when there is no such regular file. */
FileRow readFileRow(const QString &folder, const QString &name);
