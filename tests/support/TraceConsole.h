#pragma once

#include "map27/link/Link.h"
#include "map27/link/LinkPackets.h"
#include "map27/trace/FrameParts.h"
#include "map27/trace/TraceEntry.h"
#include "simulator/replay/Replay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

// The trace of a session played again, in virtual time: a replay of the radio's side, and at the other end
// the console's link, which is given the console's messages at the times of the trace. What the link makes of
// them is its own: requests, numbers, acknowledgements, and what it repeats.
class TraceConsole {
public:
    explicit TraceConsole(const QString& file) : m_entries(sim::LoadReplay(file)), m_replay(m_entries, {})
    {
        m_now = m_entries.front().entry.at;
        Deliver(m_link.Start(m_now));
        Deliver(m_replay.ConsoleCame(m_now));
        map27::Octets last;
        for (const sim::ReplayEntry& one : m_entries) {
            RunUntil(one.entry.at);
            // The console has come back with a link of its own.
            if (one.entry.kind == map27::TraceEntry::Kind::Opened && &one != &m_entries.front()) {
                m_link.Stop();
                Deliver(m_link.Start(m_now));
            }
            const bool isSent = one.packet == map27::packet::LinkTransfer &&
                                one.entry.direction == map27::Direction::ToRadio && one.entry.octets != last;
            if (!isSent)
                continue;
            last = one.entry.octets;
            const map27::Octets body = map27::TakeApart(last)->body;
            Deliver(m_link.Send(map27::OctetSpan(body).subspan(map27::packet::HeaderOctets), m_now).output);
        }
        RunUntil(m_now + map27::Milliseconds(90000));
    }

    // Empty: as then.
    std::string Deviation() const
    {
        if (!m_replay.TheEnd())
            return "the trace was not played to its end";
        return m_replay.TheEnd()->isFaithful ? std::string() : m_replay.TheEnd()->text;
    }

    // Frames in one direction of one kind of packet, in order, without repetitions in a row: of the trace,
    // and of what was played.
    using Stream = std::vector<std::string>;
    Stream Then(map27::Direction direction, std::uint8_t packet) const
    {
        std::vector<map27::TraceEntry> entries;
        for (const sim::ReplayEntry& one : m_entries)
            entries.push_back(one.entry);
        return StreamOf(entries, direction, packet);
    }
    Stream Again(map27::Direction direction, std::uint8_t packet) const
    {
        return StreamOf(m_traced, direction, packet);
    }

private:
    static Stream StreamOf(const std::vector<map27::TraceEntry>& entries, map27::Direction direction,
                           std::uint8_t packet)
    {
        Stream stream;
        for (const map27::TraceEntry& entry : entries) {
            const bool isOne = entry.kind == map27::TraceEntry::Kind::Frame && entry.direction == direction &&
                               sim::PacketOf(entry.octets) == packet;
            if (const std::string frame = map27::ToHex(entry.octets);
                isOne && (stream.empty() || stream.back() != frame))
                stream.push_back(frame);
        }
        return stream;
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
    sim::Replay m_replay;
    map27::Link m_link;
    map27::TimePoint m_now{};
    std::vector<map27::TraceEntry> m_traced;
};

// That a trace, played again, becomes the same trace.
inline void ExpectToComeAgain(const QString& file)
{
    const TraceConsole again(file);
    EXPECT_EQ(again.Deviation(), "") << file.toStdString();
    for (const map27::Direction direction : {map27::Direction::ToRadio, map27::Direction::FromRadio})
        for (const std::uint8_t packet :
             {map27::packet::LinkRequest, map27::packet::LinkAcknowledgement, map27::packet::LinkTransfer})
            EXPECT_EQ(again.Again(direction, packet), again.Then(direction, packet))
                << file.toStdString() << ", packet " << int(packet);
}
