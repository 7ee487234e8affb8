#pragma once

#include "map27/trace/FrameSplitter.h"
#include "simulator/replay/Player.h"
#include "simulator/replay/ReplayTrace.h"

#include <deque>

namespace sim {

// Plays the radio's side of a trace, and compares what the console does with what it did then. A frame of the
// radio goes out when its time has come, and everything that the console had said before has been said again.
// What the console says has to be the same, octet by octet, and in the same order each of its link requests,
// its acknowledgements and its messages: what of them comes first where they cross with frames of the radio
// hangs on moments, and so does how often it repeats what it said before. It has no clock of its own and is
// used like map27::Link.
class Replay : public Player {
public:
    Replay(std::vector<ReplayEntry> entries, const ReplaySettings& settings);

    ReplayOutput ConsoleCame(TimePoint now) override;
    ReplayOutput ConsoleWent(TimePoint) override { return {}; }
    ReplayOutput Feed(map27::OctetSpan octets, TimePoint now) override;
    ReplayOutput OnTime(TimePoint now) override;
    Deadline NextDeadline() const override;
    Answer Execute(const std::string& command, TimePoint now) override;
    const std::optional<End>& TheEnd() const override { return m_end; }

private:
    void Advance(TimePoint now);
    void AwaitConsole(const ReplayEntry& next, TimePoint now);
    std::size_t Holding() const;
    void Play(std::size_t index, TimePoint now);
    void TakePiece(map27::LinePiece piece, TimePoint now);
    std::optional<std::size_t> Awaited(const map27::Octets& frame) const;
    std::size_t NextOfConsole(std::size_t from, std::uint8_t packet) const;
    bool IsRepetition(const map27::Octets& frame) const;
    void Deviate(const std::string& text) { m_end = End{false, text}; }
    void Trace(TraceEntry entry) { m_output.traced.push_back(std::move(entry)); }
    bool IsDone(std::size_t index) const { return m_done[index]; }
    bool IsOfConsole(const ReplayEntry& one) const;
    TimePoint DueAt(const ReplayEntry& one) const { return one.entry.at + m_shift; }
    std::string PlaceOf(const ReplayEntry& one) const;
    ReplayOutput TakeOutput() { return std::exchange(m_output, {}); }

    std::vector<ReplayEntry> m_entries;
    std::vector<bool> m_done; // played, or heard
    ReplaySettings m_settings;
    std::size_t m_next = 0; // the first that is not done
    bool m_started = false;
    Milliseconds m_shift{0};           // from the trace's time to now
    Deadline m_patienceEnds;           // while the console is waited for
    bool m_noted = false;              // that it is
    std::deque<map27::Octets> m_heard; // the console's last frames
    map27::FrameSplitter m_splitter;
    std::optional<End> m_end;
    ReplayOutput m_output;
};

} // namespace sim
