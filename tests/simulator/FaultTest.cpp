#include "Bench.h"

#include "map27/link/Framing.h"

using map27::Milliseconds;

namespace {

struct FaultCase {
    const char* command;
    // What has to be seen of it: in the trace, or among the console's counters.
    std::function<std::uint64_t(const TerminalBench&)> count;
};

std::uint64_t Traced(const TerminalBench& bench, std::string_view fault)
{
    return static_cast<std::uint64_t>(std::ranges::count(bench.traced, fault, &sim::TracedFrame::fault));
}

std::uint64_t TracedHex(const TerminalBench& bench, const std::string& part)
{
    return static_cast<std::uint64_t>(std::ranges::count_if(bench.traced, [&](const sim::TracedFrame& one) {
        return map27::ToHex(one.frame).find(part) != std::string::npos;
    }));
}

// A conversation of both sides with questions and calls: everything must arrive once and in order, whatever
// is wrong.
void Converse(TerminalBench& bench, int rounds)
{
    for (int i = 0; i < rounds; ++i) {
        bench.Execute("status Unit22 " + std::to_string(i % 32));
        bench.Deliver(bench.console.SendStatus({0, 2}, 7, bench.now).output);
        bench.RunFor(std::chrono::seconds(30));
        bench.Deliver(bench.console.RequestRadioInfo(i % 2 == 0 ? 2 : 4, bench.now).output);
        bench.Execute("call Unit22 connected");
        bench.RunFor(std::chrono::seconds(30));
        bench.Execute("hangup");
        bench.RunFor(std::chrono::seconds(30));
    }
}

} // namespace

// Faults of which the standard's procedures take care: nothing of them may be felt.
TEST(Fault, TheConsoleLivesWithEachOfThem)
{
    const FaultCase cases[] = {
        {"fault bit-errors 0.002", [](const TerminalBench& b) { return Traced(b, "bit-errors"); }},
        {"fault drop-frames 0.2", [](const TerminalBench& b) { return Traced(b, "drop-frames"); }},
        {"fault wrong-fcs 0.2",
         [](const TerminalBench& b) { return b.console.LinkCounters().framing.wrongFcs; }},
        {"fault lost-la 0.2", [](const TerminalBench& b) { return Traced(b, "lost-la"); }},
        {"fault duplicate-lt 1", [](const TerminalBench& b) { return b.console.LinkCounters().duplicates; }},
        {"fault noise 0.3",
         [](const TerminalBench& b) { return b.console.LinkCounters().framing.noiseOctets; }},
        {"fault delay 800", [](const TerminalBench& b) { return b.console.LinkCounters().messagesIn; }},
        {"fault no-credit 0.3", [](const TerminalBench& b) { return Traced(b, "no-credit"); }},
        {"fault flag-fcs", [](const TerminalBench& b) { return Traced(b, "flag-fcs"); }},
        {"fault no-ident", [](const TerminalBench& b) { return TracedHex(b, "C0 00 00 00 00 00"); }},
        {"fault extra-octets", [](const TerminalBench& b) { return TracedHex(b, "C0 00 00 02 00 00 5A"); }},
        {"fault unknown-types 0.5", [](const TerminalBench& b) { return b.console.Counters().undecodable; }},
        {"fault short-settings", [](const TerminalBench& b) { return TracedHex(b, "B3 B8 00 00 10 03"); }},
        {"fault high-network-bits", [](const TerminalBench& b) { return TracedHex(b, "B5 41 45 2A 17"); }},
        {"fault connected-twice", [](const TerminalBench& b) { return TracedHex(b, "C5 00 00 04 00 00"); }},
    };
    constexpr int rounds = 30;
    for (const auto& [command, count] : cases) {
        TerminalBench bench(sim::LoadScenario("tour"), {.bitsPerSecond = 9600});
        bench.RunFor(std::chrono::seconds(10));
        bench.Forget();
        ASSERT_EQ(bench.Execute(command), "ok");
        Converse(bench, rounds);
        EXPECT_GT(count(bench), 0U) << command;

        std::vector<int> received;
        for (const auto& status : bench.Events<map27::StatusReceived>())
            received.push_back(status.status);
        ASSERT_EQ(received.size(), rounds) << command;
        for (int i = 0; i < rounds; ++i)
            EXPECT_EQ(received[static_cast<std::size_t>(i)], i % 32) << command;
        const auto progress = bench.Events<map27::MessageProgress>();
        EXPECT_EQ(progress.size(), rounds) << command;
        for (const auto& one : progress)
            EXPECT_EQ(one.code, 192) << command;
        EXPECT_EQ(bench.Events<map27::IncomingCall>().size(), rounds) << command;
        const auto cleared = bench.Events<map27::TransactionCleared>();
        EXPECT_EQ(cleared.size(), rounds) << command;
        EXPECT_EQ(bench.Events<map27::SettingsReceived>().size() +
                      bench.Events<map27::NetworkInfoReceived>().size(),
                  rounds)
            << command;
        EXPECT_TRUE(bench.Events<map27::LinkFailed>().empty()) << command;
        EXPECT_EQ(bench.console.Counters().late, 0U) << command;
    }
}

TEST(Fault, ARequestForANewLinkInTheMiddleIsSurvived)
{
    TerminalBench bench;
    ASSERT_EQ(bench.Execute("fault stray-lr 0.2"), "ok");
    Converse(bench, 20);
    EXPECT_GT(Traced(bench, "stray-lr"), 3U);
    EXPECT_FALSE(bench.Events<map27::LinkFailed>().empty());
    EXPECT_EQ(bench.Execute("fault stray-lr off"), "ok");
    bench.RunFor(std::chrono::minutes(1));
    bench.Forget();
    Converse(bench, 5);
    EXPECT_EQ(bench.Events<map27::StatusReceived>().size(), 5U);
    EXPECT_TRUE(bench.console.IsLinkReady());
}

// Both octets of each check sequence look like a flag, and repeated ones are the same.
TEST(Fault, FlagsInTheCheckSequence)
{
    TerminalBench bench;
    bench.Execute("fault flag-fcs");
    Converse(bench, 5);
    for (const sim::TracedFrame& one : bench.traced) {
        if (one.fault != "flag-fcs")
            continue;
        for (const std::uint8_t octet : {one.frame[one.frame.size() - 2], one.frame.back()})
            EXPECT_TRUE(octet == 0x02 || octet == 0x03 || octet == 0x10 || octet == 0x16);
    }
}
