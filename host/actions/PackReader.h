#pragma once

#include "actions/PackManifest.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <memory>

struct archive;
struct archive_entry;

/**
 * Reads a pack that may have been made by anybody. `check` looks at everything that is in it before a byte is
 * unpacked, and refuses what is no plain file of the manifest; `unpack` then hands the files over, each no longer than
 * the manifest says.
 *
 * Owner: PackImporter. Thread: one worker.
 */
class PackReader {
public:
    explicit PackReader(const QString &path);

    /** Reads the manifest and compares it with what is there; false with a reason that the user can read. */
    bool check(QString *pError);

    const QVector<PackedFile> &files() const { return m_files; }
    /** Bytes of all files, unpacked. */
    qint64 totalBytes() const { return m_nTotal; }

    /** Told of each entry of the manifest and of its bytes; false stops. */
    struct Sink {
        std::function<bool(const QString &entry)> begin;
        std::function<bool(const char *pData, qint64 nBytes)> data;
        std::function<bool()> end;
    };
    /** False with a reason, or without one when the sink stopped it. */
    bool unpack(const Sink &sink, QString *pError);

private:
    using Archive = std::unique_ptr<struct archive, int (*)(struct archive *)>;
    using EntryHandler =
        std::function<bool(struct archive *pArchive, const QString &entry, qint64 nSize, QString *pError)>;

    Archive open(QString *pError) const;
    bool forEachEntry(const EntryHandler &handle, QString *pError) const;
    bool takeEntry(struct archive *pArchive, const QString &entry, qint64 nSize, QString *pError);
    bool compare(QString *pError) const;
    static bool copyData(struct archive *pArchive, qint64 nMost, const std::function<bool(const char *, qint64)> &take,
                         QString *pError);

    const QByteArray m_path;
    QVector<PackedFile> m_files;
    QHash<QString, qint64> m_sizes; ///< By entry.
    QSet<QString> m_folded;         ///< Names as systems without regard to case see them.
    QByteArray m_manifest;
    qint64 m_nTotal = 0;
};
