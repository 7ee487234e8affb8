#include "Bench.h"

using map27::Milliseconds;
using Lines = std::vector<std::string>;

namespace {

struct Exchange {
    const char* sent; // a message in hexadecimal, or a command
    Lines answers;    // within 2 s
};

void Talk(RawBench& bench, const std::vector<Exchange>& exchanges)
{
    for (const auto& [sent, answers] : exchanges) {
        if (QByteArray(sent).front() >= 'a')
            EXPECT_EQ(bench.Execute(sent), "ok") << sent;
        else
            bench.Send(sent);
        bench.RunFor(Milliseconds(2000));
        EXPECT_EQ(bench.TakeMessages(), answers) << sent;
    }
}

const std::string statusToUnit20 = "80 00 00 02 00 05";

} // namespace

TEST(Diversion, CallsAndMessagesFollowThatOfAScenario)
{
    const sim::Scenario scenario = sim::ReadScenario(R"({"radio": {"prefix": 0, "ident": 3}, "fleet": [
        {"name": "A", "prefix": 0, "ident": 2, "divertTo": "B"},
        {"name": "B", "prefix": 0, "ident": 6, "call": "out-of-reach"}]})");
    RawBench bench(scenario);
    Talk(bench, {
                    {statusToUnit20.c_str(), {"D0 00 00 02 53 00 00 06 26", "C0 00 00 02 00 00"}},
                    {"A4 00 00 02 00 08", {"D4 00 00 02 53 00 00 06 26", "E4 00 00 02 00 04"}},
                    {"behave A diverted-nowhere", {}},
                    {statusToUnit20.c_str(), {"E0 00 00 02 53 00 00 06 0E"}},
                });
}

TEST(DataCall, ComesAndGoesWithARadioThatHasThem)
{
    sim::Scenario scenario = sim::LoadScenario("tour");
    scenario.radio.dataCalls = true;
    RawBench bench(scenario);
    Talk(bench, {
                    {"B0 00", {"B0 00 00 03 00 00 00 00 F8 00 80 FE"}},
                    {"A4 00 00 02 00 18", {"C4 00 00 02 00 00", "B2 06 9E FF"}},
                    {"hangup", {"86 00 00 02 0B", "B2 04 9E FF"}},
                    {"call Unit22 connected data", {"A4 00 00 04 00 10", "B2 06 9E FF"}},
                });
}

TEST(MediumText, TheNetworkMayRefuseOrSplitIt)
{
    sim::Scenario scenario = sim::LoadScenario("tour");
    const std::string head = "82 00 00 02 00 F7";
    std::string text = head;
    for (int i = 0; i < 30; ++i)
        text += " 41";
    const std::pair<sim::MediumTexts, Lines> cases[] = {
        {sim::MediumTexts::Carried, {"C0 00 00 02 00 00"}},
        {sim::MediumTexts::Refused, {"E0 00 00 02 00 0D"}},
        {sim::MediumTexts::Split, {"D0 00 00 02 00 22", "C0 00 00 02 00 00"}},
    };
    for (const auto& [medium, answers] : cases) {
        scenario.network.mediumTexts = medium;
        RawBench bench(scenario);
        Talk(bench, {{text.c_str(), answers}, {"81 00 00 02 00 F7 41", {"C0 00 00 02 00 00"}}});
    }
}

TEST(CallBack, HeCallsAsSoonAsTheRadioIsFree)
{
    TerminalBench bench;
    bench.Execute("behave Unit20 call-back 300 5000");
    bench.Deliver(bench.console.MakeCall({0, 2}, false, false, true, bench.now).output);
    bench.RunFor(Milliseconds(1000));
    bench.Execute("call Unit22 group"); // in the way for a while
    bench.RunFor(Milliseconds(5000));
    bench.Execute("hangup");
    bench.RunFor(Milliseconds(5000));
    const auto calls = bench.Events<map27::IncomingCall>();
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[1].from, (map27::Address{0, 2}));
    EXPECT_EQ(calls[1].flags, 8);
}

TEST(Storm, WhatTheConsoleCannotTakeYetWaits)
{
    TerminalBench bench(sim::LoadScenario("tour"), {.bitsPerSecond = 9600});
    bench.RunFor(Milliseconds(3000));
    bench.Forget();
    ASSERT_EQ(bench.Execute("storm 500"), "ok");
    bench.RunFor(Milliseconds(1000));
    bench.Deliver(bench.console.SendStatus({0, 2}, 5, bench.now).output);
    const auto asked = bench.now;
    while (bench.Events<map27::MessageProgress>().empty() && bench.now < asked + Milliseconds(5000))
        bench.RunFor(Milliseconds(10));
    // The network's 300 ms, the status, its answer, and the two messages that are ahead of it at most.
    EXPECT_LT(bench.now - asked, Milliseconds(1200));
    bench.RunFor(std::chrono::minutes(2));
    EXPECT_EQ(bench.Events<map27::StatusReceived>().size() + bench.Events<map27::TextReceived>().size(),
              500U);

    // A cable that is pulled out in the middle of a message costs none.
    bench.Forget();
    bench.Execute("storm 500");
    for (int i = 0; i < 3; ++i) {
        bench.RunFor(Milliseconds(7100));
        bench.Deliver(bench.simulation.ConsoleWent(bench.now));
        bench.console.Stop();
        bench.Deliver(bench.console.Start(bench.now));
        bench.Deliver(bench.simulation.ConsoleCame(bench.now));
    }
    bench.RunFor(std::chrono::minutes(2));
    const std::size_t came =
        bench.Events<map27::StatusReceived>().size() + bench.Events<map27::TextReceived>().size();
    EXPECT_GE(came, 500U);
    EXPECT_LE(came, 506U) << "two that were on their way may come twice each time";

    bench.Execute("storm 500");
    bench.Execute("restart");
    EXPECT_EQ(bench.notes.back(), "500 messages for the console are lost with the restart");
}
