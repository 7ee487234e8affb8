#include "Bench.h"

#include "map27/link/Framing.h"
#include "map27/link/LinkPackets.h"

#include <iostream>

using map27::Milliseconds;
using std::chrono::hours;
using Lines = std::vector<std::string>;

namespace {

std::string CallLine(bool emergency, unsigned flags, map27::Address from)
{
    return std::string(emergency ? "emergency " : "call ") + std::to_string(flags) + ' ' +
           map27::ToText(from);
}

// A message or event that the operator has to learn of, as one line; empty for all others.
struct RadioLine {
    std::string operator()(const map27::StatusMessage& m) const
    {
        return "status " + std::to_string(m.status) + ' ' + map27::ToText(m.party.address);
    }
    std::string operator()(const map27::ShortDataMessage& m) const
    {
        return "text " + map27::DecodeText(m.data) + ' ' + map27::ToText(m.party.address);
    }
    std::string operator()(const map27::CallMessage& m) const
    {
        return CallLine(m.emergency, m.details.octet, m.party.address);
    }
    std::string operator()(const map27::ClearMessage& m) const
    {
        return "cleared " + std::to_string(m.cause);
    }
    std::string operator()(const map27::AcknowledgementMessage& m) const
    {
        return std::to_string(m.TypeOctet()) + ' ' + std::to_string(m.cause);
    }
    template <typename Other> std::string operator()(const Other&) const { return {}; }
};

struct EventLine {
    std::string operator()(const map27::StatusReceived& e) const
    {
        return "status " + std::to_string(e.status) + ' ' + map27::ToText(e.from);
    }
    std::string operator()(const map27::TextReceived& e) const
    {
        return "text " + e.text + ' ' + map27::ToText(e.from);
    }
    std::string operator()(const map27::IncomingCall& e) const
    {
        return CallLine(e.type == map27::Type::EmergencyCall, e.flags, e.from);
    }
    std::string operator()(const map27::TransactionCleared& e) const
    {
        return e.by == map27::ClearedBy::Radio ? "cleared " + std::to_string(e.cause) : "";
    }
    template <typename Progress> std::string operator()(const Progress& e) const requires requires { e.code; }
    {
        return std::to_string(e.code) + ' ' + std::to_string(e.cause);
    }
    template <typename Other> std::string operator()(const Other&) const { return {}; }
};

// What the radio has said, by the frames on the wire: a repeated LT has the number of the one before.
Lines Said(const TerminalBench& bench)
{
    Lines lines;
    int last = -1;
    for (const sim::TracedFrame& one : bench.traced) {
        map27::FrameDecoder decoder;
        const auto bodies = decoder.Feed(one.frame);
        if (bodies.empty() || one.direction != map27::Direction::FromRadio)
            continue;
        const map27::Octets& body = bodies.front();
        if (body[0] == map27::packet::LinkRequest)
            last = -1;
        if (body[0] != map27::packet::LinkTransfer || body[1] == last)
            continue;
        last = body[1];
        const auto message =
            map27::DecodeFromRadio(map27::OctetSpan(body).subspan(map27::packet::HeaderOctets));
        const std::string line = std::visit(RadioLine{}, std::get<map27::FromRadio>(message));
        if (!line.empty())
            lines.push_back(line);
    }
    return lines;
}

Lines Heard(const TerminalBench& bench)
{
    Lines lines;
    for (const auto& one : bench.seen) {
        if (const std::string line = std::visit(EventLine{}, one.event); !line.empty())
            lines.push_back(line);
    }
    return lines;
}

// How many of `all` are missing in `part`, which must have the others in the same order and nothing else.
std::size_t Missing(const Lines& part, const Lines& all)
{
    std::size_t next = 0;
    for (const std::string& line : all)
        next += next < part.size() && part[next] == line;
    EXPECT_EQ(next, part.size()) << "not in order, or twice: " << (next < part.size() ? part[next] : "");
    return all.size() - next;
}

// A dispatcher who takes calls, calls and sends, one thing after another.
class Dispatcher {
public:
    explicit Dispatcher(TerminalBench& bench) : m_bench(bench) {}

