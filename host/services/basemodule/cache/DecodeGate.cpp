#include "services/basemodule/cache/DecodeGate.h"

namespace basemodule {

DecodeGate::Foreground::Foreground(DecodeGate &gate)
    : m_gate(gate)
{
    const std::lock_guard<std::mutex> lock(m_gate.m_mutex);
    ++m_gate.m_nForeground;
}

DecodeGate::Foreground::~Foreground()
{
    {
        const std::lock_guard<std::mutex> lock(m_gate.m_mutex);
        --m_gate.m_nForeground;
    }
    m_gate.m_changed.notify_all();
}

bool DecodeGate::waitForTurn(const std::atomic_bool &cancelled, const std::atomic_bool *pUrgent)
{
    const auto mayPass = [&] {
        return cancelled || m_nForeground == 0 || (pUrgent && *pUrgent);
    };
    if (!mayPass()) {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, mayPass);
    }
    return !cancelled;
}

void DecodeGate::wakeAll()
{
    // Taking the lock keeps a waiter from missing the change between its test and its sleep.
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
    }
    m_changed.notify_all();
}

} // namespace basemodule
