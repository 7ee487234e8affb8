#pragma once

#include "map27/TableEnd.h"
#include "map27/link/Link.h"
#include "map27/trace/FrameParts.h"
#include "map27/trace/LinkObserver.h"

#include <functional>
#include <random>
#include <set>
#include <string>

// A link of ours (end 0) and some other end at a line that is late, at 9600 bit/s in virtual time.
enum class Peer { Ours, TableT0Stays, TableT0Grows, TableAnswers };
// Whose delay varies: that of what is sent at one moment, as in a network, or that of every frame. From a
// half to the whole of it, or from nothing.
enum class Varying { No, ByHalf, FromNothing, EachFrame };

struct LateCase {
    map27::Milliseconds delay; // one way, the longest
    Peer peer;
    Varying varying = Varying::No;
    map27::Milliseconds peerLater{0}; // how much later than ours it starts; below 0: earlier
    unsigned seed = 1;
};

struct LateResult {
    int requests = 0;                 // by our end until the link was there to stay
    map27::Milliseconds up{-1};       // until then, from when both had started
    int flaps = 0;                    // times that it was lost again
    int requestsAfter = 0;            // in the ten minutes that follow
    int wrong = 0;                    // messages lost, twice or out of order, both directions
    std::string breaches;             // of the standard, as seen at our end
    double use = 0;                   // of what the window allows, sending from our end
    map27::Milliseconds roundTrip{0}; // the longest that the case allows
};

class LateLine {
public:
    explicit LateLine(const LateCase& test)
        : m_case(test),
          m_ours(map27::LinkParameters{}),
          m_alike(map27::LinkParameters{}),
          m_table(test.peer == Peer::TableT0Stays   ? TableEnd::T0::Stays
                  : test.peer == Peer::TableT0Grows ? TableEnd::T0::Grows
                                                    : TableEnd::T0::None),
          m_random(test.seed)
    {
        m_observer.Open(9600);
    }

    LateResult Run()
    {
        using map27::Milliseconds;
        const Milliseconds later = m_case.peerLater;
        StartEnd(later < Milliseconds(0) ? 1 : 0);
        RunUntil(m_now + std::chrono::abs(later), [] { return false; });
        StartEnd(later < Milliseconds(0) ? 0 : 1);
        map27::TimePoint begin = m_now;
        // Before its first octet is there nobody can answer it.
        if (later > Milliseconds(0)) {
            RunUntil(begin + Milliseconds(60000), [&] { return m_heard; });
            begin = m_now;
        }
        const int before = later > Milliseconds(0) ? m_requests : 0;

        LateResult result;
        result.roundTrip = 2 * m_case.delay;
        RunUntil(begin + Milliseconds(60000), [&] { return m_ours.IsReady() && PeerIsReady(); });
        int seen = 0;
        // It counts as up only when it stays so for two minutes.
        while (m_ours.IsReady() && PeerIsReady()) {
            result.up = std::chrono::duration_cast<Milliseconds>(m_now - begin);
            result.requests = m_requests - before;
            seen = m_failures;
            if (!RunUntil(m_now + Milliseconds(120000), [&] { return m_failures != seen; }))
                break;
            if (m_now - begin > Milliseconds(300000))
                break;
            RunUntil(m_now + Milliseconds(60000), [&] { return m_ours.IsReady() && PeerIsReady(); });
        }
        const int requests = m_requests;
        const map27::TimePoint up = m_now;
        Talk(20);
        result.use = Flood(60);
        RunUntil(up + Milliseconds(480000), [] { return false; });
        result.flaps = m_failures;
        result.requestsAfter = m_requests - requests;
        result.wrong = m_wrong;
        result.breaches = m_breaches;
        return result;
    }

private:
    struct Flying {
        map27::TimePoint due;
        map27::Octets frame;
        bool transfer;
    };

