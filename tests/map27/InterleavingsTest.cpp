#include "map27/TableEnd.h"
#include "map27/link/Link.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <set>

using namespace map27;

namespace {

// Two ends and what is under way between them. What happens next is chosen from outside; time passes only
// when a timer is chosen, so that anything may be later than any timer.
class TwoEnds {
public:
    enum class Act { Arrive, Lose, ArriveTwice, TimeOut };
    enum class From { Beginning, Ready, Restart };
    static constexpr int Messages = 2; // of each end

    TwoEnds(bool table, From from)
    {
        if (table)
            m_other = std::make_unique<TableEnd>(TableEnd::T0::Stays);
        Start(0);
        Start(1);
        if (from == From::Beginning)
            return;
        while (!IsOver())
            Step();
        m_target += Messages;
        SendAll();
        if (from == From::Restart)
            Start(1);
    }

    bool IsPossible(Act act, int end)
    {
        if (act == Act::TimeOut)
            return DeadlineOf(end).has_value();
        if (m_flying[end].empty())
            return false;
        return act == Act::Arrive || m_faults > 0;
    }
    void Do(Act act, int end)
    {
        m_faults -= act == Act::Lose || act == Act::ArriveTwice ? 1 : 0;
        if (act == Act::TimeOut) {
            m_now = std::max(m_now, *DeadlineOf(end));
            With(end, [&](auto& link) { return link.OnTime(m_now); });
        } else {
            const Octets frame = m_flying[end].front();
            m_flying[end].pop_front();
            for (int copy = act == Act::Lose ? 2 : act == Act::Arrive ? 1 : 0; copy < 2; ++copy)
                With(1 - end, [&](auto& link) { return link.Feed(frame, m_now); });
        }
        SendAll();
    }

    // From now on all goes well. What is wrong in the end; empty: nothing.
    std::string Finish()
    {
        const TimePoint limit = m_now + Milliseconds(300000);
        while (!IsOver() && m_now < limit)
            Step();
        if (!IsOver())
            return "no link in the end";
        for (int end = 0; end < 2; ++end)
            if (m_received[1 - end] + m_lost[end] < m_next[end])
                return "lost, and nobody knows";
        return m_wrong;
    }
    // As seen from outside.
    std::string Seen() const
    {
        std::string seen;
        for (int end = 0; end < 2; ++end) {
            seen += std::to_string(m_next[end]) + ' ' + std::to_string(m_last[end]) + ' ' +
                    std::to_string(m_lost[end]) + (Ready(end) ? " ready " : " ");
            if (const auto deadline = DeadlineOf(end))
                seen += std::to_string((*deadline - m_now).count());
            for (const Octets& frame : m_flying[end])
                seen += ToHex(frame);
            seen += '/';
        }
        return seen;
    }

private:
    template <typename Call> void With(int end, Call act)
    {
        LinkOutput output = end == 0 ? act(m_ours) : m_other ? act(*m_other) : act(m_alike);
        for (Octets& frame : output.frames)
            m_flying[end].push_back(std::move(frame));
        for (const LinkEvent& event : output.events) {
            if (const auto* failed = std::get_if<LinkFailed>(&event)) {
                m_lost[end] += static_cast<int>(failed->messagesLost);
            } else if (const auto* message = std::get_if<MessageReceived>(&event)) {
                const int number = message->message[1];
                if (number <= m_last[end])
                    m_wrong = number == m_last[end] ? "twice" : "out of order";
                m_last[end] = number;
                ++m_received[end];
            }
        }
    }
    void Start(int end)
    {
        m_lost[end] += static_cast<int>(Backlog(end));
        With(end, [&](auto& link) { return link.Start(m_now); });
    }
    bool Ready(int end) const
    {
        return end == 0 ? m_ours.IsReady() : m_other ? m_other->IsReady() : m_alike.IsReady();
    }
    std::size_t Backlog(int end) const
    {
        return end == 0 ? m_ours.Backlog() : m_other ? m_other->Backlog() : m_alike.Backlog();
    }
    Deadline DeadlineOf(int end) const
    {
        return end == 0 ? m_ours.NextDeadline() : m_other ? m_other->NextDeadline() : m_alike.NextDeadline();
    }
    void SendAll()
    {
        for (int end = 0; end < 2; ++end) {
            while (m_next[end] < m_target && Ready(end)) {
                ++m_next[end];
                With(end, [&](auto& link) {
                    return link.Send(Octets{0x80, static_cast<std::uint8_t>(m_next[end])}, m_now).output;
                });
            }
        }
    }
    bool IsOver() const
    {
        return Ready(0) && Ready(1) && Backlog(0) + Backlog(1) == 0 && m_next[0] == m_target &&
               m_next[1] == m_target;
    }
    // All that is under way arrives 20 ms later; with nothing under way the next timer is due.
    void Step()
    {
        const Deadline next = Earlier(DeadlineOf(0), DeadlineOf(1));
        const TimePoint arrival = m_now + Milliseconds(20);
        const bool flying = !m_flying[0].empty() || !m_flying[1].empty();
        if (!flying || (next && *next <= arrival)) {
            Do(Act::TimeOut, DeadlineOf(0) == next ? 0 : 1);
            return;
        }
        m_now = arrival;
        for (int end = 0; end < 2; ++end)
            for (std::size_t count = m_flying[end].size(); count > 0; --count)
                Do(Act::Arrive, end);
    }

