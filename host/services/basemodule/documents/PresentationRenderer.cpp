#include "services/basemodule/documents/PresentationRenderer.h"

#include "services/basemodule/cache/DecodeGate.h"
#include "services/basemodule/documents/DocumentConverter.h"

#include <utility>

namespace basemodule {

PresentationRenderer::PresentationRenderer(DecodeGate &gate, DocumentConverter &converter)
    : m_gate(gate)
    , m_converter(converter)
    , m_ahead(gate)
{
}

PresentationRenderer::~PresentationRenderer()
{
    shutdown();
}

bool PresentationRenderer::openDocument(qint64 nFileId, const QString &path)
{
    const FileKey key = fileKey(path);
    const auto closed = std::make_shared<std::atomic_bool>(false);
    {
        const QMutexLocker lock(&m_mutex);
        if (m_bStop)
            return false;
        if (m_documents.contains(nFileId) && m_documents.value(nFileId).key == key)
            return true;
        m_openings.push_back({nFileId, closed});
    }
    const auto pages = key.isNull() ? nullptr : load(path, *closed);
    const QMutexLocker lock(&m_mutex);
    m_openings.remove_if([&](const Opening &opening) { return opening.closed == closed; });
    if (!pages || *closed)
        return false;
    if (m_documents.contains(nFileId)) {
        if (m_documents.value(nFileId).key == key)
            return true;                  // somebody else was quicker, and may be reading it
        close(m_documents.take(nFileId)); // as the file was before it changed
    }
    m_documents.insert(nFileId, {key, pages});
    return true;
}

std::shared_ptr<PageDocument> PresentationRenderer::load(const QString &path, const std::atomic_bool &closed)
{
    const auto proceed = [&closed] {
        return !closed;
    };
    // A converted copy that something damaged on disk is made anew, once.
    for (int nTry = 0; nTry < 2; ++nTry) {
        const Conversion conversion = m_converter.convert(path, Extent::Whole, DocumentWait::Reader, proceed);
        if (conversion.outcome != Conversion::Done)
            return {};
        auto pages = PageDocument::open(conversion.pdf);
        if (pages)
            return pages;
        m_converter.discard(conversion.pdf);
    }
    return {};
}

int PresentationRenderer::pageCount(qint64 nFileId)
{
    const QMutexLocker lock(&m_mutex);
    const auto found = m_documents.constFind(nFileId);
    return found == m_documents.constEnd() ? 0 : found->pages->pageCount();
}

QImage PresentationRenderer::renderPage(qint64 nFileId, int nPage, const QSize &pixelSize)
{
    Document document;
    {
        const QMutexLocker lock(&m_mutex);
        document = m_documents.value(nFileId);
    }
    if (!document.pages)
        return {};
    const QSize size = pixelSize.isEmpty() ? QSize() : pixelSize;
    document.pages->expect(nPage);
    QImage image = m_ahead.take(document.pages, nPage, size);
    if (image.isNull()) {
        const DecodeGate::Foreground foreground(m_gate);
        image = document.pages->render(nPage, size, {});
    }
    const QMutexLocker lock(&m_mutex);
    if (document.pages->isAbandoned())
        return {};
    // A page that was left while it was rendered is not the one whose neighbours come next.
    if (!image.isNull() && document.pages->isExpected(nPage))
        m_ahead.show(document.pages, nPage, size, image);
    return image;
}

void PresentationRenderer::close(Document document)
{
    document.pages->abandon();
    m_ahead.drop(std::move(document.pages));
}

void PresentationRenderer::closeDocument(qint64 nFileId)
{
    {
        const QMutexLocker lock(&m_mutex);
        for (const Opening &opening : m_openings) {
            if (opening.nFileId == nFileId)
                *opening.closed = true;
        }
        if (m_documents.contains(nFileId))
            close(m_documents.take(nFileId));
    }
    m_converter.wake();
}

void PresentationRenderer::closeAllDocuments()
{
    {
        const QMutexLocker lock(&m_mutex);
        for (const Opening &opening : m_openings)
            *opening.closed = true;
        for (Document &document : m_documents)
            close(std::move(document));
        m_documents.clear();
    }
    m_converter.wake();
}

int PresentationRenderer::openDocuments() const
{
    const QMutexLocker lock(&m_mutex);
    return m_documents.size();
}

void PresentationRenderer::shutdown()
{
    {
        const QMutexLocker lock(&m_mutex);
        m_bStop = true;
    }
    closeAllDocuments();
    m_ahead.shutdown();
}

} // namespace basemodule
