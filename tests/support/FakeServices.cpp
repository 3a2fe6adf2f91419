#include "FakeServices.h"

#include <QMetaMethod>

#include <algorithm>

ShortcutRecord FakeShortcuts::shortcut(int nShortcutId) const
{
    return {QString::number(nShortcutId), QString(), keys.value(nShortcutId)};
}

QString FakeCacheManager::cacheKey(const FileInfoPtr &pInfo, const QSize &size) const
{
    return pInfo ? QStringLiteral("%1@%2x%3").arg(pInfo->fileId()).arg(size.width()).arg(size.height()) : QString();
}

int FakeCacheManager::lookup(const QString &cacheKey, QPixmap *pPixmap)
{
    const auto found = pictures.constFind(cacheKey);
    if (found == pictures.constEnd())
        return failed.contains(cacheKey) ? Unavailable : missing;
    if (pPixmap != nullptr)
        *pPixmap = QPixmap::fromImage(*found);
    return Found;
}

ThumbnailRequest FakeCacheManager::createRequest(const FileInfoPtr &pInfo, const QSize &size, double fDpi) const
{
    return {cacheKey(pInfo, size), pInfo, size, fDpi};
}

void FakeCacheManager::submitRequest(const ThumbnailRequest &request)
{
    requests.append(request);
    if (answersAtOnce)
        finishAll();
}

QImage FakeCacheManager::largePicture(const FileInfoPtr &pInfo) const
{
    return pInfo ? largePictures.value(pInfo->fileId()) : QImage();
}

void FakeCacheManager::finish(const QString &cacheKey, const QImage &picture)
{
    if (!picture.isNull())
        pictures.insert(cacheKey, picture);
    Q_EMIT signalLoadPixmapFinished(cacheKey, !picture.isNull());
}

void FakeCacheManager::finishAll()
{
    QImage picture(16, 16, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    const QVector<ThumbnailRequest> asked = requests;
    for (const ThumbnailRequest &request : asked) {
        if (!pictures.contains(request.cacheKey))
            finish(request.cacheKey, picture);
    }
}

bool FakeCacheManager::hasListeners() const
{
    return isSignalConnected(QMetaMethod::fromSignal(&ITSCacheManager::signalLoadPixmapFinished));
}

bool FakeRenderer::openDocument(qint64 nFileId, const QString &)
{
    int nClosings = 0;
    const auto isCancelled = [&] {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_closings.value(nFileId) + m_closings.value(-1) != nClosings;
    };
    change([&] {
        m_openings.append(nFileId);
        nClosings = m_closings.value(nFileId) + m_closings.value(-1);
    });
    openGate.pass(isCancelled);
    const bool bCancelled = isCancelled();
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (bCancelled || m_documents.value(nFileId).pages.isEmpty())
        return false;
    m_open.insert(nFileId);
    return true;
}

int FakeRenderer::pageCount(qint64 nFileId)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_open.contains(nFileId) ? m_documents.value(nFileId).pages.size() : 0;
}

QImage FakeRenderer::renderPage(qint64 nFileId, int nPage, const QSize &pixelSize)
{
    Document document;
    const QString request =
        QStringLiteral("%1:%2 %3x%4").arg(nFileId).arg(nPage).arg(pixelSize.width()).arg(pixelSize.height());
    change([&] { m_rendered.append(request); });
    renderGate.pass();
    change([&] {
        if (m_open.contains(nFileId))
            document = m_documents.value(nFileId);
        document.largestSide = m_largestSide;
    });
    if (nPage < 0 || nPage >= document.pages.size() || document.broken.contains(nPage))
        return {};
    QSize size = document.pages.at(nPage);
    if (!pixelSize.isEmpty())
        size.scale(pixelSize.boundedTo(QSize(document.largestSide, document.largestSide)), Qt::KeepAspectRatio);
    QImage page(size, QImage::Format_RGB32);
    page.fill(pageColor(nPage));
    return page;
}

void FakeRenderer::closeDocument(qint64 nFileId)
{
    change([&] {
        m_open.remove(nFileId);
        ++m_closings[nFileId];
    });
    openGate.wake();
}

void FakeRenderer::closeAllDocuments()
{
    change([&] {
        m_open.clear();
        ++m_closings[-1];
    });
    openGate.wake();
}
