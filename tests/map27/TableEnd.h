#pragma once

#include "map27/link/Framing.h"
#include "map27/link/LinkEvents.h"
#include "map27/link/LinkPackets.h"
#include "map27/link/LinkParameters.h"

#include <algorithm>
#include <deque>
#include <utility>

// The other kind of end that there is: it does what the standard's tables of establishment and transfer say,
// to the letter, and measures nothing. Used like map27::Link.
class TableEnd {
public:
    enum class T0 {
        Stays,
        Grows,
        None
    }; // None: asks for nothing by itself, answers each request as it comes

    explicit TableEnd(T0 t0, std::uint8_t n1 = 14) : m_kind(t0), m_ownN1(n1), m_n1(n1) {}

    map27::LinkOutput Start(map27::TimePoint now)
    {
        m_queue.clear();
        m_interval = First;
        Enter(State::ResetWait);
        if (m_kind == T0::None)
            m_t0.reset();
        else
            Request(now);
        return TakeOutput();
    }
    map27::LinkOutput Feed(map27::OctetSpan octets, map27::TimePoint now)
    {
        for (const map27::Octets& body : m_decoder.Feed(octets))
            Handle(body, now);
        return TakeOutput();
    }
    map27::LinkOutput OnTime(map27::TimePoint now)
    {
        if (m_t1 && *m_t1 <= now)
            Repeat(now);
        if (m_t3 && *m_t3 <= now)
            Acknowledge(now);
        if (m_t0 && *m_t0 <= now) {
            if (m_kind == T0::Grows)
                m_interval = std::min(2 * m_interval, map27::Milliseconds(15000));
            Enter(State::ResetWait);
            Request(now);
        }
        if (m_t4 && *m_t4 <= now)
            Fail(map27::LinkFailure::Silent, now);
        return TakeOutput();
    }
    map27::Deadline NextDeadline() const
    {
        return map27::Earlier(map27::Earlier(m_t0, m_t1), map27::Earlier(m_t3, m_t4));
    }
    map27::SendOutcome Send(map27::OctetSpan message, map27::TimePoint now)
    {
        if (!IsReady())
            return {map27::SendResult::NotReady, {}};
        m_queue.emplace_back(message.begin(), message.end());
        SendQueued(now);
        return {map27::SendResult::Accepted, TakeOutput()};
    }
    bool IsReady() const { return m_state == State::Ready; }
    std::size_t Backlog() const { return m_queue.size(); }

private:
    enum class State { ResetWait, LinkWait, Ready };
    static constexpr map27::Milliseconds First{100};
    static constexpr map27::Milliseconds T1{1500};
    static constexpr map27::Milliseconds T3{10000};
    static constexpr map27::Milliseconds T4{80000};
    static constexpr int N2 = 10;

