#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>
#include <vector>

/**
 * Compares two ways of doing the same by their times' ratio, which a busy or slow machine hardly changes: both run in
 * one process, turn by turn, so that whatever slows the machine down slows both.
 *
 *     Ratio ratio("decode, against plain libjpeg", 1.10);   // ours may take 1.10 times as long
 *     ratio.measure([&] { ours(); }, [&] { theirs(); });
 *     return Ratio::allPassed() ? 0 : 1;
 */
class Ratio {
public:
    Ratio(const char *pName, double fTarget, int nRounds = 15)
        : m_pName(pName)
        , m_fTarget(fTarget)
        , m_nRounds(nRounds)
    {
    }

    /** Runs both, prints one line and returns the median of ours / theirs. */
    template <class Ours, class Theirs>
    double measure(Ours ours, Theirs theirs)
    {
        return compare([&ours] { return seconds(ours); }, [&theirs] { return seconds(theirs); });
    }

    /** The same of works that tell their seconds themselves; a negative time is a failure. */
    template <class Ours, class Theirs>
    double compare(Ours ours, Theirs theirs)
    {
        ours(); // caches, lazy loading
        theirs();
        std::vector<double> ratios;
        for (int nRound = 0; nRound < m_nRounds; ++nRound) {
            const bool bOursFirst = nRound % 2 == 0;
            const double fFirst = bOursFirst ? ours() : theirs();
            const double fSecond = bOursFirst ? theirs() : ours();
            const bool bFailed = fFirst < 0.0 || fSecond < 0.0;
            const double fRatio = bOursFirst ? fFirst / fSecond : fSecond / fFirst;
            ratios.push_back(bFailed ? std::numeric_limits<double>::infinity() : fRatio);
        }
        std::sort(ratios.begin(), ratios.end());
        const double fMedian = ratios[ratios.size() / 2];
        report(m_pName, fMedian, m_fTarget);
        return fMedian;
    }

    /** Prints a ratio that was taken elsewhere, against its target. */
    static void report(const char *pName, double fRatio, double fTarget)
    {
        const bool bPassed = fRatio <= fTarget;
        s_bAllPassed = s_bAllPassed && bPassed;
        std::printf("%-56s ratio %6.3f  target <= %.2f  %s\n", pName, fRatio, fTarget, bPassed ? "pass" : "FAIL");
        std::fflush(stdout);
    }

    static bool allPassed() { return s_bAllPassed; }

private:
    /** Seconds for one call, repeated until the clock can tell; at least one call. */
    template <class Work>
    static double seconds(Work &work)
    {
        using Clock = std::chrono::steady_clock;
        const auto begin = Clock::now();
        int nCalls = 0;
        std::chrono::duration<double> taken{};
        do {
            work();
            ++nCalls;
            taken = Clock::now() - begin;
        } while (taken.count() < 0.005);
        return taken.count() / nCalls;
    }

    inline static bool s_bAllPassed = true;

    const char *m_pName;
    double m_fTarget;
    int m_nRounds;
};
