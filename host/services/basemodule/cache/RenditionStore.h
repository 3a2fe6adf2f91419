#pragma once

#include "services/basemodule/IHostAnalysis.h"

#include <QHash>
#include <QMutex>
#include <QThreadPool>

#include <atomic>

namespace basemodule {

/** Where the base module keeps files; handed in so that tests have their own. */
struct CacheFolders {
    QString renditions;  ///< Ours alone.
    QString thumbnails;  ///< The desktop's shared thumbnail folder.
    QString documents{}; ///< Ours alone: converted documents; empty: beside the renditions.

    /** In the user's cache folder. */
    static CacheFolders standard();
};

/**
 * Large renditions on disk: names them, makes them when they are first asked for, and keeps their folder within a
 * byte budget. Remembers which file a rendition or thumbnail path stands for.
 *
 * Owner: the base module. Thread: any; `provide` may take as long as a decode.
 */
class RenditionStore {
public:
    explicit RenditionStore(const CacheFolders &folders);
    ~RenditionStore();

    /** Names only; touches no disk. */
    RenditionPaths paths(const QString &path, qint64 nSize, qint64 nModifiedMsec);

    /** The file that a rendition or thumbnail path was named for; empty when unknown. */
    QString sourceOf(const QString &path) const;

    /**
     * Makes sure that a rendition is there, where the path is one that we named and its file has not changed.
     * False for a rendition that cannot be made and for an outdated thumbnail; true for every other path.
     */
    bool provide(const QString &path);

    /** The rendition of a file as it is now, made if it is missing; empty when there is none. Touches the disk. */
    QString renditionOf(const QString &sourcePath);

    void setDiskBudget(qint64 nBytes) { m_nDiskBudget = nBytes; }
    void shutdown();

private:
    struct Source {
        QString path;
        qint64 size = 0;
        qint64 modifiedMsec = 0;
        bool isThumbnail = false;
    };

    static quint64 keyOf(const QString &path);
    bool make(const Source &source, const QString &target);
    bool makeFromRaw(const Source &source, const QString &target);
    void pruneLater();
    void prune() const;

    const CacheFolders m_folders;
    mutable QMutex m_sourcesMutex;
    QHash<quint64, Source> m_sources;
    QMutex m_makeMutex; ///< One rendition is made at a time, so that two askers do not make the same.
    QThreadPool m_pruner;
    std::atomic_bool m_bStop{false};
    std::atomic<qint64> m_nDiskBudget{qint64(2) << 30};
};

} // namespace basemodule