    template <typename Act> void AtEnd(int end, Act act)
    {
        if (end == 0)
            Take(0, act(m_ours));
        else if (m_case.peer == Peer::Ours)
            Take(1, act(m_alike));
        else
            Take(1, act(m_table));
    }
    void StartEnd(int end)
    {
        m_started[end] = true;
        AtEnd(end, [&](auto& link) { return link.Start(m_now); });
    }
    bool PeerIsReady() const { return m_case.peer == Peer::Ours ? m_alike.IsReady() : m_table.IsReady(); }
    std::size_t Backlog(int end) const
    {
        return end == 0                    ? m_ours.Backlog()
               : m_case.peer == Peer::Ours ? m_alike.Backlog()
                                           : m_table.Backlog();
    }
    map27::Deadline DeadlineOf(int end) const
    {
        return end == 0                    ? m_ours.NextDeadline()
               : m_case.peer == Peer::Ours ? m_alike.NextDeadline()
                                           : m_table.NextDeadline();
    }

    // True as soon as the condition holds.
    bool RunUntil(map27::TimePoint end, const std::function<bool()>& condition)
    {
        while (!condition()) {
            map27::Deadline next = map27::Earlier(DeadlineOf(0), DeadlineOf(1));
            for (const auto& flying : m_flying)
                if (!flying.empty())
                    next = map27::Earlier(next, flying.front().due);
            if (!next || *next > end) {
                m_now = end;
                return condition();
            }
            m_now = std::max(m_now, *next);
            // As the console does, ours asks something as soon as it may, and so does its like.
            for (int asking = 0; asking < (m_case.peer == Peer::Ours ? 2 : 1); ++asking)
                if (std::exchange(m_mayAsk[asking], false))
                    SendNext(asking);
            for (int to = 0; to < 2; ++to) {
                auto& flying = m_flying[1 - to];
                while (!flying.empty() && flying.front().due <= m_now) {
                    const map27::Octets frame = std::move(flying.front().frame);
                    flying.pop_front();
                    m_heard = m_heard || (to == 0 && m_started[1]);
                    if (to == 0 && m_started[0])
                        Observe(frame, map27::Direction::FromRadio);
                    if (m_started[to])
                        AtEnd(to, [&](auto& link) { return link.Feed(frame, m_now); });
                }
                if (const auto deadline = DeadlineOf(to); deadline && *deadline <= m_now)
                    AtEnd(to, [&](auto& link) { return link.OnTime(m_now); });
            }
        }
        return true;
    }

    void Observe(const map27::Octets& frame, map27::Direction direction)
    {
        for (const map27::Finding& one :
             m_observer.Take(map27::TakeApart(frame)->body, direction, m_now).findings)
            if (one.weight == map27::Finding::Weight::Breach)
                m_breaches += std::string(one.kind) + ": " + one.text + '\n';
    }

    void Take(int end, const map27::LinkOutput& output)
    {
        for (const map27::Octets& frame : output.frames) {
            const std::uint8_t type = frame[3];
            if (end == 0)
                Observe(frame, map27::Direction::ToRadio);
            m_requests += end == 0 && type == map27::packet::LinkRequest ? 1 : 0;
            const auto lineTime = map27::Milliseconds((frame.size() * 10 * 1000 + 9599) / 9600);
            m_free[end] = std::max(m_free[end], m_now) + lineTime;
            map27::TimePoint due = m_free[end] + Delay(end);
            if (!m_flying[end].empty())
                due = std::max(due, m_flying[end].back().due);
            m_transit[end] += due - m_now;
            ++m_frames[end];
            if (end == 0 && type == map27::packet::LinkRequest)
                m_allArrived = due;
            m_flying[end].push_back({due, frame, type == map27::packet::LinkTransfer});
        }
        for (const map27::LinkEvent& event : output.events) {
            if (const auto* message = std::get_if<map27::MessageReceived>(&event))
                Receive(end, message->message);
            else if (std::holds_alternative<map27::LinkReady>(event))
                m_mayAsk[end] = true;
            else if (const auto* failed = std::get_if<map27::LinkFailed>(&event)) {
                // The other end fails once more for each request that is still on its way to it; with no
                // message.
                m_failures += end == 0 || m_now > m_allArrived ? 1 : 0;
                m_lost[end] += static_cast<int>(failed->messagesLost);
            }
        }
    }

