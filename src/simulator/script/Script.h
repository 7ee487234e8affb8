#pragma once

#include "simulator/base/Scenario.h"

namespace sim {

// A scenario's timed events. Its clock runs only while a console is connected: no event is to happen before
// there is somebody to see it.
class Script {
public:
    explicit Script(std::vector<TimedEvent> events);

    void Run(TimePoint now);
    void Pause(TimePoint now);

    Deadline NextDeadline() const;
    // The actions whose time has come, in order; those of the same time in the order of the scenario.
    std::vector<Action> TakeDue(TimePoint now);

private:
    struct Planned {
        Milliseconds at;
        std::size_t event; // index into m_events
    };

    Milliseconds Elapsed(TimePoint now) const;
    void Plan(const Planned& planned);

    std::vector<TimedEvent> m_events;
    std::vector<Planned> m_planned; // by time, the next one last
    bool m_running = false;
    TimePoint m_runningSince{};
    Milliseconds m_elapsedBefore{};
};

} // namespace sim
