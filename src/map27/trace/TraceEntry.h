#pragma once

#include "map27/codec/Direction.h"
#include "map27/codec/Octets.h"
#include "map27/link/Time.h"
#include "map27/trace/SetUpObserver.h"

#include <string>
#include <string_view>
#include <variant>

namespace map27 {

// One line of a trace of the wire, a JSON object. "ms" counts from an origin that the writer chooses.
struct TraceEntry {
    enum class Kind {
        Frame,  // "dir", "frame": one frame with flags and FCS, right or wrong; "fault" when it was spoiled
        Noise,  // "dir", "noise": octets between frames
        Opened, // "event":"opened", "time", "port", "speed": the line begins
        Closed, // "event":"closed"
        Time,   // "event":"time", "time": what the wall clock shows
        Lost,   // "event":"lost", "count": so many entries could not be written
        // "event":"continued", "port", "speed"; "n1", "k", "version", "next_to_radio", "next_from_radio"
        // while the link is up: what went before may be gone
        Continued,
        Said,    // "event":"said", "message": what the radio said of itself before
        Command, // "command", "answer": what the simulated radio was told
    };

    Kind kind = Kind::Frame;
    TimePoint at{};
    Direction direction = Direction::ToRadio; // Frame, Noise
    Octets octets{};                          // likewise; Said: the message
    std::string fault{};                      // Frame; empty: none
    std::string time{};                       // Opened, Time: the wall clock, ISO 8601
    std::string port{};                       // Opened, Continued
    std::int64_t number = 0;                  // likewise: bits per second; Lost: how many
    std::optional<LinkStanding> link{};       // Continued
    std::string command{};                    // Command
    std::string answer{};                     // likewise

    bool operator==(const TraceEntry&) const = default;
};

// Whether an entry at `at`, behind one at `last`, was written by another run, whose time begins anew. What
// was on its way may be written a little late.
constexpr bool IsAnotherRun(TimePoint last, TimePoint at)
{
    return last - at > Milliseconds{1000};
}

// What is wrong with a line of a trace.
struct TraceProblem {
    std::size_t column; // in octets, from 1
    std::string reason; // in plain words
};

// Without the line end.
std::string WriteTraceEntry(const TraceEntry& entry);
// Names that it does not know are ignored.
std::variant<TraceEntry, TraceProblem> ReadTraceEntry(std::string_view line);

// "> " for to the radio, "< " for from it, as in traces and reports.
constexpr const char* ArrowOf(Direction direction)
{
    return direction == Direction::ToRadio ? ">" : "<";
}

} // namespace map27