    void Enter(State state)
    {
        m_state = state;
        if (state == State::ResetWait)
            m_n1 = m_ownN1;
        m_t0.reset();
        m_t1.reset();
        m_t3.reset();
        m_t4.reset();
    }
    void Request(map27::TimePoint now)
    {
        Transmit({map27::packet::LinkRequest, m_n1, 1, 1});
        if (m_kind != T0::None)
            m_t0 = now + m_interval;
    }
    void Acknowledge(map27::TimePoint now)
    {
        Transmit({map27::packet::LinkAcknowledgement, m_expected, 1, 0});
        m_t3 = now + T3;
    }
    void Handle(const map27::Octets& body, map27::TimePoint now)
    {
        const std::uint8_t type = body[0];
        if (type == map27::packet::LinkRequest)
            return HandleRequest(body, now);
        if (m_state == State::Ready) {
            m_t4 = now + T4;
            return type == map27::packet::LinkTransfer ? HandleTransfer(body, now)
                                                       : HandleAcknowledgement(body, now);
        }
        if (m_state == State::LinkWait && type == map27::packet::LinkAcknowledgement) {
            Initialise(now);
            m_credit = body[2] - map27::packet::Distance(body[1], m_next);
            return Acknowledge(now);
        }
        Enter(State::ResetWait);
        Request(now);
    }
    void HandleRequest(const map27::Octets& body, map27::TimePoint now)
    {
        if (m_state == State::LinkWait && body[1] <= m_n1) {
            m_n1 = body[1];
            Initialise(now);
            return Acknowledge(now);
        }
        if (IsReady())
            Lose(map27::LinkFailure::PeerReset);
        const std::uint8_t minimum = std::min(m_n1, body[1]);
        Enter(State::LinkWait);
        m_n1 = minimum;
        Request(now);
    }
    void HandleTransfer(const map27::Octets& body, map27::TimePoint now)
    {
        if (body[1] == m_expected) {
            ++m_expected;
            m_events.push_back(map27::MessageReceived{map27::Octets(body.begin() + 4, body.end())});
        }
        Acknowledge(now);
    }
    void HandleAcknowledgement(const map27::Octets& body, map27::TimePoint now)
    {
        const std::uint8_t acknowledged = map27::packet::Distance(m_acknowledged, body[1]);
        if (acknowledged > map27::packet::Distance(m_acknowledged, m_next))
            return Fail(map27::LinkFailure::WrongAcknowledgement, now);
        if (acknowledged == 0 && m_acknowledged != m_next)
            return Repeat(now);
        if (acknowledged > 0) {
            m_queue.pop_front();
            m_acknowledged = body[1];
            m_t1.reset();
            m_triesLeft = N2;
        }
        m_credit = body[2] - map27::packet::Distance(m_acknowledged, m_next);
        SendQueued(now);
    }
    void Initialise(map27::TimePoint now)
    {
        Enter(State::Ready);
        m_interval = First;
        m_next = m_acknowledged = m_expected = 1;
        m_credit = 0;
        m_triesLeft = N2;
        m_t4 = now + T4;
        m_events.push_back(map27::LinkReady{m_n1, 1, 1});
    }
    // The window is one: the first of the queue is the one under way.
    void SendQueued(map27::TimePoint now)
    {
        if (m_credit <= 0 || m_queue.empty() || m_acknowledged != m_next)
            return;
        --m_credit;
        ++m_next;
        TransmitFirst(now);
    }
    void TransmitFirst(map27::TimePoint now)
    {
        map27::Octets body{map27::packet::LinkTransfer, m_acknowledged, 1, 0};
        body.insert(body.end(), m_queue.front().begin(), m_queue.front().end());
        Transmit(body);
        m_t1 = now + T1;
    }
    void Repeat(map27::TimePoint now)
    {
        if (--m_triesLeft <= 0)
            Fail(map27::LinkFailure::RetriesUsedUp, now);
        else
            TransmitFirst(now);
    }
    void Lose(map27::LinkFailure reason)
    {
        m_events.push_back(map27::LinkFailed{reason, m_queue.size()});
        m_queue.clear();
    }
    void Fail(map27::LinkFailure reason, map27::TimePoint now)
    {
        Lose(reason);
        Enter(State::ResetWait);
        m_interval = First;
        Request(now);
    }
    void Transmit(const map27::Octets& body) { m_frames.push_back(map27::EncodeFrame(body)); }
    map27::LinkOutput TakeOutput() { return {std::exchange(m_frames, {}), std::exchange(m_events, {})}; }

    T0 m_kind;
    std::uint8_t m_ownN1;
    std::uint8_t m_n1;
    State m_state = State::ResetWait;
    map27::FrameDecoder m_decoder;
    std::vector<map27::Octets> m_frames;
    std::vector<map27::LinkEvent> m_events;
    map27::Milliseconds m_interval = First;
    std::deque<map27::Octets> m_queue;
    std::uint8_t m_next = 1;         // V(S)
    std::uint8_t m_acknowledged = 1; // the last N(R)
    std::uint8_t m_expected = 1;     // V(R)
    int m_credit = 0;
    int m_triesLeft = N2;
    map27::Deadline m_t0, m_t1, m_t3, m_t4;
};
