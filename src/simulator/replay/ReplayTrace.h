#pragma once

#include "map27/trace/TraceEntry.h"

#include <QString>

#include <vector>

namespace sim {

using map27::TraceEntry;

// An entry of a trace as it is to be played.
struct ReplayEntry {
    TraceEntry entry;
    int line = 0;            // of the file
    std::uint8_t packet = 0; // of a frame: LR, LA or LT; 0: damaged
    // A frame of the console that only repeats what it said before, which it need not do again.
    bool mayBeMissing = false;
};

// A trace as it is to be played: frames, commands, where the console opened its port, where lines are
// missing, and what the radio had said before. Times never run backwards: where the trace was continued by
// another run they go on. Throws std::runtime_error that names file, line and column.
std::vector<ReplayEntry> LoadReplay(const QString& file);
std::vector<ReplayEntry> ToReplay(const std::vector<TraceEntry>& entries);

// Why the frames that a console sends now cannot be those of the trace, in words: it begins in the middle of
// a link, whose numbers no new link has, or lines of it are missing. Empty: they can.
std::optional<std::string> WhyNotAllFrames(const std::vector<ReplayEntry>& entries);

// LR, LA or LT; 0 for what is no good frame.
std::uint8_t PacketOf(map27::OctetSpan frame);

// What went over the wire from the radio, whatever was done to it on purpose.
map27::Octets PlayedOctets(const TraceEntry& entry);

} // namespace sim
