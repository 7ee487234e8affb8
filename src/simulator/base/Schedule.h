#pragma once

#include "map27/link/Time.h"

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

namespace sim {

using map27::Deadline;
using map27::Milliseconds;
using map27::TimePoint;

// What is to happen later. It has no clock: its owner says what time it is.
class Schedule {
public:
    using Action = std::function<void()>;
    using Ticket = std::pair<TimePoint, std::uint64_t>;

    // The time of the action that is running, or else the last time given.
    TimePoint Now() const { return m_now; }

    Ticket After(Milliseconds delay, Action action);
    void Cancel(const Ticket& ticket) { m_actions.erase(ticket); }

    Deadline NextDeadline() const;

    // Runs what is due, in order of time, and what those actions plan for the same time. Time never runs
    // backwards here: an earlier `now` counts as the latest one.
    void RunUntil(TimePoint now);

private:
    TimePoint m_now{};
    std::uint64_t m_lastNumber = 0;
    std::map<Ticket, Action> m_actions;
};

// One thing to happen later, or nothing. Starting it again replaces what was planned; destruction cancels it.
class Timer {
public:
    explicit Timer(Schedule& schedule) : m_schedule(schedule) {}
    ~Timer() { Stop(); }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    void Start(Milliseconds delay, Schedule::Action action);
    void Stop();

private:
    Schedule& m_schedule;
    bool m_running = false;
    Schedule::Ticket m_ticket{};
};

} // namespace sim
