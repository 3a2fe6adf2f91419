#pragma once

#include <QtGlobal>

#include <thread>

/**
 * Does work on the rows of a picture in two halves at once, where there is enough of it to be worth a thread. The work
 * gets the first row and the one behind the last, and must not care which half comes first. For worker threads.
 */
template <typename Work>
void forRowsInParallel(int nRows, qint64 nBytes, Work work)
{
    constexpr qint64 WorthAThread = 8 * 1024 * 1024;
    if (nBytes < WorthAThread || nRows < 2 || std::thread::hardware_concurrency() < 2) {
        work(0, nRows);
        return;
    }
    const int nHalf = nRows / 2;
    std::thread other([&work, nHalf] { work(0, nHalf); });
    work(nHalf, nRows);
    other.join();
}
