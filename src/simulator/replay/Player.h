#pragma once

#include "map27/trace/TraceEntry.h"
#include "simulator/base/Schedule.h"

#include <optional>
#include <string>
#include <vector>

namespace sim {

struct ReplaySettings {
    bool fast = false;            // as fast as the console answers, not at the times of the trace
    bool withCommands = false;    // the trace's commands have to be given again, each at its place
    Milliseconds patience{60000}; // for the console; 0: for ever
};

struct ReplayOutput {
    map27::Octets toConsole;
    std::vector<map27::TraceEntry> traced;
    std::vector<std::string> notes; // for a log, in English
};

// Plays the radio's side of a trace, and compares what the console does with what it did then. It has no
// clock of its own and is used like map27::Link.
class Player {
public:
    virtual ~Player() = default;

    virtual ReplayOutput ConsoleCame(TimePoint now) = 0;
    virtual ReplayOutput ConsoleWent(TimePoint now) = 0;
    virtual ReplayOutput Feed(map27::OctetSpan octets, TimePoint now) = 0;
    virtual ReplayOutput OnTime(TimePoint now) = 0;
    virtual Deadline NextDeadline() const = 0;

    struct Answer {
        std::string text; // lines, the last one "ok ..." or "error ...", without its line end
        ReplayOutput output;
    };
    virtual Answer Execute(const std::string& command, TimePoint now) = 0;

    struct End {
        bool isFaithful;  // the console did all that it did then, and nothing else
        std::string text; // for a person
    };
    virtual const std::optional<End>& TheEnd() const = 0;
};

} // namespace sim
