#include "simulator/base/Schedule.h"

#include <algorithm>

namespace sim {

Schedule::Ticket Schedule::After(Milliseconds delay, Action action)
{
    const Ticket ticket{m_now + delay, ++m_lastNumber};
    m_actions.emplace(ticket, std::move(action));
    return ticket;
}

Deadline Schedule::NextDeadline() const
{
    if (m_actions.empty())
        return std::nullopt;
    return m_actions.begin()->first.first;
}

void Schedule::RunUntil(TimePoint now)
{
    while (!m_actions.empty() && m_actions.begin()->first.first <= now) {
        auto due = m_actions.extract(m_actions.begin());
        m_now = std::max(m_now, due.key().first);
        due.mapped()();
    }
    m_now = std::max(m_now, now);
}

void Timer::Start(Milliseconds delay, Schedule::Action action)
{
    Stop();
    m_running = true;
    m_ticket = m_schedule.After(delay, [this, action = std::move(action)] {
        m_running = false;
        action();
    });
}

void Timer::Stop()
{
    if (m_running)
        m_schedule.Cancel(m_ticket);
    m_running = false;
}

} // namespace sim
