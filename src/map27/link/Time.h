#pragma once

#include <chrono>
#include <optional>

namespace map27 {

using Milliseconds = std::chrono::milliseconds;

// The caller's monotonic time line. It has no now(): the engine never asks for the time, it is told. Any
// epoch will do, as long as one owner uses the same one throughout. TimePoint{Milliseconds{5}} is 5 ms after
// it.
struct Timeline {
    using duration = Milliseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<Timeline>;
    static constexpr bool is_steady = true;
};
using TimePoint = Timeline::time_point;

// When to call OnTime again; empty: nothing is waiting.
using Deadline = std::optional<TimePoint>;

// The earlier of two deadlines.
constexpr Deadline Earlier(Deadline a, Deadline b)
{
    if (!a)
        return b;
    if (!b)
        return a;
    return *a < *b ? a : b;
}

} // namespace map27
