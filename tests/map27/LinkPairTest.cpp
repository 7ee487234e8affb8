#include "map27/link/Link.h"
#include "simulator/line/Line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

using namespace map27;

namespace {

// What a line does to what passes: the simulated radio's faults, and two of our own, each a chance from 0
// to 1.
struct Damage {
    sim::FaultSettings faults{};
    double twice = 0; // each frame of a link that is up
    double octetLost = 0;
};

Damage Of(std::initializer_list<std::pair<sim::FaultKind, double>> faults, double twice = 0,
          double octetLost = 0)
{
    Damage damage{{}, twice, octetLost};
    for (const auto& [kind, value] : faults)
        damage.faults.Set(kind, value);
    return damage;
}

// Two links on a serial line of 9600 bit/s in virtual time; the first one is where a console would be.
class Pair {
public:
    Pair(LinkParameters a, LinkParameters b, const Damage& damage, unsigned seed)
        : m_damage(damage),
          m_random(seed),
          m_line(9600, damage.faults, seed),
          m_links{Link(a), Link(b)}
    {
    }

    void Start(int end) { Take(end, m_links[end].Start(m_now)); }
    void Reset(int end, Milliseconds pause) { Take(end, m_links[end].Reset(m_now, pause)); }
    Link& LinkOf(int end) { return m_links[end]; }
    bool BothReady() { return m_links[0].IsReady() && m_links[1].IsReady(); }
    TimePoint Now() const { return m_now; }
    void Heal()
    {
        m_damage.twice = m_damage.octetLost = 0;
        for (const sim::FaultDescription& fault : sim::FaultDescriptions)
            m_line.SetFault(fault.kind, 0);
    }

    bool Send(int end, const Octets& message)
    {
        auto outcome = m_links[end].Send(message, m_now);
        Take(end, outcome.output);
        return outcome.result == SendResult::Accepted;
    }

    // Until the condition holds or the time is over. True when it holds.
    bool RunUntil(const std::function<bool()>& condition, Milliseconds longest)
    {
        const TimePoint end = m_now + longest;
        while (!condition()) {
            Deadline next = m_line.NextDeadline();
            for (const Link& link : m_links)
                next = Earlier(next, link.NextDeadline());
            if (!next || *next > end) {
                m_now = end;
                return condition();
            }
            m_now = std::max(m_now, *next);
            Step();
        }
        return true;
    }
    void Run(Milliseconds time)
    {
        RunUntil([] { return false; }, time);
    }

    // Messages that each end received, and what happened there.
    std::vector<Octets> received[2];
    std::vector<LinkFailure> failures[2];
    int requests = 0; // of both

private:
    void Step()
    {
        const sim::LineOutput arrived = m_line.Take(m_now);
        Take(0, m_links[0].Feed(arrived.toConsole, m_now));
        Take(1, m_links[1].Feed(arrived.toRadio, m_now));
        for (int end = 0; end < 2; ++end) {
            if (const auto deadline = m_links[end].NextDeadline(); deadline && *deadline <= m_now)
                Take(end, m_links[end].OnTime(m_now));
        }
    }

    void Take(int end, const LinkOutput& output)
    {
        for (const LinkEvent& event : output.events) {
            if (const auto* message = std::get_if<MessageReceived>(&event))
                received[end].push_back(message->message);
            else if (const auto* failed = std::get_if<LinkFailed>(&event))
                failures[end].push_back(failed->reason);
        }
        for (const Octets& frame : output.frames) {
            // A doubled LR is a reset by the rules, so only what a ready link sends is doubled.
            constexpr std::size_t typeAt = 3;
            const bool request = frame[typeAt] == 0x01;
            requests += request ? 1 : 0;
            const int copies = !request && Happens(m_damage.twice) ? 2 : 1;
            for (int copy = 0; copy < copies; ++copy)
                Transmit(end, frame);
        }
    }

    void Transmit(int end, Octets frame)
    {
        std::erase_if(frame, [this](std::uint8_t) { return Happens(m_damage.octetLost); });
        if (end == 0)
            m_line.PushFromConsole(frame, m_now);
        else
            m_line.PushFromRadio(std::move(frame), m_now);
    }

    bool Happens(double chance) { return chance > 0 && m_random() / 4294967296.0 < chance; }

    TimePoint m_now{};
    Damage m_damage;
    std::mt19937 m_random;
    sim::Line m_line;
    Link m_links[2];
};

Octets Numbered(int end, int number)
{
    Octets message{static_cast<std::uint8_t>(0x80 + end), static_cast<std::uint8_t>(number >> 8),
                   static_cast<std::uint8_t>(number)};
    message.resize(3 + static_cast<std::size_t>(number % 60), 0x10); // much to be stuffed
    return message;
}

int NumberOf(const Octets& message)
{
    return message[1] << 8 | message[2];
}

} // namespace