    void WorkFor(map27::Milliseconds duration)
    {
        for (const auto end = m_bench.now + duration; m_bench.now < end;) {
            Act();
            m_bench.RunFor(std::chrono::seconds(9));
            if (m_bench.console.State() == map27::TerminalState::Active)
                m_bench.Deliver(m_bench.console.ClearCall(m_bench.now));
            m_bench.RunFor(std::chrono::seconds(36));
        }
    }

    Lines sent; // as the simulated network describes it

private:
    void Act()
    {
        const auto state = m_bench.console.State();
        if (state == map27::TerminalState::IncallWait)
            m_bench.Deliver(m_bench.console.AnswerCall(m_bench.now).output);
        if (state != map27::TerminalState::Idle)
            return;
        const auto& members = m_bench.simulation.SimulatedRadio().CurrentScenario().fleet.members;
        const sim::Subscriber& member = members[static_cast<std::size_t>(m_turn * 7) % members.size()];
        const unsigned code = static_cast<unsigned>(m_turn) % 32;
        const std::string text = "Order " + std::to_string(m_turn);
        const auto now = m_bench.now;
        switch (m_turn++ % 3) {
        case 0:
            return Take("status " + std::to_string(code), member,
                        m_bench.console.SendStatus(member.address, code, now));
        case 1:
            return Take("text \"" + text + '"', member,
                        m_bench.console.SendText(member.address, text, map27::TextCoding::SevenBit, now));
        default:
            return Take("call", member, m_bench.console.MakeCall(member.address, false, false, true, now));
        }
    }

    void Take(const std::string& what, const sim::Subscriber& to, const map27::OperationResult& result)
    {
        m_bench.Deliver(result.output);
        if (!result.refusal)
            sent.push_back(what + " to " + to.name + " (" + map27::ToText(to.address) + ')');
    }

    TerminalBench& m_bench;
    int m_turn = 0;
};

void ExpectNothingWrong(const map27::LinkCounters& counters)
{
    EXPECT_EQ(counters.framing, (map27::FramingCounters{.frames = counters.framing.frames}));
    for (const std::uint64_t count : {counters.sequenceErrors, counters.noBuffer, counters.malformed,
                                      counters.unknownPackets, counters.resets, counters.messagesLost})
        EXPECT_EQ(count, 0U);
}

// On a good line nothing is ever repeated.
void ExpectNothingWrong(const map27::LinkCounters& one, const map27::LinkCounters& other)
{
    ExpectNothingWrong(one);
    ExpectNothingWrong(other);
    for (const std::uint64_t count :
         {one.retransmissions, other.retransmissions, one.duplicates, other.duplicates})
        EXPECT_EQ(count, 0U);
}

void ExpectNothingWrong(const map27::TerminalCounters& counters)
{
    for (const std::uint64_t count :
         {counters.undecodable, counters.statusOutOfRange, counters.unknownCodings, counters.late,
          counters.unanswered, counters.notUsed})
        EXPECT_EQ(count, 0U);
}

} // namespace

TEST(Day, EveryMessageOfABusyOneIsAccountedFor)
{
    TerminalBench bench(sim::LoadScenario("busy-day"), {.bitsPerSecond = 9600});
    bench.RunFor(std::chrono::seconds(1));
    EXPECT_TRUE(bench.Events<map27::StatusReceived>().empty());
    Dispatcher dispatcher(bench);
    dispatcher.WorkFor(hours(24));

    EXPECT_EQ(Heard(bench), Said(bench));
    EXPECT_EQ(bench.requests, dispatcher.sent);
    EXPECT_GT(bench.Events<map27::StatusReceived>().size(), 900U);
    EXPECT_GT(bench.Events<map27::TextReceived>().size(), 1000U);
    EXPECT_GT(bench.Events<map27::IncomingCall>().size(), 250U);
    EXPECT_GT(dispatcher.sent.size(), 1500U);
    ExpectNothingWrong(bench.console.LinkCounters(), bench.simulation.SimulatedRadio().LinkCounters());
    ExpectNothingWrong(bench.console.Counters());
    const auto first = std::ranges::find_if(
        bench.seen, [](const auto& one) { return std::holds_alternative<map27::StatusReceived>(one.event); });
    EXPECT_LT(first->at, std::chrono::seconds(10));
}

