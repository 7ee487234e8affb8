#pragma once

#include "map27/codec/Messages.h"
#include "map27/link/Link.h"
#include "map27/trace/TraceObserver.h"
#include "simulator/replay/MessageReplay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

// The trace of a session played again, in virtual time: the radio's messages by a replay, the console's at
// the times of the trace, each over a link of its own, so that it does not matter how fast the computer was
// then.
class TraceConsole {
public:
    explicit TraceConsole(const QString& file) : m_entries(sim::LoadReplay(file)), m_replay(m_entries, {})
    {
        map27::TraceObserver observer;
        m_now = m_entries.front().entry.at;
        Connect();
        for (const sim::ReplayEntry& one : m_entries) {
            RunUntil(one.entry.at);
            if (one.entry.kind == map27::TraceEntry::Kind::Opened)
                Connect();
            const map27::Octets message = observer.Take(one.entry).message;
            if (!message.empty() && one.entry.direction == map27::Direction::ToRadio)
                Deliver(m_link.Send(message, m_now).output);
        }
        RunUntil(m_now + map27::Milliseconds(5000));
    }

    // Empty: as then.
    std::string Deviation() const
    {
        if (!m_replay.TheEnd())
            return "the trace was not played to its end";
        return m_replay.TheEnd()->isFaithful ? std::string() : m_replay.TheEnd()->text;
    }

    // The messages in one direction, in order, without what the radio is asked and says of itself: of the
    // trace, and of what was played.
    using Messages = std::vector<std::string>;
    Messages Then(map27::Direction direction) const
    {
        std::vector<map27::TraceEntry> entries;
        for (const sim::ReplayEntry& one : m_entries)
            entries.push_back(one.entry);
        return MessagesOf(entries, direction);
    }
    Messages Again(map27::Direction direction) const { return MessagesOf(m_traced, direction); }

private:
    static Messages MessagesOf(const std::vector<map27::TraceEntry>& entries, map27::Direction direction)
    {
        Messages messages;
        map27::TraceObserver observer;
        for (const map27::TraceEntry& entry : entries) {
            const map27::Octets message = observer.Take(entry).message;
            const bool aboutRadio =
                !message.empty() && message[0] >= map27::Type::Personality &&
                message[0] <= map27::Type::NetworkInfo &&
                (direction == map27::Direction::FromRadio || message[0] == map27::Type::Personality);
            if (!message.empty() && !aboutRadio && entry.direction == direction)
                messages.push_back(map27::ToHex(message));
        }
        return messages;
    }

    // The console comes, with a link of its own.
    void Connect()
    {
        Deliver(m_replay.ConsoleWent(m_now));
        m_link.Stop();
        Deliver(m_link.Start(m_now));
        Deliver(m_replay.ConsoleCame(m_now));
        m_traced.push_back({.kind = map27::TraceEntry::Kind::Opened, .at = m_now});
        for (int tries = 0; tries < 100 && !m_link.IsReady(); ++tries)
            RunUntil(m_now + map27::Milliseconds(10));
        EXPECT_TRUE(m_link.IsReady());
    }

    void RunUntil(map27::TimePoint end)
    {
        for (;;) {
            const map27::Deadline next = map27::Earlier(m_link.NextDeadline(), m_replay.NextDeadline());
            if (!next || *next > end)
                break;
            m_now = std::max(m_now, *next);
            Deliver(m_replay.OnTime(m_now));
            Deliver(m_link.OnTime(m_now));
        }
        m_now = std::max(m_now, end);
    }

    void Deliver(const map27::LinkOutput& output)
    {
        for (const map27::Octets& frame : output.frames)
            Deliver(m_replay.Feed(frame, m_now));
    }

    void Deliver(const sim::ReplayOutput& output)
    {
        m_traced.insert(m_traced.end(), output.traced.begin(), output.traced.end());
        if (!output.toConsole.empty())
            Deliver(m_link.Feed(output.toConsole, m_now));
    }

    std::vector<sim::ReplayEntry> m_entries;
    sim::MessageReplay m_replay;
    map27::Link m_link;
    map27::TimePoint m_now{};
    std::vector<map27::TraceEntry> m_traced;
};

// That a trace, played again, becomes the same trace; how many messages that were.
inline std::size_t ExpectToComeAgain(const QString& file)
{
    const TraceConsole again(file);
    EXPECT_EQ(again.Deviation(), "") << file.toStdString();
    std::size_t messages = 0;
    for (const map27::Direction direction : {map27::Direction::ToRadio, map27::Direction::FromRadio}) {
        EXPECT_EQ(again.Again(direction), again.Then(direction)) << file.toStdString();
        messages += again.Again(direction).size();
    }
    return messages;
}