TEST(LinkPair, ComesUpHoweverTheEndsStart)
{
    struct Case {
        const char* what;
        int lead; // milliseconds that the first end starts earlier
        std::uint8_t n1a, n1b;
        Milliseconds atMost;
    };
    const Case cases[] = {
        {"both at once", 0, 14, 14, Milliseconds(200)},
        {"one a frame earlier", 11, 14, 14, Milliseconds(200)},
        {"one half a frame earlier", 6, 14, 14, Milliseconds(200)},
        {"one while the other repeats", 95, 14, 14, Milliseconds(500)},
        {"one a minute later", 60000, 14, 14, Milliseconds(200)},
        {"proposals differ", 0, 14, 6, Milliseconds(200)},
        {"proposals differ, the smaller first", 50, 6, 14, Milliseconds(500)},
        {"proposals differ, the greater first", 50, 16, 6, Milliseconds(500)},
    };
    for (const Case& test : cases) {
        LinkParameters a;
        a.n1 = test.n1a;
        LinkParameters b;
        b.n1 = test.n1b;
        Pair pair(a, b, {}, 1);
        pair.Start(0);
        pair.Run(Milliseconds(test.lead));
        pair.Start(1);
        EXPECT_TRUE(pair.RunUntil([&] { return pair.BothReady(); }, test.atMost)) << test.what;
        pair.Run(Milliseconds(1000));
        EXPECT_TRUE(pair.BothReady()) << test.what;
        const std::size_t agreed = 16 * (std::size_t{std::min(test.n1a, test.n1b)} + 1);
        EXPECT_EQ(pair.LinkOf(0).LongestMessage(), agreed) << test.what;
        EXPECT_EQ(pair.LinkOf(1).LongestMessage(), agreed) << test.what;
        EXPECT_TRUE(pair.Send(0, {0x80, 1})) << test.what;
        EXPECT_TRUE(pair.Send(1, {0x80, 2})) << test.what;
        pair.Run(Milliseconds(16000)); // an LA lost at the beginning would be made good by T3
        EXPECT_EQ(pair.received[1].size(), 1u) << test.what;
        EXPECT_EQ(pair.received[0].size(), 1u) << test.what;
    }
}

// One request too many under way makes two ends answer each other for ever, unless they notice.
TEST(LinkPair, DoesNotGoRoundInCircles)
{
    constexpr int smallest = 2; // of a set-up in which nothing crosses
    int most = 0;
    for (int delay = 0; delay < 60; ++delay) {
        Pair pair({}, {}, {}, 1);
        pair.Start(0);
        pair.Start(1);
        pair.Run(Milliseconds(delay));
        const int before = pair.requests;
        pair.Reset(delay % 2, Milliseconds(0)); // its LR meets an establishment in progress
        pair.Reset(delay % 2, Milliseconds(0));
        pair.Run(Milliseconds(3000));
        ASSERT_TRUE(pair.BothReady()) << delay;
        const auto resets = pair.LinkOf(0).Counters().resets + pair.LinkOf(1).Counters().resets;
        pair.Run(Milliseconds(60000));
        ASSERT_EQ(pair.LinkOf(0).Counters().resets + pair.LinkOf(1).Counters().resets, resets) << delay;
        ASSERT_LE(pair.requests - before, 8) << delay;
        most = std::max(most, pair.requests - before);
    }
    EXPECT_GT(most, smallest + 1) << "the case never arose";
}

