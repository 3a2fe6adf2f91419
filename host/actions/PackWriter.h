#pragma once

#include "actions/FolderExport.h"
#include "actions/PackManifest.h"

#include <QSet>

struct archive;

/**
 * Writes files of the library, with what was added to them, into one pack: a zip with a manifest. Streams: memory does
 * not grow with the files. The pack gets its name when it is complete and on the disk; an older one of that name, which
 * the user chose to replace, stays until then.
 *
 * Owner: the action's work. Thread: the action's worker.
 */
class PackWriter {
public:
    PackWriter(const QString &path, FileRecordList files, const Leftovers &leftovers);
    ~PackWriter();
    Q_DISABLE_COPY(PackWriter)

    ActionOutcome run(ActionTask &task);

private:
    bool openPack();
    bool addFile(const FileRecordPtr &pRecord, ByteMeter *pMeter);
    void addPreview(const FileRecordPtr &pRecord, PackedFile *pFile);
    IoStatus addEntry(const QString &entry, int nFd, const struct stat &state, bool bDeflate,
                      const BytesHandler &onBytes);
    bool addBytes(const QString &entry, const QByteArray &bytes);
    bool beginEntry(const QString &entry, qint64 nSize, qint64 nModifiedSec, int nMode, bool bDeflate);
    bool finish(ByteMeter *pMeter);
    QString entryFor(const char *folder, const QByteArray &name);
    static ssize_t writeBytes(struct archive *, void *pThis, const void *pBytes, size_t nBytes);
    /** Whether the archive took it, and the file what came of it so far. */
    bool isWhole(int nResult) const;
    IoStatus archiveError() const;
    void fail(const IoStatus &status, qint64 nFileId = 0);

    QString m_path;
    bool m_bMayReplace = true;
    const FileRecordList m_files;
    const Leftovers &m_leftovers;
    ActionOutcome m_outcome;
    std::unique_ptr<Leftover> m_pUnfinished;
    UniqueFd m_pack;
    struct archive *m_pArchive = nullptr;
    int m_nWriteError = 0; ///< The errno of the first write that failed; nothing is written from then on.
    std::unique_ptr<WriteBehind> m_pBehind;
    QVector<PackedFile> m_packed;
    QSet<QString> m_entries;
    QByteArray m_buffer; ///< One for all files: small ones are many.
};
