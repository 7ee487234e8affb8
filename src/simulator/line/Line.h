#pragma once

#include "map27/trace/FrameSplitter.h"
#include "map27/trace/TraceEntry.h"
#include "simulator/line/Faults.h"
#include "simulator/line/Pacer.h"

#include "map27/codec/Causes.h"

namespace sim {

// A frame as it was sent, for the trace, in the order of sending. The time is that of its last octet, or, for
// a frame that never reached the wire, when it would have set out.
struct TracedFrame {
    TimePoint at;
    map27::Direction direction;
    map27::Octets frame;
    std::string_view fault; // a fault's word or "silent"; empty: none
};

// As a line of a trace.
map27::TraceEntry EntryOf(const TracedFrame& frame);

// What arrives at the two ends.
struct LineOutput {
    map27::Octets toRadio;
    map27::Octets toConsole;
    std::vector<TracedFrame> traced;
};

// The serial line between console and radio, with its speed and its faults. It has no clock of its own.
class Line {
public:
    Line(unsigned bitsPerSecond, const FaultSettings& faults, std::uint64_t seed);

    void PushFromConsole(map27::OctetSpan octets, TimePoint now) { m_fromConsole.Push(octets, now); }
    void PushFromRadio(map27::Octets frame, TimePoint now);

    // What has arrived since the last call.
    LineOutput Take(TimePoint now);
    Deadline NextDeadline() const;

    void SetFault(FaultKind kind, double value) { m_faults.Set(kind, value); }
    void SetSilent(bool silent) { m_faults.SetSilent(silent); }
    // Loses whatever is under way.
    void Clear();

private:
    struct FrameUnderWay {
        TracedFrame traced;
        std::size_t octetsLeft; // none for a lost frame
    };
    // Octets that are delayed. They never overtake each other.
    struct Late {
        TimePoint due;
        map27::Octets octets;
        std::optional<TracedFrame> traced; // from the radio
    };

    void TakeFromConsole(TimePoint now, LineOutput& output);
    void TakeFromRadio(TimePoint now, LineOutput& output);
    void HandToRadio(TimePoint now, LineOutput& output);
    void HandToPacer(TimePoint now);
    static void Hold(std::deque<Late>& late, Late one);

    Faults m_faults;
    Pacer m_fromConsole;
    Pacer m_fromRadio;
    map27::FrameSplitter m_splitter;
    std::deque<Late> m_lateFromConsole;   // after the line
    std::deque<Late> m_lateFromRadio;     // before it
    std::deque<FrameUnderWay> m_underWay; // from the radio
};

} // namespace sim
