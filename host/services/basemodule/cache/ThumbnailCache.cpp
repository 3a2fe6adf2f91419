#include "services/basemodule/cache/ThumbnailCache.h"

#include "services/basemodule/decode/DecodeRequest.h"
#include "services/basemodule/decode/PictureFormat.h"
#include "services/basemodule/decode/PictureReader.h"

#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace basemodule {

namespace {

constexpr int kWorkers = 3;
// About two screens of a dense grid; older requests have scrolled away.
constexpr size_t kLongestQueue = 400;
constexpr int kMostFailures = 20000;
// A file that was away may be back when its place is painted the next time, in the same state and so with the same key.
constexpr int kAwayMsec = 1000;
constexpr int kDefaultBudgetKilobytes = 256 << 10;

int costOf(const QImage &image)
{
    return std::max(1, int(image.sizeInBytes() / 1024));
}

// Fitted into the size asked and in the form that becomes a pixmap without another conversion.
QImage prepared(const QImage &image, const QSize &pixelSize)
{
    QImage result = image;
    if (image.width() > pixelSize.width() || image.height() > pixelSize.height())
        result = image.scaled(pixelSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return result.convertToFormat(result.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                           : QImage::Format_RGB32);
}

} // namespace

/** Lets the picture on screen go first and ends a decode when the cache goes. */
class ThumbnailCache::Control : public DecodeControl {
public:
    explicit Control(ThumbnailCache &owner)
        : m_owner(owner)
    {
    }

