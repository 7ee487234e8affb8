#include "simulator/script/Script.h"

#include <algorithm>

namespace sim {

Script::Script(std::vector<TimedEvent> events) : m_events(std::move(events))
{
    for (std::size_t i = 0; i < m_events.size(); ++i)
        Plan({m_events[i].at, i});
}

void Script::Run(TimePoint now)
{
    if (m_running)
        return;
    m_running = true;
    m_runningSince = now;
}

void Script::Pause(TimePoint now)
{
    m_elapsedBefore = Elapsed(now);
    m_running = false;
}

Deadline Script::NextDeadline() const
{
    if (!m_running || m_planned.empty())
        return std::nullopt;
    return m_runningSince + (m_planned.back().at - m_elapsedBefore);
}

std::vector<Action> Script::TakeDue(TimePoint now)
{
    std::vector<Action> due;
    while (m_running && !m_planned.empty() && m_planned.back().at <= Elapsed(now)) {
        const Planned planned = m_planned.back();
        m_planned.pop_back();
        const TimedEvent& event = m_events[planned.event];
        due.push_back(event.action);
        if (event.every > Milliseconds(0))
            Plan({planned.at + event.every, planned.event});
    }
    return due;
}

Milliseconds Script::Elapsed(TimePoint now) const
{
    return m_running ? m_elapsedBefore + (now - m_runningSince) : m_elapsedBefore;
}

void Script::Plan(const Planned& planned)
{
    const auto isLater = [](const Planned& a, const Planned& b) {
        return a.at != b.at ? a.at > b.at : a.event > b.event;
    };
    m_planned.insert(std::ranges::upper_bound(m_planned, planned, isLater), planned);
}

} // namespace sim
