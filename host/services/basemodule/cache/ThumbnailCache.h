#pragma once

#include "interfaces/services/ITSCacheManager.h"
#include "services/basemodule/cache/DecodeGate.h"
#include "services/basemodule/cache/ThumbnailFiles.h"

#include <QCache>
#include <QDeadlineTimer>
#include <QHash>
#include <QSet>

#include <deque>
#include <memory>
#include <vector>

class QThread;

namespace basemodule {

/**
 * Thumbnails: in memory within a byte budget, on disk in the desktop's folder, made by a few background threads that
 * serve the newest request first, so that what scrolled away does not hold up what came into view.
 *
 * Owner: the base module, shared. Thread: GUI thread; the workers touch only the queue.
 */
class ThumbnailCache : public ITSCacheManager {
    Q_OBJECT

public:
    ThumbnailCache(std::shared_ptr<DecodeGate> gate, const ThumbnailFiles &files);
    ~ThumbnailCache() override;

    QString cacheKey(const FileInfoPtr &pInfo, const QSize &size) const override;
    int lookup(const QString &cacheKey, QPixmap *pPixmap) override;
    ThumbnailRequest createRequest(const FileInfoPtr &pInfo, const QSize &size, double fDpi) const override;
    void submitRequest(const ThumbnailRequest &request) override;
    QImage largePicture(const FileInfoPtr &pInfo) const override;

    void setMemoryBudget(qint64 nBytes);

    /** Ends the workers and waits for them; requests are not served afterwards. */
    void shutdown();

private:
    class Control;
    struct Picture {
        QImage image;
        QPixmap pixmap; ///< Made when it is first drawn.
        double dpi = 1.0;
    };
    struct Job {
        QString key;
        QString path;
        QString fileState; ///< What the key has in common for all sizes of one file.
        QSize pixelSize;
        double dpi = 1.0;
    };

    /** The file to make a thumbnail of: a picture that the host keeps for it, or the file itself. */
    QString pictureOf(const FileInfoPtr &pInfo) const;
    static QString fileState(const FileInfoPtr &pInfo);
    void startWorkers();
    void work(std::deque<Job> &queue);
    void deliver(const Job &job, const QImage &image, bool bAway);
    bool hasFailed(const QString &key);

    /** Drops the names of pictures that the budget has dropped, now and then. */
    void forgetDropped();

    const std::shared_ptr<DecodeGate> m_gate; ///< Shared: the cache may outlive the module.
    const ThumbnailFiles m_files;
    QCache<QString, Picture> m_pictures;  ///< Cost in kilobytes.
    QHash<QString, QString> m_largestKey; ///< By file state: the key of the largest picture delivered.
    QSet<QString> m_pending;
    QHash<QString, QDeadlineTimer> m_failed; ///< Not tried again before.

    std::mutex m_queueMutex;
    std::condition_variable m_queueChanged;
    std::deque<Job> m_queue;     ///< The newest at the end.
    std::deque<Job> m_documents; ///< The same for what takes seconds: it has a worker of its own.
    std::vector<std::unique_ptr<QThread>> m_workers;
    std::atomic_bool m_bStop{false};
};

} // namespace basemodule
