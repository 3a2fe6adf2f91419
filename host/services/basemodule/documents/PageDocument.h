#pragma once

#include <QImage>
#include <QMutex>
#include <QSize>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>

namespace Poppler {
class Document;
}

namespace basemodule {

/**
 * The pages of one converted document. Renders one page at a time; whoever comes second waits.
 *
 * Owner: shared by those who render. Thread: any.
 */
class PageDocument {
public:
    using Abort = std::function<bool()>;

    /** Null for a file that is no document with pages. */
    static std::shared_ptr<PageDocument> open(const QString &pdfPath);
    ~PageDocument();

    /** Nobody wants its pages any more: what is being rendered is given up. */
    void abandon() { m_bAbandoned = true; }
    bool isAbandoned() const { return m_bAbandoned; }

    /** Somebody waits for this page: what is being rendered of another one at the size of a far zoom is given up. */
    void expect(int nPage) { m_nExpected = nPage; }
    bool isExpected(int nPage) const { return m_nExpected == nPage; }

    int pageCount() const { return m_nPageCount; }

    /**
     * The page in the screen's format, as large as fits into `pixelSize`, or at its own size where that is empty; null
     * when it cannot be rendered, was abandoned, or `wish`, which is asked often meanwhile, says so. What would not fit
     * into memory comes smaller.
     */
    QImage render(int nPage, const QSize &pixelSize, const Abort &wish);

private:
    PageDocument(std::unique_ptr<Poppler::Document> document, int nPageCount);

    const std::unique_ptr<Poppler::Document> m_document;
    const int m_nPageCount;
    QMutex m_mutex;
    std::atomic_bool m_bAbandoned{false};
    std::atomic_int m_nExpected{0};
};

} // namespace basemodule
