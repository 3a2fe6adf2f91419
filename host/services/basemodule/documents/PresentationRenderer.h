#pragma once

#include "interfaces/services/IPresentationRenderer.h"
#include "services/basemodule/decode/PictureReader.h"
#include "services/basemodule/documents/PageAhead.h"

#include <QHash>
#include <QMutex>

#include <atomic>
#include <list>
#include <memory>

namespace basemodule {

class DecodeGate;
class DocumentConverter;

/**
 * The page renderer that previews know. An open document is a converted copy: the file itself is in nobody's way, and
 * what happens to it while its pages are looked at shows when it is opened the next time.
 *
 * Owner: the base module. Thread: any; openDocument and renderPage wait, the others do not.
 */
class PresentationRenderer final : public IPresentationRenderer {
public:
    PresentationRenderer(DecodeGate &gate, DocumentConverter &converter);
    ~PresentationRenderer();

    bool openDocument(qint64 nFileId, const QString &path) override;
    int pageCount(qint64 nFileId) override;
    QImage renderPage(qint64 nFileId, int nPage, const QSize &pixelSize) override;
    void closeDocument(qint64 nFileId) override;
    void closeAllDocuments() override;

    /** Closes everything; nothing can be opened afterwards. */
    void shutdown();

    /** For tests: what is held ready. */
    PageAhead &ahead() { return m_ahead; }
    int openDocuments() const;

private:
    struct Opening {
        qint64 nFileId = 0;
        std::shared_ptr<std::atomic_bool> closed;
    };
    struct Document {
        FileKey key;
        std::shared_ptr<PageDocument> pages;
    };

    std::shared_ptr<PageDocument> load(const QString &path, const std::atomic_bool &closed);
    void close(Document document);

    DecodeGate &m_gate;
    DocumentConverter &m_converter;
    PageAhead m_ahead;
    mutable QMutex m_mutex;
    QHash<qint64, Document> m_documents;
    std::list<Opening> m_openings;
    bool m_bStop = false;
};

} // namespace basemodule
