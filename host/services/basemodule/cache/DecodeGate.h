#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace basemodule {

/**
 * Lets the picture that somebody waits for go first: background decodes pause between strips while a foreground
 * decode runs. Shared by all workers of the base module; any thread.
 */
class DecodeGate {
public:
    /** Holds background work back while it lives. */
    class Foreground {
    public:
        explicit Foreground(DecodeGate &gate);
        ~Foreground();
        Foreground(const Foreground &) = delete;
        Foreground &operator=(const Foreground &) = delete;

    private:
        DecodeGate &m_gate;
    };

    /**
     * Blocks background work until it may go on. False: it was cancelled. `pUrgent`, where given, lets work pass
     * that the foreground itself waits for.
     */
    bool waitForTurn(const std::atomic_bool &cancelled, const std::atomic_bool *pUrgent = nullptr);

    /** After a flag changed that somebody may be waiting on. */
    void wakeAll();

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::atomic_int m_nForeground{0};
};

} // namespace basemodule