TEST(Day, TheDispatchersOwnStatusGetsThroughAStorm)
{
    TerminalBench bench(sim::LoadScenario("storm"), {.bitsPerSecond = 9600});
    std::vector<Milliseconds> waits;
    const auto end = bench.now + hours(24);
    for (auto next = bench.now; next < end; next += std::chrono::seconds(7)) {
        bench.RunFor(std::chrono::duration_cast<Milliseconds>(next - bench.now));
        const auto asked = bench.now;
        const auto result = bench.console.SendStatus({0, 20}, 5, asked);
        bench.Deliver(result.output);
        while (!result.refusal && bench.console.State() == map27::TerminalState::MessageWait)
            bench.RunFor(Milliseconds(10));
        if (!result.refusal)
            waits.push_back(std::chrono::duration_cast<Milliseconds>(bench.now - asked));
    }
    EXPECT_EQ(Heard(bench), Said(bench));
    EXPECT_GE(bench.Events<map27::StatusReceived>().size() + bench.Events<map27::TextReceived>().size(),
              144U * 500U);
    ExpectNothingWrong(bench.console.LinkCounters(), bench.simulation.SimulatedRadio().LinkCounters());
    ASSERT_GT(waits.size(), 10000U); // the others met a call
    const auto longest = *std::ranges::max_element(waits);
    const auto shortest = *std::ranges::min_element(waits);
    std::cout << "a status of the dispatcher's own waited " << shortest.count() << " to " << longest.count()
              << " ms, 300 of them in the network\n";
    // The network's 300 ms, and on the line the longest message under way, two more, and the answer.
    EXPECT_LT(longest, Milliseconds(1000));
}

// What is lost is lost with a link and counted there; nothing comes twice or out of order, and both ends are
// ready again.
TEST(Day, NothingIsLostOnABadLineButWithALink)
{
    using enum sim::FaultKind;
    const struct {
        std::map<sim::FaultKind, double> faults;
        Milliseconds duration;
        std::uint64_t seeds;
    } days[] = {
        {{{DropFrames, 0.1}, {DuplicateLt, 0.1}, {Noise, 0.1}, {Delay, 200}}, hours(24), 1},
        {{{DropFrames, 0.15}, {WrongFcs, 0.15}, {Noise, 0.3}, {Delay, 900}}, std::chrono::minutes(30), 20},
    };
    for (const auto& [faults, duration, seeds] : days) {
        for (std::uint64_t seed = 1; seed <= seeds; ++seed) {
            sim::SimulationSettings settings{.bitsPerSecond = 9600, .seed = seed};
            for (const auto& [kind, value] : faults)
                settings.faults.Set(kind, value);
            TerminalBench bench(sim::LoadScenario("busy-day"), settings);
            Dispatcher dispatcher(bench);
            dispatcher.WorkFor(duration);
            for (const auto& [kind, value] : faults)
                bench.Execute("fault " + std::string(sim::DescriptionOf(kind).word) + " off");
            bench.RunFor(std::chrono::minutes(2));

            const auto& radio = bench.simulation.SimulatedRadio();
            const auto lostByRadio = radio.LinkCounters().messagesLost;
            const auto lostByConsole = bench.console.LinkCounters().messagesLost;
            EXPECT_LE(Missing(Heard(bench), Said(bench)), lostByRadio + bench.console.Counters().late)
                << seed;
            EXPECT_LE(Missing(bench.requests, dispatcher.sent), lostByConsole) << seed;
            EXPECT_TRUE(bench.console.IsLinkReady() && radio.IsLinkReady()) << seed;
            EXPECT_GT(bench.console.LinkCounters().messagesIn, 20U);
            EXPECT_LE(radio.Waiting(), 2U);
        }
    }
}

// Without a dispatcher who is in the way, every event of the shipped scenarios can happen when it is due.
TEST(Day, TheShippedScenariosRunAsTheyAreWritten)
{
    for (const char* name : {"quiet-day", "busy-day", "storm", "training"}) {
        TerminalBench bench(sim::LoadScenario(name), {.bitsPerSecond = 9600});
        bench.RunFor(hours(5));
        for (const std::string& note : bench.notes) {
            // Outstations report when they like.
            EXPECT_TRUE(note == "link ready" || note.starts_with("report of ")) << name << ": " << note;
        }
        EXPECT_FALSE(bench.Events<map27::IncomingCall>().empty()) << name;
        EXPECT_EQ(bench.simulation.SimulatedRadio().CallState(), sim::CallService::State::Idle) << name;
    }
}