    map27::Milliseconds Delay(int end)
    {
        const auto longest = m_case.delay.count();
        if (m_case.varying == Varying::No || longest == 0)
            return m_case.delay;
        if (m_case.varying == Varying::EachFrame || m_drawnAt[end] != m_now) {
            m_drawnAt[end] = m_now;
            const auto least = m_case.varying == Varying::ByHalf ? longest / 2 : 0;
            m_drawn[end] = map27::Milliseconds(least + static_cast<long>(m_random() % (longest - least + 1)));
        }
        return m_drawn[end];
    }

    static map27::Octets Numbered(int number)
    {
        return {0x80, 2, static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number), 0, 7};
    }
    void Receive(int end, const map27::Octets& message)
    {
        const int number = message[2] << 8 | message[3];
        m_wrong += number == m_last[end] + 1 ? 0 : 1;
        m_last[end] = number;
    }
    bool SendNext(int end)
    {
        bool accepted = false;
        AtEnd(end, [&](auto& link) {
            auto outcome = link.Send(Numbered(m_next[end] + 1), m_now);
            accepted = outcome.result == map27::SendResult::Accepted;
            return outcome.output;
        });
        m_next[end] += accepted ? 1 : 0;
        return accepted;
    }
    // Both ends, one message after another.
    void Talk(int count)
    {
        const int first[2] = {m_next[0], m_next[1]};
        RunUntil(m_now + map27::Milliseconds(240000), [&] {
            bool done = true;
            for (int end = 0; end < 2; ++end) {
                while (m_next[end] < first[end] + count && Backlog(end) == 0 && SendNext(end)) {
                }
                done = done && m_next[end] == first[end] + count && Backlog(end) == 0;
            }
            return done;
        });
        CheckAllArrived();
    }
    double Flood(int count)
    {
        RunUntil(m_now + map27::Milliseconds(15000), [] { return false; });
        const int first = m_next[0];
        for (int end = 0; end < 2; ++end) {
            m_transit[end] = {};
            m_frames[end] = 0;
        }
        const map27::TimePoint begin = m_now;
        const bool done = RunUntil(begin + map27::Milliseconds(1200000), [&] {
            while (m_next[0] < first + count && Backlog(0) < 3 && SendNext(0)) {
            }
            return m_next[0] == first + count && Backlog(0) == 0;
        });
        CheckAllArrived();
        if (!done)
            return 0;
        const double cycle = static_cast<double>(m_transit[0].count()) / m_frames[0] +
                             static_cast<double>(m_transit[1].count()) / m_frames[1];
        return count * cycle / static_cast<double>((m_now - begin).count());
    }
    void CheckAllArrived()
    {
        for (int end = 0; end < 2; ++end)
            m_wrong += m_last[1 - end] == m_next[end] ? 0 : 1;
    }

    LateCase m_case;
    map27::Link m_ours;
    map27::Link m_alike;
    TableEnd m_table;
    std::mt19937 m_random;
    map27::TimePoint m_now{map27::Milliseconds(1000)};
    map27::TimePoint m_free[2]{};
    map27::TimePoint m_drawnAt[2]{};
    map27::Milliseconds m_drawn[2]{};
    map27::Milliseconds m_transit[2]{};
    int m_frames[2]{};
    std::deque<Flying> m_flying[2]; // from this end
    bool m_started[2]{};
    bool m_heard = false;
    bool m_mayAsk[2]{};
    map27::TimePoint m_allArrived{}; // the requests of our end
    int m_requests = 0;
    int m_failures = 0;
    int m_lost[2]{};
    int m_wrong = 0;
    map27::LinkObserver m_observer;
    std::string m_breaches;
    int m_last[2]{};
    int m_next[2]{};
};
