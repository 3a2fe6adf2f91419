#pragma once

#include <QImage>
#include <QString>

#include <atomic>

namespace basemodule {

class DecodeControl;
class DocumentConverter;
struct DecodeResult;

/**
 * Thumbnails on disk, in the folders and the form that desktops share: named by the digest of the file's address,
 * valid for one time of change, written privately and in one step. A value; any thread; touches the disk.
 */
class ThumbnailFiles {
public:
    static constexpr int kNormal = 128;
    static constexpr int kLarge = 256;
    static constexpr int kXLarge = 512;
    static constexpr int kXxLarge = 1024;

    /** Without a converter documents of other programs have no thumbnail; one that is given must outlive this. */
    explicit ThumbnailFiles(const QString &folder, DocumentConverter *pDocuments = nullptr)
        : m_folder(folder)
        , m_pDocuments(pDocuments)
    {
    }

    /** The smallest of the four sizes that is at least this large. */
    static int bucketFor(int nSide);

    const QString &folder() const { return m_folder; }

    /** Where the thumbnail of a file stands; touches no disk. */
    QString pathFor(const QString &sourcePath, int nBucket) const;

    /**
     * The upright thumbnail of a file as it is now, read or made and then kept; null when none can be made. *pbLost
     * tells whether the one that was made could not be written.
     */
    QImage thumbnail(const QString &sourcePath, int nBucket, DecodeControl *pControl, bool *pbLost = nullptr) const;

    enum class Kept {
        Yes,
        Impossible, ///< None can be made of the file.
        NotWritten, ///< The disk is full, or does not let us.
        Away,       ///< The file is not there.
    };

    /** Makes sure that the thumbnail is kept; quicker than `thumbnail` where it is. */
    Kept keep(const QString &sourcePath, int nBucket, DecodeControl *pControl) const;

    /** Removes those of our own that were not used for longest until the rest keeps to the budget. */
    void prune(qint64 nBudget, const std::atomic_bool &cancelled) const;

    /** Writes into a reduced picture how large the one is that it was made of: previews place notes by it. */
    static void noteOriginalSize(QImage *pImage, const DecodeResult &result);

    /** Whether the thumbnail there is was made of an earlier state of the file. */
    bool isOutdated(const QString &thumbnailPath, const QString &sourcePath) const;

private:
    QImage larger(const QString &sourcePath, int nBucket, const QByteArray &uri, qint64 nModifiedSec) const;
    QImage load(const QString &thumbnailPath, const QByteArray &uri, qint64 nModifiedSec) const;
    bool store(const QImage &image, const QString &thumbnailPath, const QByteArray &uri, qint64 nModifiedSec) const;

    QString m_folder;
    DocumentConverter *m_pDocuments;
};

} // namespace basemodule
