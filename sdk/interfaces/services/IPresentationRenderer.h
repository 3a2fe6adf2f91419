#pragma once

#include <QImage>
#include <QSize>
#include <QString>

/**
 * The host's renderer for presentations and other paged documents. Documents are told apart by file id, so several
 * may be open at once. Thread: any; openDocument and renderPage may take long and are called from workers only.
 *
 * Owner: the base-module plug-in; it stays valid until the host drops the plug-in.
 */
class IPresentationRenderer {
public:
    /** Opens a document; false when it cannot be read. Opening an open document again succeeds at once. */
    virtual bool openDocument(qint64 nFileId, const QString &path) = 0;

    /** Number of pages of an open document; 0 when it is not open. Answers at once. */
    virtual int pageCount(qint64 nFileId) = 0;

    /**
     * Renders page nPage (from 0), as large as fits into `pixelSize` physical pixels; an empty size asks for the
     * page's own size, which previews show as 100 %. Null when it cannot be rendered. A page that is zoomed far may be
     * given up, null as well, when another page of the document is asked for meanwhile.
     */
    virtual QImage renderPage(qint64 nFileId, int nPage, const QSize &pixelSize) = 0;

    /**
     * Closes one document, cancelling what still runs for it: that ends soon, with false or null. Returns at once, in
     * any thread. Ids that are not open are ignored.
     */
    virtual void closeDocument(qint64 nFileId) = 0;

    /** Closes every document in the same way. */
    virtual void closeAllDocuments() = 0;

protected:
    ~IPresentationRenderer() = default;
};
