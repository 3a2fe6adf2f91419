#include "Gate.h"

Gate::~Gate()
{
    // A test that failed early must not leave a worker behind that waits for ever.
    std::unique_lock<std::mutex> lock(m_mutex);
    m_open = true;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return m_waiting == 0; });
}

void Gate::close()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_open = false;
}

void Gate::open()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_open = true;
    m_changed.notify_all();
}

void Gate::wake()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_changed.notify_all();
}

void Gate::pass(const std::function<bool()> &isCancelled)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    ++m_waiting;
    m_changed.wait(lock, [&] { return m_open || (isCancelled && isCancelled()); });
    --m_waiting;
    m_changed.notify_all();
}

int Gate::waiting() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_open ? 0 : m_waiting;
}
