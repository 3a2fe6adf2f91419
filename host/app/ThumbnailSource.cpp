#include "app/ThumbnailSource.h"

ThumbnailSource::ThumbnailSource(QObject *pParent)
    : QObject(pParent)
{
}

void ThumbnailSource::setCache(const QSharedPointer<ITSCacheManager> &pCache)
{
    if (m_pCache != nullptr)
        m_pCache->disconnect(this);
    m_pCache = pCache;
    m_requested.clear();
    if (m_pCache == nullptr)
        return;
    connect(m_pCache.data(), &ITSCacheManager::signalLoadPixmapFinished, this, [this](const QString &key) {
        m_requested.remove(key);
        Q_EMIT signalChanged();
    });
}

QPixmap ThumbnailSource::thumbnail(const FileInfoPtr &pInfo, const QSize &size, double fDpi, bool *pbComing)
{
    *pbComing = false;
    if (m_pCache == nullptr || pInfo == nullptr || !pInfo->hasCachePicture())
        return {};
    const QString key = m_pCache->cacheKey(pInfo, size);
    if (key.isEmpty())
        return {};
    QPixmap pixmap;
    // The cache remembers what cannot be read; a request that it dropped may be made again.
    switch (m_pCache->lookup(key, &pixmap)) {
    case ITSCacheManager::Found:
        return pixmap;
    case ITSCacheManager::NotYetThere:
        *pbComing = true;
        if (!m_requested.contains(key)) {
            m_requested.insert(key);
            m_pCache->submitRequest(m_pCache->createRequest(pInfo, size, fDpi));
        }
        return {};
    default:
        return {};
    }
}