    bool accept(qint64) override { return proceed(); }
    bool proceed() override { return m_owner.m_gate->waitForTurn(m_owner.m_bStop); }

private:
    ThumbnailCache &m_owner;
};

ThumbnailCache::ThumbnailCache(std::shared_ptr<DecodeGate> gate, const ThumbnailFiles &files)
    : m_gate(std::move(gate))
    , m_files(files)
    , m_pictures(kDefaultBudgetKilobytes)
{
}

ThumbnailCache::~ThumbnailCache()
{
    shutdown();
}

void ThumbnailCache::shutdown()
{
    {
        const std::lock_guard<std::mutex> lock(m_queueMutex);
        m_bStop = true;
        m_queue.clear();
        m_documents.clear();
    }
    m_queueChanged.notify_all();
    m_gate->wakeAll();
    for (const auto &worker : m_workers)
        worker->wait();
    m_workers.clear();
}

void ThumbnailCache::setMemoryBudget(qint64 nBytes)
{
    m_pictures.setMaxCost(int(std::clamp<qint64>(nBytes / 1024, 1, 1 << 30)));
}

QString ThumbnailCache::pictureOf(const FileInfoPtr &pInfo) const
{
    const QString kept = pInfo->thumbnailPath();
    return kept.isEmpty() || kept.startsWith(m_files.folder()) ? pInfo->filePath() : kept;
}

QString ThumbnailCache::fileState(const FileInfoPtr &pInfo)
{
    // The desktop's thumbnail keeps its name when the file changes; our large rendition does not.
    return pInfo->thumbnailPath() + QLatin1Char('|') + pInfo->largePreviewPath() + QLatin1Char('|') + pInfo->filePath();
}

QString ThumbnailCache::cacheKey(const FileInfoPtr &pInfo, const QSize &size) const
{
    if (!pInfo)
        return QString();
    return fileState(pInfo) + QStringLiteral("|%1x%2").arg(size.width()).arg(size.height());
}

int ThumbnailCache::lookup(const QString &cacheKey, QPixmap *pPixmap)
{
    if (cacheKey.isEmpty() || hasFailed(cacheKey))
        return Unavailable;
    Picture *pPicture = m_pictures.object(cacheKey);
    if (!pPicture)
        return NotYetThere;
    if (pPicture->pixmap.isNull()) {
        pPicture->pixmap = QPixmap::fromImage(pPicture->image);
        pPicture->pixmap.setDevicePixelRatio(pPicture->dpi);
    }
    if (pPixmap)
        *pPixmap = pPicture->pixmap;
    return Found;
}

ThumbnailRequest ThumbnailCache::createRequest(const FileInfoPtr &pInfo, const QSize &size, double fDpi) const
{
    return ThumbnailRequest{cacheKey(pInfo, size), pInfo, size, fDpi > 0.0 ? fDpi : 1.0};
}

void ThumbnailCache::submitRequest(const ThumbnailRequest &request)
{
    if (!request.fileInfo || request.cacheKey.isEmpty() || m_bStop)
        return;
    const QSize pixelSize(int(std::ceil(request.size.width() * request.dpi)),
                          int(std::ceil(request.size.height() * request.dpi)));
    Job job{request.cacheKey, pictureOf(request.fileInfo), fileState(request.fileInfo), pixelSize, request.dpi};
    if (pixelSize.isEmpty() || hasFailed(job.key) || m_pictures.contains(job.key)) {
        const bool bFound = m_pictures.contains(job.key);
        QMetaObject::invokeMethod(
            this, [this, key = job.key, bFound] { Q_EMIT signalLoadPixmapFinished(key, bFound); },
            Qt::QueuedConnection);
        return;
    }
    startWorkers();
    QString droppedKey;
    {
        const std::lock_guard<std::mutex> lock(m_queueMutex);
        auto &queue = isConvertedSuffix(QFileInfo(job.path).suffix()) ? m_documents : m_queue;
        const auto queued = std::find_if(queue.begin(), queue.end(), [&](const Job &j) { return j.key == job.key; });
        if (queued != queue.end())
            queue.erase(queued); // Asked for again: it is in view now, so it moves to the front.
        else if (m_pending.contains(job.key))
            return;
        m_pending.insert(job.key);
        queue.push_back(std::move(job));
        if (queue.size() > kLongestQueue) {
            droppedKey = queue.front().key;
            queue.pop_front();
        }
    }
    m_queueChanged.notify_all();
    if (!droppedKey.isEmpty()) {
        m_pending.remove(droppedKey);
        QMetaObject::invokeMethod(
            this, [this, droppedKey] { Q_EMIT signalLoadPixmapFinished(droppedKey, false); }, Qt::QueuedConnection);
    }
}

QImage ThumbnailCache::largePicture(const FileInfoPtr &pInfo) const
{
    if (!pInfo)
        return {};
    const Picture *pPicture = m_pictures.object(m_largestKey.value(fileState(pInfo)));
    return pPicture ? pPicture->image : QImage();
}

void ThumbnailCache::startWorkers()
{
    while (m_workers.size() < kWorkers) {
        // Documents take seconds each: pictures do not wait for them.
        std::deque<Job> &queue = m_workers.empty() ? m_documents : m_queue;
        m_workers.emplace_back(QThread::create([this, &queue] { work(queue); }));
        m_workers.back()->setObjectName(QStringLiteral("thumbnails"));
        m_workers.back()->start(QThread::LowPriority);
    }
}

void ThumbnailCache::work(std::deque<Job> &queue)
{
    Control control(*this);
    for (;;) {
        Job job;
        {
            std::unique_lock<std::mutex> lock(m_queueMutex);
            m_queueChanged.wait(lock, [this, &queue] { return m_bStop || !queue.empty(); });
            if (m_bStop)
                return;
            job = std::move(queue.back());
            queue.pop_back();
        }
        if (!m_gate->waitForTurn(m_bStop))
            return;
        const int nBucket = ThumbnailFiles::bucketFor(std::max(job.pixelSize.width(), job.pixelSize.height()));
        QImage image = m_files.thumbnail(job.path, nBucket, &control);
        if (!image.isNull())
            image = prepared(image, job.pixelSize);
        if (m_bStop)
            return;
        const bool bAway = image.isNull() && fileKey(job.path).isNull();
        QMetaObject::invokeMethod(
            this, [this, job, image, bAway] { deliver(job, image, bAway); }, Qt::QueuedConnection);
    }
}

bool ThumbnailCache::hasFailed(const QString &key)
{
    const auto failed = m_failed.find(key);
    if (failed == m_failed.end())
        return false;
    if (!failed->hasExpired())
        return true;
    m_failed.erase(failed);
    return false;
}

void ThumbnailCache::deliver(const Job &job, const QImage &image, bool bAway)
{
    m_pending.remove(job.key);
    if (image.isNull()) {
        if (m_failed.size() >= kMostFailures)
            m_failed.clear();
        m_failed.insert(job.key, bAway ? QDeadlineTimer(kAwayMsec) : QDeadlineTimer(QDeadlineTimer::Forever));
    } else {
        const Picture *pLargest = m_pictures.object(m_largestKey.value(job.fileState));
        if (!pLargest || pLargest->image.width() * pLargest->image.height() < image.width() * image.height())
            m_largestKey.insert(job.fileState, job.key);
        m_pictures.insert(job.key, new Picture{image, QPixmap(), job.dpi}, costOf(image));
        forgetDropped();
    }
    Q_EMIT signalLoadPixmapFinished(job.key, !image.isNull());
}

void ThumbnailCache::forgetDropped()
{
    constexpr int kSpare = 1000;
    if (m_largestKey.size() < 2 * m_pictures.size() + kSpare)
        return;
    for (auto entry = m_largestKey.begin(); entry != m_largestKey.end();)
        entry = m_pictures.contains(entry.value()) ? std::next(entry) : m_largestKey.erase(entry);
}

} // namespace basemodule
