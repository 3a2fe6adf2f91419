#pragma once

#include <QtGlobal>

#include <unistd.h>
#include <utility>

/** Owner of one file descriptor. Any thread. */
class UniqueFd {
public:
    explicit UniqueFd(int nFd = -1)
        : m_nFd(nFd)
    {
    }
    ~UniqueFd() { reset(); }
    UniqueFd(UniqueFd &&other) noexcept
        : m_nFd(std::exchange(other.m_nFd, -1))
    {
    }
    UniqueFd &operator=(UniqueFd &&other) noexcept
    {
        if (this != &other)
            reset(std::exchange(other.m_nFd, -1));
        return *this;
    }
    Q_DISABLE_COPY(UniqueFd)

    bool isValid() const { return m_nFd >= 0; }
    int get() const { return m_nFd; }
    void reset(int nFd = -1)
    {
        if (m_nFd >= 0)
            ::close(m_nFd);
        m_nFd = nFd;
    }

private:
    int m_nFd;
};
