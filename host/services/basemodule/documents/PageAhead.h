#pragma once

#include "services/basemodule/documents/PageDocument.h"

#include <QThreadPool>
#include <QVector>

#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>

namespace basemodule {

class DecodeGate;

/**
 * Keeps the pages around the one on show, and renders the next and the previous one at the sizes it was shown at before
 * anybody asks for them, within a byte budget.
 *
 * Owner: the presentation renderer. Thread: any; `take` waits where the page is being rendered at that moment.
 */
class PageAhead {
public:
    using DocumentPointer = std::shared_ptr<PageDocument>;

    explicit PageAhead(DecodeGate &gate);
    ~PageAhead();

    /** The page where it is there. Otherwise whatever is rendered ahead makes room for the one who asks. */
    QImage take(const DocumentPointer &pDocument, int nPage, const QSize &pixelSize);

    /** This page is on show now: it is kept, and its neighbours are next. */
    void show(const DocumentPointer &pDocument, int nPage, const QSize &pixelSize, const QImage &image);

    /** The document was closed; it is given back in the background. */
    void drop(DocumentPointer pDocument);

    void setBudget(qint64 nBytes);
    qint64 heldBytes() const;

    /** Whether the page is held now. */
    bool holds(const DocumentPointer &pDocument, int nPage, const QSize &pixelSize) const;

    /** Whether nothing is being rendered ahead. */
    bool isIdle() const;

    void shutdown();

private:
    struct Place {
        const PageDocument *pDocument = nullptr;
        int nPage = -1;
        QSize pixelSize;

        bool operator==(const Place &other) const
        {
            return pDocument == other.pDocument && nPage == other.nPage && pixelSize == other.pixelSize;
        }
    };
    struct Entry {
        Place place;
        QImage image;
    };

    void work();
    /** The neighbour to render; its page is -1 when all is done. */
    Place nextPlace() const;
    const Entry *find(const Place &place) const;
    void insert(const Place &place, const QImage &image);
    qint64 heldBytesLocked() const;
    int distance(const Place &place) const;

    DecodeGate &m_gate;
    QThreadPool m_pool;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::list<Entry> m_entries;
    DocumentPointer m_document; ///< Of the page on show.
    Place m_shown;
    QVector<QSize> m_sizes; ///< Asked for the page on show: its own, as a rule, then that of the zoom.
    int m_nDirection = 1;
    Place m_current;        ///< Being rendered.
    QVector<Place> m_tried; ///< Since the last page was shown, so that what does not fit is not rendered again.
    std::atomic_bool m_bYield{false};
    bool m_bWorking = false;
    bool m_bStop = false;
    qint64 m_nBudget = qint64(64) << 20;
};

} // namespace basemodule
