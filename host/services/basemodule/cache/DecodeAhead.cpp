#include "services/basemodule/cache/DecodeAhead.h"

#include <QThread>

#include <algorithm>
#include <utility>

namespace basemodule {

/** Paces the background decode and keeps it within the budget. */
class DecodeAhead::Control : public DecodeControl {
public:
    explicit Control(DecodeAhead &owner)
        : m_owner(owner)
    {
    }

    bool accept(qint64 nBytes) override { return proceed() && m_owner.reserve(nBytes); }
    bool proceed() override { return m_owner.m_gate.waitForTurn(m_owner.m_bCancelCurrent, &m_owner.m_bUrgent); }

private:
    DecodeAhead &m_owner;
};

DecodeAhead::DecodeAhead(DecodeGate &gate, Resolve resolve, DocumentConverter *pDocuments)
    : m_gate(gate)
    , m_resolve(std::move(resolve))
    , m_pDocuments(pDocuments)
{
}

DecodeAhead::~DecodeAhead()
{
    shutdown();
}

void DecodeAhead::setFiles(const QStringList &paths)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_bStop)
            return;
        m_names = paths;
        m_doneNames.clear();
        for (auto it = m_entries.begin(); it != m_entries.end();) {
            const auto current = it++;
            if (isDroppable(*current))
                drop(current);
        }
        if (!m_currentName.isEmpty() && !m_names.contains(m_currentName) && !m_bUrgent)
            m_bCancelCurrent = true;
        if (m_nBudget > 0 && !m_names.isEmpty())
            startThread();
    }
    m_gate.wakeAll();
    m_changed.notify_all();
}

void DecodeAhead::setBudget(qint64 nBytes)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_nBudget = std::max<qint64>(0, nBytes);
        m_doneNames.clear();
        while (!m_entries.empty() && heldBytesLocked() > m_nBudget)
            drop(std::prev(m_entries.end()));
        if (m_nBudget == 0 && !m_bUrgent)
            m_bCancelCurrent = true;
        if (m_nBudget > 0 && !m_names.isEmpty() && !m_bStop)
            startThread();
    }
    m_gate.wakeAll();
    m_changed.notify_all();
}

DecodedPicture DecodeAhead::take(const FileKey &key)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_currentKey.isNull() && m_currentKey == key && !m_bCancelCurrent) {
        m_bUrgent = true;
        lock.unlock();
        m_gate.wakeAll();
        lock.lock();
        m_changed.wait(lock, [&] { return !(m_currentKey == key) || m_bStop; });
    }
    Entry *pEntry = find(key);
    if (!pEntry)
        return DecodedPicture();
    m_shownKey = key;
    return pEntry->picture;
}

void DecodeAhead::keepShown(const FileKey &key, const DecodedPicture &picture)
{
    std::vector<DecodedPicture> freed;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_bStop || find(key))
        return;
    m_shownKey = key;
    for (auto it = m_entries.begin(); it != m_entries.end();) {
        const auto current = it++;
        if (isDroppable(*current)) {
            freed.push_back(std::move(current->picture));
            m_entries.erase(current);
        }
    }
    if (heldBytesLocked() + picture.byteCount() <= m_nBudget)
        m_entries.push_back(Entry{QString(), key, picture});
}

void DecodeAhead::shutdown()
{
    std::unique_ptr<QThread> thread;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bStop = true;
        m_bCancelCurrent = true;
        thread = std::move(m_thread);
    }
    m_gate.wakeAll();
    m_changed.notify_all();
    if (thread)
        thread->wait();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.clear();
    m_dropped.clear();
}

qint64 DecodeAhead::heldBytes() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return heldBytesLocked();
}

bool DecodeAhead::holds(const FileKey &key) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::any_of(m_entries.begin(), m_entries.end(), [&](const Entry &entry) { return entry.key == key; });
}

void DecodeAhead::startThread()
{
    if (!m_thread) {
        m_thread.reset(QThread::create([this] { run(); }));
        m_thread->setObjectName(QStringLiteral("decode ahead"));
        m_thread->start(QThread::LowPriority);
    }
}

void DecodeAhead::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_bStop) {
        if (!m_dropped.empty()) {
            std::vector<DecodedPicture> freed;
            freed.swap(m_dropped);
            lock.unlock();
            freed.clear();
            lock.lock();
            continue;
        }
        const QString name = nextName();
        if (name.isEmpty()) {
            m_changed.wait(lock);
            continue;
        }
        m_currentName = name;
        m_bCancelCurrent = false;
        m_bUrgent = false;
        m_doneNames.insert(name);
        lock.unlock();
        decode(name);
        lock.lock();
        m_currentName.clear();
        m_currentKey = FileKey();
        m_bUrgent = false;
        m_changed.notify_all();
    }
}

QString DecodeAhead::nextName() const
{
    if (m_nBudget <= 0)
        return QString();
    for (const QString &name : m_names) {
        if (!m_doneNames.contains(name))
            return name;
    }
    return QString();
}

void DecodeAhead::decode(const QString &name)
{
    if (!m_gate.waitForTurn(m_bCancelCurrent, &m_bUrgent))
        return;
    const FileKey key = fileKey(m_resolve(name));
    if (key.isNull())
        return;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (auto it = m_entries.begin(); it != m_entries.end();) {
            const auto current = it++;
            // The file changed since it was decoded ahead.
            if (current->name == name && !(current->key == key))
                drop(current);
        }
        if (Entry *pEntry = find(key)) {
            pEntry->name = name;
            return;
        }
        m_currentKey = key;
    }
    Control control(*this);
    DecodeRequest request;
    request.control = &control;
    request.documents = m_pDocuments;
    DecodeResult result = readPicture(key.path, request);
    const FileKey keyNow = fileKey(key.path);
    const std::lock_guard<std::mutex> lock(m_mutex);
    // A file that changed while it was read belongs to neither state.
    if (!result.picture.isNull() && keyNow == key && !m_bCancelCurrent && !find(key))
        m_entries.push_back(Entry{name, key, std::move(result.picture)});
}

bool DecodeAhead::reserve(qint64 nBytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (nBytes > m_nBudget || find(m_currentKey))
        return false;
    while (heldBytesLocked() + nBytes > m_nBudget) {
        // What was shown goes first, then what is less probable than this one.
        const auto least = std::max_element(m_entries.begin(), m_entries.end(), [&](const Entry &a, const Entry &b) {
            return rankOf(a.name) < rankOf(b.name);
        });
        if (least == m_entries.end() || rankOf(least->name) <= rankOf(m_currentName))
            return false;
        drop(least);
    }
    return true;
}

int DecodeAhead::rankOf(const QString &name) const
{
    const int nRank = m_names.indexOf(name);
    return nRank < 0 ? m_names.size() : nRank;
}

qint64 DecodeAhead::heldBytesLocked() const
{
    qint64 nBytes = 0;
    for (const Entry &entry : m_entries)
        nBytes += entry.picture.byteCount();
    return nBytes;
}

bool DecodeAhead::isDroppable(const Entry &entry) const
{
    return !m_names.contains(entry.name) && !(entry.key == m_shownKey);
}

DecodeAhead::Entry *DecodeAhead::find(const FileKey &key)
{
    const auto it = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry &e) { return e.key == key; });
    return it == m_entries.end() ? nullptr : &*it;
}

void DecodeAhead::drop(std::list<Entry>::iterator it)
{
    m_dropped.push_back(std::move(it->picture));
    m_entries.erase(it);
}

} // namespace basemodule