    Link m_ours;
    Link m_alike;
    std::unique_ptr<TableEnd> m_other; // in its place
    TimePoint m_now{Milliseconds(20000)};
    std::deque<Octets> m_flying[2]; // from this end
    int m_faults = 1;
    int m_target = Messages;
    int m_next[2]{};
    int m_last[2]{};
    int m_received[2]{};
    int m_lost[2]{};
    std::string m_wrong;
};

// All ways in which the first steps can go, each followed to its end.
class Explorer {
public:
    Explorer(bool table, TwoEnds::From from, std::size_t depth) : m_table(table), m_from(from), m_depth(depth)
    {
    }

    void Run() { Visit(); }

    long ways = 0;
    std::set<std::string> states;
    std::string failure;

private:
    using Choice = std::pair<TwoEnds::Act, int>;

    std::unique_ptr<TwoEnds> Replay() const
    {
        auto ends = std::make_unique<TwoEnds>(m_table, m_from);
        for (const auto& [act, end] : m_path)
            ends->Do(act, end);
        return ends;
    }
    void Visit()
    {
        const auto ends = Replay();
        states.insert(ends->Seen());
        if (m_path.size() == m_depth) {
            ++ways;
            Describe(ends->Finish());
            return;
        }
        using enum TwoEnds::Act;
        for (const auto act : {Arrive, Lose, ArriveTwice, TimeOut}) {
            for (int end = 0; end < 2 && failure.empty(); ++end) {
                if (!ends->IsPossible(act, end))
                    continue;
                m_path.emplace_back(act, end);
                Visit();
                m_path.pop_back();
            }
        }
    }
    void Describe(const std::string& wrong)
    {
        if (wrong.empty() || !failure.empty())
            return;
        static const char* const words[] = {"arrives", "is lost", "arrives twice", "times out"};
        failure = wrong + ':';
        for (const auto& [act, end] : m_path)
            failure += std::string(end == 0 ? " ours " : " other's ") + words[static_cast<int>(act)] + ',';
    }

    bool m_table;
    TwoEnds::From m_from;
    std::size_t m_depth;
    std::vector<Choice> m_path;
};

} // namespace

// In order, once, known when lost, and both ready in the end: whatever is lost, doubled or late, and
// whichever timer is due before.
TEST(Interleavings, AllOfTheFirstSteps)
{
    struct Case {
        const char* what;
        bool table;
        TwoEnds::From from;
    };
    using enum TwoEnds::From;
    const Case cases[] = {
        {"setting up, with its like", false, Beginning},
        {"setting up, with the table", true, Beginning},
        {"messages, with its like", false, Ready},
        {"messages, with the table", true, Ready},
        {"the other restarts, with its like", false, Restart},
        {"the other restarts, with the table", true, Restart},
    };
    constexpr std::size_t depth = 6; // 7 takes half a minute
    for (const Case& test : cases) {
        Explorer explorer(test.table, test.from, depth);
        explorer.Run();
        EXPECT_EQ(explorer.failure, "") << test.what;
        EXPECT_GT(explorer.ways, 1000) << test.what;
        std::printf("%s: %ld ways, %zu states as seen from outside\n", test.what, explorer.ways,
                    explorer.states.size());
    }
}
