#pragma once

#include "map27/link/Link.h"
#include "map27/trace/FrameSplitter.h"
#include "simulator/replay/Player.h"
#include "simulator/replay/ReplayTrace.h"

#include <map>

namespace sim {

// Plays the messages of a trace over a link of its own, so that neither the link's moments nor its numbers
// matter. The console's questions (B0) may come whenever they come, and are answered as they were answered
// last; all its other messages have to be the same, in the same order.
class MessageReplay : public Player {
public:
    MessageReplay(const std::vector<ReplayEntry>& entries, const ReplaySettings& settings);

    ReplayOutput ConsoleCame(TimePoint now) override;
    ReplayOutput ConsoleWent(TimePoint now) override;
    ReplayOutput Feed(map27::OctetSpan octets, TimePoint now) override;
    ReplayOutput OnTime(TimePoint now) override;
    Deadline NextDeadline() const override;
    Answer Execute(const std::string& command, TimePoint now) override;
    const std::optional<End>& TheEnd() const override { return m_end; }

private:
    // A message or a command, in the order of the trace.
    struct Step {
        TraceEntry entry;
        int line;
        map27::Octets message; // empty: a command
        bool OfConsole() const { return !message.empty() && entry.direction == map27::Direction::ToRadio; }
    };
    // What the radio said of itself before the step of that index.
    struct Said {
        std::size_t before;
        map27::Octets message;
    };

    void Add(const ReplayEntry& one, const map27::Octets& message);
    void Take(map27::LinkOutput output, TimePoint now);
    void TakeMessage(const map27::Octets& message, TimePoint now);
    map27::Octets AnswerTo(std::uint8_t reason) const;
    void Advance(TimePoint now);
    void AwaitConsole(const Step& next, TimePoint now);
    void Pass(TimePoint now);
    TimePoint DueAt(const Step& step) const { return step.entry.at + m_shift; }
    ReplayOutput TakeOutput() { return std::exchange(m_output, {}); }

    ReplaySettings m_settings;
    std::vector<Step> m_steps;
    std::map<std::uint8_t, std::vector<Said>> m_said; // by the answer's type
    std::optional<std::uint8_t> m_openQuestion;       // while the trace is read: the type that answers it
    std::size_t m_next = 0;
    map27::Link m_link;
    map27::FrameSplitter m_splitter;
    bool m_started = false;
    Milliseconds m_shift{0}; // from the trace's time to now
    Deadline m_patienceEnds;
    bool m_noted = false;
    std::optional<End> m_end;
    ReplayOutput m_output;
};

} // namespace sim
