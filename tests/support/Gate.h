#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>

/**
 * Holds worker threads up until the test lets them go on, so that "slow" needs no sleeping.
 *
 * Owner: the fake that has it, or the test. Thread: any. A gate starts open.
 */
class Gate {
public:
    Gate() = default;
    ~Gate();
    Gate(const Gate &) = delete;
    Gate &operator=(const Gate &) = delete;

    void close();
    void open();

    /** Returns once the gate is open, or when it is woken and need not wait any more. */
    void pass(const std::function<bool()> &isCancelled = {});
    void wake();

    /** Number of threads that stand before the closed gate: QTRY_COMPARE(gate.waiting(), 1). */
    int waiting() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_open = true;
    int m_waiting = 0;
};
