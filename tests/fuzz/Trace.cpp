// Traces: lines as they stand in a file, what is found in them, and their radio played to a console.

#include "fuzz/Input.h"
#include "map27/codec/Utf8.h"
#include "map27/trace/TraceEntry.h"
#include "map27/trace/TraceHead.h"
#include "map27/trace/TraceObserver.h"
#include "simulator/replay/Replay.h"
#include "simulator/replay/ReplayTrace.h"

#include <sstream>

using namespace map27;

namespace {

std::vector<TraceEntry> Read(const std::string& file)
{
    std::vector<TraceEntry> entries;
    std::istringstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        auto read = ReadTraceEntry(line);
        if (const auto* problem = std::get_if<TraceProblem>(&read)) {
            MUST_HOLD(problem->column >= 1 && problem->column <= line.size() + 1 && !problem->reason.empty());
            continue;
        }
        TraceEntry entry = std::get<TraceEntry>(std::move(read));
        const std::string written = WriteTraceEntry(entry);
        MUST_HOLD(written.find('\n') == std::string::npos);
        const auto again = ReadTraceEntry(written);
        MUST_HOLD(std::holds_alternative<TraceEntry>(again) && std::get<TraceEntry>(again) == entry);
        entries.push_back(std::move(entry));
    }
    return entries;
}

void Observe(const std::vector<TraceEntry>& entries)
{
    TraceObserver observer;
    TraceHead head;
    for (const TraceEntry& entry : entries) {
        const TraceObserver::Seen seen = observer.Take(entry);
        for (std::string_view rest = seen.words; !rest.empty();)
            MUST_HOLD(TakeUtf8(rest));
        head.Take(entry);
    }
    for (const TraceEntry& line : head.Lines(entries.empty() ? TimePoint{} : entries.back().at))
        MUST_HOLD(std::holds_alternative<TraceEntry>(ReadTraceEntry(WriteTraceEntry(line))));
}

// The console does what it did in the trace, or keeps silent.
void Play(const std::vector<TraceEntry>& entries, bool faithful)
{
    const std::vector<sim::ReplayEntry> played = sim::ToReplay(entries);
    TimePoint now{};
    for (const sim::ReplayEntry& one : played) {
        MUST_HOLD(one.entry.at >= now || &one == &played.front());
        now = one.entry.at;
    }
    sim::WhyNotAllFrames(played);
    sim::Replay replay(played, {.fast = true});
    now = TimePoint{};
    replay.ConsoleCame(now);
    for (const TraceEntry& entry : entries)
        if (faithful && entry.kind == TraceEntry::Kind::Frame && entry.direction == Direction::ToRadio)
            replay.Feed(entry.octets, now);
    for (int calls = 0; replay.NextDeadline() && !replay.TheEnd() && calls < 500; ++calls) {
        now = std::max(now, *replay.NextDeadline());
        replay.OnTime(now);
    }
    MUST_HOLD(!replay.TheEnd() || !replay.TheEnd()->text.empty());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const bool faithful = input.Octet() % 2 != 0;
    const std::vector<TraceEntry> entries = Read(input.RestAsText());
    Observe(entries);
    Play(entries, faithful);
    return 0;
}
