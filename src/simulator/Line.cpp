#include "simulator/Line.h"

#include <algorithm>
#include <utility>

namespace sim {

Line::Line(unsigned bitsPerSecond, const FaultSettings& faults, std::uint64_t seed)
    : m_faults(faults, seed),
      m_fromConsole(bitsPerSecond),
      m_fromRadio(bitsPerSecond)
{
}

void Line::PushFromRadio(map27::Octets frame, TimePoint now)
{
    const Fault fault = m_faults.Strike(frame);
    if (fault == Fault::Dropped || fault == Fault::Silent) {
        m_lost.push_back({now, map27::Direction::FromRadio, std::move(frame), fault});
        return;
    }
    m_fromRadio.Push(frame, now);
    const std::size_t length = frame.size();
    m_underWay.push_back({std::move(frame), fault, length});
}

LineOutput Line::Take(TimePoint now)
{
    LineOutput output;
    output.traced = std::exchange(m_lost, {});
    TakeFromConsole(now, output);
    TakeFromRadio(now, output);
    return output;
}

Deadline Line::NextDeadline() const
{
    return map27::Earlier(m_fromConsole.NextDeadline(), m_fromRadio.NextDeadline());
}

void Line::Clear()
{
    m_fromConsole.Clear();
    m_fromRadio.Clear();
    m_splitter.Clear();
    m_underWay.clear();
}

void Line::TakeFromConsole(TimePoint now, LineOutput& output)
{
    for (LinePiece& piece : m_splitter.Feed(m_fromConsole.Take(now))) {
        const map27::Octets sent = piece.octets;
        const Fault fault = m_faults.Strike(piece.octets);
        if (piece.isFrame)
            output.traced.push_back({now, map27::Direction::ToRadio, sent, fault});
        if (fault == Fault::None || fault == Fault::BitErrors)
            output.toRadio.insert(output.toRadio.end(), piece.octets.begin(), piece.octets.end());
    }
}

void Line::TakeFromRadio(TimePoint now, LineOutput& output)
{
    output.toConsole = m_fromRadio.Take(now);
    std::size_t arrived = output.toConsole.size();
    while (arrived > 0) {
        FrameUnderWay& frame = m_underWay.front();
        const std::size_t part = std::min(arrived, frame.octetsLeft);
        frame.octetsLeft -= part;
        arrived -= part;
        if (frame.octetsLeft > 0)
            break;
        output.traced.push_back({now, map27::Direction::FromRadio, std::move(frame.frame), frame.fault});
        m_underWay.pop_front();
    }
}

} // namespace sim
