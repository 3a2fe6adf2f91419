#include "services/basemodule/documents/PageAhead.h"

#include "services/basemodule/cache/DecodeGate.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace basemodule {

PageAhead::PageAhead(DecodeGate &gate)
    : m_gate(gate)
{
    m_pool.setMaxThreadCount(1);
}

PageAhead::~PageAhead()
{
    shutdown();
}

QImage PageAhead::take(const DocumentPointer &pDocument, int nPage, const QSize &pixelSize)
{
    const Place place{pDocument.get(), nPage, pixelSize};
    std::unique_lock<std::mutex> lock(m_mutex);
    if (m_current == place)
        m_changed.wait(lock, [&] { return !(m_current == place) || m_bStop; });
    if (const Entry *pEntry = find(place))
        return pEntry->image;
    m_bYield = true;
    lock.unlock();
    m_gate.wakeAll();
    return {};
}

void PageAhead::show(const DocumentPointer &pDocument, int nPage, const QSize &pixelSize, const QImage &image)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_bStop)
        return;
    const bool bSameDocument = m_document == pDocument;
    if (!bSameDocument)
        m_nDirection = 1;
    else if (m_shown.nPage != nPage)
        m_nDirection = nPage > m_shown.nPage ? 1 : -1;
    if (!bSameDocument || m_shown.nPage != nPage)
        m_sizes.clear();
    // The next page is asked for at its own size again, or at that of the zoom.
    if (!m_sizes.contains(pixelSize)) {
        if (m_sizes.size() > 1)
            m_sizes.removeLast();
        m_sizes.append(pixelSize);
    }
    m_document = pDocument;
    m_shown = {pDocument.get(), nPage, pixelSize};
    m_tried.clear();
    insert(m_shown, image);
    m_bYield = false;
    if (!m_bWorking) {
        m_bWorking = true;
        m_pool.start([this] { work(); });
    }
}

void PageAhead::drop(DocumentPointer pDocument)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.remove_if([&](const Entry &entry) { return entry.place.pDocument == pDocument.get(); });
    if (m_current.pDocument == pDocument.get())
        m_bYield = true;
    if (m_document == pDocument) {
        m_document.reset();
        m_shown = {};
    }
    // Taking a large document apart takes longer than a frame.
    if (!m_bStop)
        m_pool.start([pClosed = std::move(pDocument)]() mutable { pClosed.reset(); });
}

void PageAhead::setBudget(qint64 nBytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_nBudget = nBytes;
    m_entries.clear();
}

qint64 PageAhead::heldBytes() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return heldBytesLocked();
}

bool PageAhead::holds(const DocumentPointer &pDocument, int nPage, const QSize &pixelSize) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return find({pDocument.get(), nPage, pixelSize}) != nullptr;
}

bool PageAhead::isIdle() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return !m_bWorking;
}

void PageAhead::shutdown()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bStop = true;
        m_bYield = true;
        m_document.reset();
    }
    m_changed.notify_all();
    m_gate.wakeAll();
    m_pool.waitForDone();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.clear();
}

void PageAhead::work()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        const Place place = m_bStop || m_bYield ? Place() : nextPlace();
        if (place.nPage < 0)
            break;
        const DocumentPointer pDocument = m_document;
        m_current = place;
        m_tried.append(place);
        lock.unlock();
        QImage image;
        if (m_gate.waitForTurn(m_bYield))
            image = pDocument->render(place.nPage, place.pixelSize, [this] { return m_bYield.load(); });
        lock.lock();
        m_current = {};
        // A document that was closed meanwhile keeps nothing.
        if (!image.isNull() && m_document == pDocument)
            insert(place, image);
        m_changed.notify_all();
    }
    m_bWorking = false;
}

PageAhead::Place PageAhead::nextPlace() const
{
    if (!m_document)
        return {};
    for (const int nStep : {m_nDirection, -m_nDirection}) {
        for (const QSize &size : m_sizes) {
            const Entry *pShown = find({m_shown.pDocument, m_shown.nPage, size});
            const Place place{m_shown.pDocument, m_shown.nPage + nStep, size};
            // A page that is zoomed far is worth more than its neighbours, which are turned to at the size of the
            // window.
            const qint64 nRoom = m_nBudget / (nStep == m_nDirection ? 2 : 3);
            const bool bFits = pShown && pShown->image.sizeInBytes() <= nRoom;
            const bool bExists = place.nPage >= 0 && place.nPage < m_document->pageCount();
            if (bExists && bFits && !find(place) && !m_tried.contains(place))
                return place;
        }
    }
    return {};
}

const PageAhead::Entry *PageAhead::find(const Place &place) const
{
    const auto it =
        std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry &entry) { return entry.place == place; });
    return it == m_entries.end() ? nullptr : &*it;
}

int PageAhead::distance(const Place &place) const
{
    if (place.pDocument != m_shown.pDocument)
        return std::numeric_limits<int>::max();
    // Of two pages as far away the one in the direction of travel stays, and a size in use before others.
    const int nSteps = place.nPage - m_shown.nPage;
    const int nBehind = nSteps * m_nDirection < 0 ? 1 : 0;
    return 4 * std::abs(nSteps) + 2 * nBehind + (m_sizes.contains(place.pixelSize) ? 0 : 1);
}

void PageAhead::insert(const Place &place, const QImage &image)
{
    if (find(place) || image.sizeInBytes() > m_nBudget)
        return;
    m_entries.push_back({place, image});
    while (heldBytesLocked() > m_nBudget) {
        m_entries.erase(std::max_element(m_entries.begin(), m_entries.end(), [this](const Entry &a, const Entry &b) {
            return distance(a.place) < distance(b.place);
        }));
    }
}

qint64 PageAhead::heldBytesLocked() const
{
    qint64 nBytes = 0;
    for (const Entry &entry : m_entries)
        nBytes += entry.image.sizeInBytes();
    return nBytes;
}

} // namespace basemodule
