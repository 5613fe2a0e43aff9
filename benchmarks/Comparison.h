#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace kestrova {

/// Times two ways of handling the same bytes, in turns, so that what else the machine does meets
/// both alike. Prints the median of each, how it spreads, and ours : theirs as a ratio of speeds.
class Comparison
{
public:
    Comparison(int rounds, double megabytes) : m_rounds(rounds), m_megabytes(megabytes) {}

    void run(const char *ourName, const std::function<void()> &ours, const char *theirName,
             const std::function<void()> &theirs) const
    {
        std::vector<double> ourSeconds;
        std::vector<double> theirSeconds;
        for (int round = 0; round < m_rounds; ++round) {
            ourSeconds.push_back(secondsOf(ours));
            theirSeconds.push_back(secondsOf(theirs));
        }
        const double ourMedian = print(ourName, ourSeconds);
        const double theirMedian = print(theirName, theirSeconds);
        std::printf("speed ratio          %7.3f\n", theirMedian / ourMedian);
    }

    /// The most memory that this process has used so far.
    static void printPeakMemory()
    {
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("our peak memory      %7.1f MB\n", static_cast<double>(usage.ru_maxrss) / 1024);
    }

private:
    static double secondsOf(const std::function<void()> &work)
    {
        const auto begin = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }

    double print(const char *name, std::vector<double> seconds) const
    {
        std::sort(seconds.begin(), seconds.end());
        const double median = seconds[seconds.size() / 2];
        std::printf("%-20s %10.6f s (%.6f to %.6f)  %6.0f MB/s\n", name, median, seconds.front(),
                    seconds.back(), m_megabytes / median);
        return median;
    }

    const int m_rounds;
    const double m_megabytes;
};

} // namespace kestrova
