#pragma once

#include "metadata/FileMetadata.h"

#include <QImage>
#include <QString>
#include <QStringList>
#include <QtPlugin>

#include <atomic>
#include <functional>

/** Where the base module keeps what it made of one file. The files need not exist yet. */
struct RenditionPaths {
    QString largePreview; ///< The large rendition; reading it through the decoder makes it where it is missing.
    QString thumbnail;    ///< The thumbnail, in the desktop's shared thumbnail folder.
};

/** What came of analysing a file; a cancelled one, also for want of room or of the file, is tried again later. */
enum class AnalysisOutcome { Done, Impossible, Cancelled };

/**
 * What the host application asks of its own base module beyond the interface that previews know: where renditions
 * stand, and which files will be looked at next. Reached with qobject_cast from the base module's root object.
 *
 * Owner: the base module. Thread: GUI thread only, except what says otherwise.
 */
class IHostAnalysis {
public:
    /**
     * The rendition paths of a file in this state (bytes, milliseconds since 1970). Any thread; touches no disk. A
     * changed file has another large rendition than before; its thumbnail keeps the name that all programs of the
     * desktop look for, and an outdated one is refused by the decoder.
     */
    virtual RenditionPaths renditionPaths(const QString &path, qint64 nSize, qint64 nModifiedMsec) = 0;

    /**
     * The files that will probably be shown next, the most probable first. They are decoded ahead within the byte
     * budget; files decoded ahead that are not named any more are dropped, decodes under way for them are cancelled.
     */
    virtual void setFilesAhead(const QStringList &paths) = 0;

    /** Byte budget for pictures decoded ahead; 0 switches decoding ahead off. */
    virtual void setAheadBudget(qint64 nBytes) = 0;

    /**
     * Makes the thumbnail of a file and what previews read instead of it (the large rendition, the pages of a
     * document), and keeps them on disk. Any thread, several at once; lets pictures that somebody waits for go first,
     * and ends soon when it is cancelled.
     */
    virtual AnalysisOutcome analyse(const QString &path, const std::atomic_bool &cancelled) = 0;

    /**
     * The file that is looked at now; empty: none. Whoever waits for the conversion of another document gives up, so
     * that a preview that stepped on is not held up.
     */
    virtual void setFileShown(const QString &path) = 0;

    using ProblemHandler = std::function<void(const QString &)>;

    /** Is called in the GUI thread with a readable line when a program or room on the disk is missing; empty: nobody
     * wants to know. */
    virtual void setProblemHandler(const ProblemHandler &handler) = 0;

    /** Byte budget for our thumbnails on disk; those of other programs are left alone. */
    virtual void setThumbnailDiskBudget(qint64 nBytes) = 0;

    /** Ends all background work and waits for it; called once before the host ends. */
    virtual void shutdown() = 0;

    /**
     * The picture of a file of any kind, upright and fitted into a square of this side; null for a file without one, or
     * soon after the flag was set. Any thread; takes as long as a decode.
     */
    virtual QImage readPicture(const QString &path, int nLongestSide, const std::atomic_bool &cancelled) = 0;

    /** What a file says of itself; empty where it says nothing. Any thread; reads the file. */
    virtual FileMetadata readMetadata(const QString &path) = 0;

protected:
    ~IHostAnalysis() = default;
};

Q_DECLARE_INTERFACE(IHostAnalysis, "BigImgPreview.Host.IHostAnalysis/1.0")
