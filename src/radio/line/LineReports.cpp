#include "radio/line/LineReports.h"

quint64 LineReports::Begin()
{
    const std::lock_guard lock(m_mutex);
    m_waiting.clear();
    return ++m_opening;
}

bool LineReports::IsCurrent(quint64 opening) const
{
    const std::lock_guard lock(m_mutex);
    return opening == m_opening;
}

void LineReports::Add(quint64 opening, LineReport report)
{
    {
        const std::lock_guard lock(m_mutex);
        if (opening != m_opening)
            return;
        m_waiting.push_back(std::move(report));
        m_added.notify_all();
    }
    m_wake();
}

std::size_t LineReports::Waiting() const
{
    const std::lock_guard lock(m_mutex);
    return m_waiting.size();
}

std::optional<LineReport> LineReports::First() const
{
    const std::lock_guard lock(m_mutex);
    return m_waiting.empty() ? std::nullopt : std::optional(m_waiting.front());
}

std::optional<LineReport> LineReports::Take()
{
    const std::lock_guard lock(m_mutex);
    if (m_waiting.empty())
        return std::nullopt;
    std::optional<LineReport> first(std::move(m_waiting.front()));
    m_waiting.pop_front();
    return first;
}

void LineReports::AwaitFirst(std::chrono::milliseconds limit) const
{
    std::unique_lock lock(m_mutex);
    m_added.wait_for(lock, limit, [this] { return !m_waiting.empty(); });
}
