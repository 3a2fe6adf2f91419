#pragma once

#include "services/basemodule/decode/PictureReader.h"

#include <QMutex>

namespace basemodule {

/** How much of a document was converted. */
enum class Extent { FirstPage, Whole };

/**
 * Converted documents on disk, within a byte budget, named by the digest of what they were made of: two copies of a
 * document are converted once. Files in one state are linked to their digest, so that a file is read once only.
 *
 * Owner: the converter. Thread: any; touches the disk.
 */
class PdfStore {
public:
    PdfStore(const QString &folder, qint64 nBudget);

    /** What was made of the file in this state; empty when there is none. A whole document serves its first page. */
    QString find(const FileKey &key, Extent extent) const;
    /** The same by content. */
    QString findContent(const QByteArray &digest, Extent extent) const;

    /** Takes a finished PDF file over; empty when the disk refuses. */
    QString keep(const QString &pdfPath, const QByteArray &digest, Extent extent);
    /** Notes what a file in this state holds. */
    void link(const FileKey &key, const QByteArray &digest);
    void discard(const QString &pdfPath);

private:
    QString linkPath(const FileKey &key) const;
    QString pdfPath(const QByteArray &digest, Extent extent) const;
    void prune(const QString &keptPath);

    const QString m_folder;
    const qint64 m_nBudget;
    QMutex m_pruning;
};

} // namespace basemodule
