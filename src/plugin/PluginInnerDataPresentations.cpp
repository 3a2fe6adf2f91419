// The shared state's presentations: those being opened, those open, and the way to the host's renderer.
#include "interfaces/services/IPresentationRenderer.h"
#include "plugin/PluginInnerData.h"

#include <QMutexLocker>

#include <algorithm>

namespace {

// Stepping to and fro between a few is quick; the host need not keep a library's worth of documents open.
constexpr int MostOpenPresentations = 4;
constexpr int DetachRetryMsec = 50;

} // namespace

bool PluginInnerData::hasPendingPresentations() const
{
    const QMutexLocker locker(&m_renderCacheLock);
    return !m_pendingPresentations.isEmpty();
}

bool PluginInnerData::isPresentationPending(qint64 nFileId) const
{
    const QMutexLocker locker(&m_renderCacheLock);
    return m_pendingPresentations.contains(nFileId);
}

void PluginInnerData::beginPendingPresentation(qint64 nFileId)
{
    const QMutexLocker locker(&m_renderCacheLock);
    ++m_pendingPresentations[nFileId];
}

void PluginInnerData::endPendingPresentation(qint64 nFileId)
{
    const QMutexLocker locker(&m_renderCacheLock);
    const auto it = m_pendingPresentations.find(nFileId);
    if (it != m_pendingPresentations.end() && --*it <= 0)
        m_pendingPresentations.erase(it);
}

bool PluginInnerData::hasRenderEntry(qint64 nFileId) const
{
    const QMutexLocker locker(&m_renderCacheLock);
    return m_renderCache.contains(nFileId);
}

int PluginInnerData::presentationPageCount(qint64 nFileId) const
{
    const QMutexLocker locker(&m_renderCacheLock);
    return m_renderCache.value(nFileId).nPageCount;
}

void PluginInnerData::dropRenderEntry(qint64 nFileId)
{
    {
        const QMutexLocker locker(&m_renderCacheLock);
        m_renderCache.remove(nFileId);
    }
    if (IPresentationRenderer *pRenderer = m_pPresentationRenderer)
        pRenderer->closeDocument(nFileId);
}

void PluginInnerData::clearRenderCache()
{
    QList<qint64> openIds;
    {
        const QMutexLocker locker(&m_renderCacheLock);
        openIds = m_renderCache.keys();
        m_renderCache.clear();
    }
    IPresentationRenderer *pRenderer = m_pPresentationRenderer;
    if (pRenderer == nullptr)
        return;
    for (const qint64 nId : qAsConst(openIds))
        pRenderer->closeDocument(nId);
}

void PluginInnerData::releaseOpenRenderers()
{
    closeAllPresentations();
}

bool PluginInnerData::openPresentation(qint64 nFileId, const QString &path, const std::function<bool()> &isUnwanted)
{
    const QReadLocker rendererLocker(&m_rendererLock);
    IPresentationRenderer *pRenderer = m_pPresentationRenderer;
    RenderEntry entry;
    if (pRenderer != nullptr && !(isUnwanted && isUnwanted()))
        entry.bOpen = pRenderer->openDocument(nFileId, path);
    entry.nPageCount = entry.bOpen ? qMax(0, pRenderer->pageCount(nFileId)) : 0;
    qint64 nClosedId = nFileId;
    bool bClose = false;
    {
        const QMutexLocker locker(&m_renderCacheLock);
        if (isUnwanted && isUnwanted()) {
            // Whoever waits for this load closes what it left; the same document may be another load's by now.
            bClose = entry.bOpen && !m_renderCache.contains(nFileId) && !m_pendingPresentations.contains(nFileId);
            entry.bOpen = false;
        } else {
            entry.nSerial = ++m_nLastRenderSerial;
            m_renderCache.insert(nFileId, entry);
            bClose = m_renderCache.size() > MostOpenPresentations;
            if (bClose) {
                const auto it =
                    std::min_element(m_renderCache.begin(), m_renderCache.end(),
                                     [](const RenderEntry &a, const RenderEntry &b) { return a.nSerial < b.nSerial; });
                nClosedId = it.key();
                m_renderCache.erase(it);
            }
        }
    }
    if (bClose)
        pRenderer->closeDocument(nClosedId);
    return entry.bOpen;
}

QImage PluginInnerData::renderPresentationPage(qint64 nFileId, int nPage, const QSize &pixelSize) const
{
    const QReadLocker rendererLocker(&m_rendererLock);
    IPresentationRenderer *pRenderer = m_pPresentationRenderer;
    return pRenderer != nullptr ? pRenderer->renderPage(nFileId, nPage, pixelSize) : QImage();
}

void PluginInnerData::closeAllPresentations()
{
    if (IPresentationRenderer *pRenderer = m_pPresentationRenderer)
        pRenderer->closeAllDocuments();
}

void PluginInnerData::detachRenderer()
{
    IPresentationRenderer *pRenderer = m_pPresentationRenderer.exchange(nullptr);
    if (pRenderer != nullptr)
        pRenderer->closeAllDocuments();
    // A task that was just about to begin something when all was cancelled is cancelled again.
    while (!m_rendererLock.tryLockForWrite(DetachRetryMsec)) {
        if (pRenderer != nullptr)
            pRenderer->closeAllDocuments();
    }
    m_rendererLock.unlock();
    const QMutexLocker locker(&m_renderCacheLock);
    m_renderCache.clear();
}
