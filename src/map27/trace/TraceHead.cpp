#include "map27/trace/TraceHead.h"

#include "map27/codec/Messages.h"

namespace map27 {

namespace {

bool IsAboutItself(const Octets& message)
{
    switch (message[0]) {
    case Type::Personality:
    case Type::Numbering:
    case Type::Settings:
    case Type::OperatingCondition:
    case Type::NetworkInfo:
        return true;
    default:
        return false;
    }
}

} // namespace

void TraceHead::Take(const TraceEntry& entry)
{
    if (entry.kind == TraceEntry::Kind::Opened) {
        m_opened = entry;
        m_said.clear();
    } else if (entry.kind == TraceEntry::Kind::Closed) {
        m_opened.reset();
    }
    Octets message = m_observer.Take(entry).message;
    if (!message.empty() && entry.direction == Direction::FromRadio && IsAboutItself(message))
        m_said[message[0]] = std::move(message);
}

std::vector<TraceEntry> TraceHead::Lines(TimePoint at) const
{
    if (!m_opened)
        return {};
    std::vector<TraceEntry> lines{{.kind = TraceEntry::Kind::Continued,
                                   .at = at,
                                   .port = m_opened->port,
                                   .number = m_opened->number,
                                   .link = m_observer.Link().Standing()}};
    for (const auto& [type, message] : m_said)
        lines.push_back(
            {.kind = TraceEntry::Kind::Said, .at = at, .direction = Direction::FromRadio, .octets = message});
    return lines;
}

} // namespace map27
