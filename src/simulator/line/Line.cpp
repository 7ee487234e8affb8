#include "simulator/line/Line.h"

#include <algorithm>
#include <utility>

namespace sim {

map27::TraceEntry EntryOf(const TracedFrame& frame)
{
    return {.at = frame.at,
            .direction = frame.direction,
            .octets = frame.frame,
            .fault = std::string(frame.fault)};
}

Line::Line(unsigned bitsPerSecond, const FaultSettings& faults, std::uint64_t seed)
    : m_faults(faults, seed),
      m_fromConsole(bitsPerSecond),
      m_fromRadio(bitsPerSecond)
{
}

void Line::PushFromRadio(map27::Octets frame, TimePoint now)
{
    Struck struck = m_faults.Strike(std::move(frame), map27::Direction::FromRadio);
    TracedFrame traced{now, map27::Direction::FromRadio, std::move(struck.sent), struck.fault};
    Hold(m_lateFromRadio, {now + struck.late, std::move(struck.octets), std::move(traced)});
    HandToPacer(now);
}

LineOutput Line::Take(TimePoint now)
{
    LineOutput output;
    TakeFromConsole(now, output);
    HandToRadio(now, output);
    HandToPacer(now);
    TakeFromRadio(now, output);
    return output;
}

Deadline Line::NextDeadline() const
{
    Deadline next = map27::Earlier(m_fromConsole.NextDeadline(), m_fromRadio.NextDeadline());
    if (!m_lateFromConsole.empty())
        next = map27::Earlier(next, m_lateFromConsole.front().due);
    if (!m_lateFromRadio.empty())
        next = map27::Earlier(next, m_lateFromRadio.front().due);
    return next;
}

void Line::Clear()
{
    m_fromConsole.Clear();
    m_fromRadio.Clear();
    m_splitter.Clear();
    m_lateFromConsole.clear();
    m_lateFromRadio.clear();
    m_underWay.clear();
}

void Line::TakeFromConsole(TimePoint now, LineOutput& output)
{
    for (map27::LinePiece& piece : m_splitter.Feed(m_fromConsole.Take(now))) {
        if (!piece.isFrame) {
            Hold(m_lateFromConsole, {now, m_faults.StrikeNoise(std::move(piece.octets)), {}});
            continue;
        }
        Struck struck = m_faults.Strike(std::move(piece.octets), map27::Direction::ToRadio);
        output.traced.push_back({now, map27::Direction::ToRadio, std::move(struck.sent), struck.fault});
        Hold(m_lateFromConsole, {now + struck.late, std::move(struck.octets), {}});
    }
}

void Line::HandToRadio(TimePoint now, LineOutput& output)
{
    while (!m_lateFromConsole.empty() && m_lateFromConsole.front().due <= now) {
        const map27::Octets& octets = m_lateFromConsole.front().octets;
        output.toRadio.insert(output.toRadio.end(), octets.begin(), octets.end());
        m_lateFromConsole.pop_front();
    }
}

void Line::HandToPacer(TimePoint now)
{
    while (!m_lateFromRadio.empty() && m_lateFromRadio.front().due <= now) {
        Late& late = m_lateFromRadio.front();
        m_fromRadio.Push(late.octets, now);
        m_underWay.push_back({std::move(*late.traced), late.octets.size()});
        m_lateFromRadio.pop_front();
    }
}

void Line::TakeFromRadio(TimePoint now, LineOutput& output)
{
    output.toConsole = m_fromRadio.Take(now);
    std::size_t arrived = output.toConsole.size();
    while (!m_underWay.empty()) {
        FrameUnderWay& frame = m_underWay.front();
        const std::size_t part = std::min(arrived, frame.octetsLeft);
        frame.octetsLeft -= part;
        arrived -= part;
        if (frame.octetsLeft > 0)
            break;
        frame.traced.at = now;
        output.traced.push_back(std::move(frame.traced));
        m_underWay.pop_front();
    }
}

void Line::Hold(std::deque<Late>& late, Late one)
{
    if (!late.empty())
        one.due = std::max(one.due, late.back().due);
    late.push_back(std::move(one));
}

} // namespace sim
