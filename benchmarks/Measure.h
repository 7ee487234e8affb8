#pragma once

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <vector>

// Times of two ways to do the same, taken in turn so that a machine that slows down slows both; the ratio of
// the medians is what counts.
struct Times {
    double bare = 0; // milliseconds
    double ours = 0;

    double Ratio() const { return ours / bare; }
};

inline double MillisecondsOf(clockid_t clock, const std::function<void()>& act)
{
    const auto now = [clock] {
        timespec time{};
        clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    };
    const double start = now();
    act();
    return now() - start;
}

// Of the processor's time that this thread used: other programs do not count.
inline double Milliseconds(const std::function<void()>& act)
{
    return MillisecondsOf(CLOCK_THREAD_CPUTIME_ID, act);
}

inline Times CompareBy(clockid_t clock, const std::function<void()>& bare, const std::function<void()>& ours,
                       int rounds)
{
    std::vector<double> bareTimes;
    std::vector<double> ourTimes;
    for (int round = 0; round < rounds; ++round) {
        bareTimes.push_back(MillisecondsOf(clock, bare));
        ourTimes.push_back(MillisecondsOf(clock, ours));
    }
    const auto median = [](std::vector<double>& times) {
        std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2),
                         times.end());
        return times[times.size() / 2];
    };
    return {median(bareTimes), median(ourTimes)};
}

inline Times Compare(const std::function<void()>& bare, const std::function<void()>& ours, int rounds = 21)
{
    return CompareBy(CLOCK_THREAD_CPUTIME_ID, bare, ours, rounds);
}

// With what is waited for, a disk or a server.
inline Times CompareClock(const std::function<void()>& bare, const std::function<void()>& ours,
                          int rounds = 21)
{
    return CompareBy(CLOCK_MONOTONIC, bare, ours, rounds);
}
