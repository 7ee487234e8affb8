// What the simulated radio does by itself, and what needs more than a conversation.

#include "Bench.h"

#include <set>

using map27::Milliseconds;

namespace {

constexpr map27::Address plant{0, 12};

struct TextCase {
    const char* command;
    const char* text;
    std::size_t octets; // on the wire, a full codeword count
};

TEST(Command, OneServiceOfAMemberCanChangeItsBehaviour)
{
    TerminalBench bench;
    EXPECT_EQ(bench.Execute("behave unit20 text overload 10"), "ok");
    EXPECT_NE(bench.Execute("list").find("Unit20 0/2 unit status answers text overload call answers "
                                         "regroup answers\n"),
              std::string::npos);
}

TEST(Command, HelpListsEveryCommandItKnows)
{
    TerminalBench bench;
    const std::string help = '\n' + bench.Execute("help");
    for (const char* word :
         {"status", "text",   "call",    "pstn-call", "pabx-call", "hangup",  "contact", "field",
          "behave", "sensor", "control", "numbering", "groups",    "signals", "restart", "storm",
          "fault",  "silent", "state",   "last",      "list",      "help"})
        EXPECT_NE(help.find(std::string("\n  ") + word + ' '), std::string::npos) << word;
    EXPECT_TRUE(help.ends_with("\nok"));
}

TEST(Radio, TheFieldStrengthWandersWithinItsRange)
{
    sim::Scenario scenario = sim::LoadScenario("tour");
    scenario.network.field = {150, 170, Milliseconds(10000)};
    TerminalBench bench(scenario);
    bench.RunFor(std::chrono::minutes(30));
    const auto reports = bench.Events<map27::OperatingConditionReceived>();
    EXPECT_GT(reports.size(), 90U);
    for (const auto& report : reports) {
        EXPECT_GE(report.info.fieldStrength, 150);
        EXPECT_LE(report.info.fieldStrength, 170);
    }
    EXPECT_EQ(bench.Execute("field 7"), "ok");
    bench.Forget();
    bench.RunFor(std::chrono::minutes(30));
    EXPECT_TRUE(bench.Events<map27::OperatingConditionReceived>().empty());
    EXPECT_EQ(bench.simulation.SimulatedRadio().Condition().fieldStrength, 7);
}

TEST(ReceivedText, ArrivesPaddedAndIsReadAsItWasWritten)
{
    const TextCase cases[] = {
        {"text Unit20 I:01100110", "I:01100110", 12},
        {"text Unit20 8 I:01100110", "I:01100110", 11},
        {"text Unit20 B:0110011010011001", "B:0110011010011001", 18},
        {"text 0/2 8 Grüße", "Grüße", 5},
        {"text Unit20 7", "7", 5},
        {"text Unit20 7  two  blanks", " two  blanks", 12},
        {"text Unit20 A text of more than one short message", "A text of more than one short message", 37}};
    for (const TextCase& row : cases) {
        // Every seed pads in its own way.
        for (std::uint64_t seed = 1; seed <= 6; ++seed) {
            const sim::Scenario scenario = sim::LoadScenario("tour");
            RawBench raw(scenario, {.bitsPerSecond = 0, .seed = seed});
            ASSERT_EQ(raw.Execute(row.command), "ok");
            const auto messages = raw.Events<map27::MessageReceived>();
            ASSERT_EQ(messages.size(), 1U);
            EXPECT_EQ(messages[0].message.size(), 6 + row.octets);

            TerminalBench bench(scenario, {.bitsPerSecond = 0, .seed = seed});
            ASSERT_EQ(bench.Execute(row.command), "ok");
            const auto texts = bench.Events<map27::TextReceived>();
            ASSERT_EQ(texts.size(), 1U);
            EXPECT_EQ(texts[0].text, row.text);
            EXPECT_EQ(texts[0].from, (map27::Address{0, 2}));
        }
    }
}

TEST(Outstation, ReportsInEitherCoding)
{
    TerminalBench bench;
    std::set<map27::Coding> codings;
    for (int i = 0; i < 9; ++i) {
        bench.Deliver(bench.console.SendStatus(plant, 9, bench.now).output);
        bench.RunFor(Milliseconds(1200));
    }
    for (const auto& text : bench.Events<map27::TextReceived>())
        codings.insert(text.coding);
    EXPECT_EQ(codings, (std::set{map27::Coding::Ccitt5, map27::Coding::PcCharacters}));
}

TEST(Outstation, SensorsChangeByThemselvesAndSayWhatTheyAre)
{
    sim::Scenario scenario = sim::LoadScenario("tour");
    sim::OutstationSettings& settings = scenario.fleet.Find("Plant30")->outstation;
    settings.changeEvery = Milliseconds(10000);
    settings.reportEvery = Milliseconds(65000);
    settings.coding = map27::TextCoding::EightBit;
    TerminalBench bench(scenario);
    bench.RunFor(std::chrono::minutes(20));
    std::vector<std::string> reports;
    for (const auto& text : bench.Events<map27::TextReceived>()) {
        EXPECT_EQ(text.from, plant);
        reports.push_back(text.text);
    }
    EXPECT_GE(reports.size(), 120U);
    EXPECT_GE(std::ranges::count_if(reports, [](const auto& text) { return text.starts_with("B:"); }), 18);
    EXPECT_TRUE(std::ranges::any_of(reports, [](const auto& text) { return text.find('?') != text.npos; }));
    const std::string state = bench.Execute("signals Plant30").substr(11, 8);
    EXPECT_EQ(reports.back().substr(2, 8), state);
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

} // namespace