// On a bad line each message arrives once and in order, or the sender is told that the link, and what was
// under way, is lost.
TEST(LinkPair, NothingIsLostDoubledOrDisordered)
{
    struct Case {
        const char* what;
        Damage damage;
        std::uint8_t k;
    };
    using enum sim::FaultKind;
    const Damage everything =
        Of({{DropFrames, 0.08}, {BitErrors, 0.00025}, {Noise, 0.1}, {Delay, 100}}, 0.08, 0.002);
    const Case cases[] = {
        {"sound", {}, 1},
        {"loss", Of({{DropFrames, 0.3}}), 1},
        {"doubling", Of({}, 0.3), 1},
        {"wrong bits", Of({{BitErrors, 0.00125}}), 1}, // about 30 % of the frames
        {"octets lost", Of({}, 0, 0.01), 1},
        {"noise", Of({{Noise, 0.3}}), 1},
        {"delay", Of({{Delay, 900}}), 1},
        {"everything", everything, 1},
        {"everything, window of four", everything, 4},
    };
    constexpr int messages = 25;
    for (const Case& test : cases) {
        for (unsigned seed = 1; seed <= 100; ++seed) {
            LinkParameters parameters;
            parameters.k = test.k;
            Pair pair(parameters, parameters, test.damage, seed);
            pair.Start(0);
            pair.Start(1);
            int next[2] = {0, 0};
            const auto done = [&] {
                for (int end = 0; end < 2; ++end) {
                    while (next[end] < messages && pair.LinkOf(end).Backlog() < 3 &&
                           pair.Send(end, Numbered(end, next[end])))
                        ++next[end];
                }
                return next[0] == messages && next[1] == messages && pair.LinkOf(0).Backlog() == 0 &&
                       pair.LinkOf(1).Backlog() == 0;
            };
            ASSERT_TRUE(pair.RunUntil(done, Milliseconds(3600000))) << test.what << " seed " << seed;
            pair.Heal();
            ASSERT_TRUE(pair.RunUntil([&] { return pair.BothReady(); }, Milliseconds(60000)))
                << test.what << " seed " << seed;
            for (int end = 0; end < 2; ++end) {
                const auto& received = pair.received[1 - end];
                int last = -1;
                for (const Octets& message : received) {
                    ASSERT_GT(NumberOf(message), last) << test.what << " seed " << seed;
                    last = NumberOf(message);
                    ASSERT_EQ(message, Numbered(end, last)) << test.what << " seed " << seed;
                }
                // Lost with a link: the sender knows. (One that arrived, but whose acknowledgement did not,
                // counts too.)
                const auto known = pair.LinkOf(end).Counters().messagesLost;
                EXPECT_GE(received.size() + known, std::size_t{messages}) << test.what << " seed " << seed;
                if (test.damage.faults == sim::FaultSettings{} && test.damage.octetLost == 0) {
                    EXPECT_EQ(received.size(), std::size_t{messages}) << test.what;
                    EXPECT_TRUE(pair.failures[end].empty()) << test.what;
                }
            }
        }
    }
}

// A cable pulled for a while: noticed by T4 or N2, and healed without help.
TEST(LinkPair, ComesBackAfterSilence)
{
    Pair pair({}, {}, {}, 1);
    pair.Start(0);
    pair.Start(1);
    ASSERT_TRUE(pair.RunUntil([&] { return pair.BothReady(); }, Milliseconds(1000)));
    Pair dead({}, {}, Of({{sim::FaultKind::DropFrames, 1}}), 1);
    dead.Start(0);
    dead.Run(Milliseconds(300000));
    EXPECT_EQ(dead.LinkOf(0).State(), LinkState::ResetWait);
    dead.Heal();
    dead.Start(1);
    EXPECT_TRUE(dead.RunUntil([&] { return dead.BothReady(); }, Milliseconds(500)));

    pair.LinkOf(1).Stop();
    pair.Run(Milliseconds(79000));
    EXPECT_TRUE(pair.failures[0].empty());
    pair.Run(Milliseconds(12000));
    EXPECT_EQ(pair.failures[0], std::vector<LinkFailure>{LinkFailure::Silent});
    pair.Start(1);
    EXPECT_TRUE(pair.RunUntil([&] { return pair.BothReady(); }, Milliseconds(500)));
}

// Back to back the line is never idle but for the turn-round: LT, LA, LT, LA.
TEST(LinkPair, UsesTheLine)
{
    Pair pair({}, {}, {}, 1);
    pair.Start(0);
    pair.Start(1);
    ASSERT_TRUE(pair.RunUntil([&] { return pair.BothReady(); }, Milliseconds(1000)));
    pair.Run(Milliseconds(500));
    const TimePoint begin = pair.Now();
    const Octets message(33, 0x55); // with its overhead 44 octets: 46 ms, its LA 12 ms
    int sent = 0;
    pair.RunUntil(
        [&] {
            while (pair.LinkOf(0).Backlog() < 3)
                sent += pair.Send(0, message) ? 1 : 0;
            // The peer talks as well now and then: crossing acknowledgements must not double the traffic.
            if (pair.LinkOf(1).Backlog() == 0 && sent % 10 == 0)
                pair.Send(1, {0x80, 1});
            return pair.received[1].size() >= 1000;
        },
        Milliseconds(600000));
    EXPECT_EQ(pair.received[1].size(), 1000u);
    EXPECT_EQ(pair.LinkOf(0).Counters().retransmissions, 0u);
    EXPECT_LT((pair.Now() - begin).count(), 1000 * (46 + 12) * 1.10);
}
