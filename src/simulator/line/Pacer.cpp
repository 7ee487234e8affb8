#include "simulator/line/Pacer.h"

namespace sim {

namespace {

constexpr std::uint64_t MicrosecondsOfTenBits = 10'000'000;

}

void Pacer::Push(map27::OctetSpan octets, TimePoint now)
{
    if (m_octets.empty()) {
        // Times are whole milliseconds: less than one since the last octet does not count as a gap, or every
        // frame would lose half a millisecond of line time.
        const Microseconds free = ArrivalOf(m_taken);
        const Microseconds given = now.time_since_epoch();
        m_rowBegin = given - free < std::chrono::milliseconds(1) ? free : given;
        m_taken = 0;
    }
    m_octets.insert(m_octets.end(), octets.begin(), octets.end());
}

map27::Octets Pacer::Take(TimePoint now)
{
    std::size_t count = 0;
    while (count < m_octets.size() && ArrivalOf(m_taken + count + 1) <= now.time_since_epoch())
        ++count;
    const auto end = m_octets.begin() + static_cast<std::ptrdiff_t>(count);
    map27::Octets ready(m_octets.begin(), end);
    m_octets.erase(m_octets.begin(), end);
    m_taken += count;
    return ready;
}

Deadline Pacer::NextDeadline() const
{
    if (m_octets.empty())
        return std::nullopt;
    return TimePoint(std::chrono::ceil<map27::Milliseconds>(ArrivalOf(m_taken + 1)));
}

Pacer::Microseconds Pacer::ArrivalOf(std::size_t octets) const
{
    if (m_rate == 0)
        return m_rowBegin;
    return m_rowBegin + Microseconds(MicrosecondsOfTenBits * octets / m_rate);
}

} // namespace sim
