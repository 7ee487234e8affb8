#include "Bench.h"

#include <set>

using map27::Milliseconds;

namespace {

constexpr map27::Address plant{0, 12};

std::vector<std::string> Reports(const TerminalBench& bench)
{
    std::vector<std::string> texts;
    for (const auto& text : bench.Events<map27::TextReceived>()) {
        EXPECT_EQ(text.from, plant);
        texts.push_back(text.text);
    }
    return texts;
}

} // namespace

// The tour's outstation begins with sensors 0 and 2 and control 0 on.
TEST(Outstation, EveryCommandIsAnsweredByItsReport)
{
    const struct {
        std::vector<unsigned> commands;
        std::string report;
    } steps[] = {
        {{9}, "I:00000101"},
        {{19}, "O:00000001"},
        {{17}, "O:10000001"},
        {{0}, "O:10000000"},
        {{18}, "B:0000010111111111"},
        {{7}, "O:01111111"},
        {{8}, "B:0000010100000000"},
        {{10}, "O:00000001"},
        {{9, 19}, "B:0000010100000001"}, // asked for both within one report's time
    };
    TerminalBench bench;
    std::set<map27::Coding> codings;
    for (const auto& [commands, report] : steps) {
        bench.Forget();
        for (const unsigned command : commands) {
            bench.Deliver(bench.console.SendStatus(plant, command, bench.now).output);
            bench.RunFor(Milliseconds(400));
        }
        bench.RunFor(Milliseconds(800));
        EXPECT_EQ(Reports(bench), std::vector<std::string>{report}) << commands.front();
        for (const auto& text : bench.Events<map27::TextReceived>())
            codings.insert(text.coding);
    }
    EXPECT_EQ(codings, (std::set{map27::Coding::Ccitt5, map27::Coding::PcCharacters}));
    EXPECT_EQ(bench.Execute("signals plant30"), "ok sensors 00000101 controls 00000001");

    bench.Forget();
    bench.Execute("sensor Plant30 7 unknown");
    bench.Execute("control Plant30 1 unknown");
    bench.Deliver(bench.console.SendStatus(plant, 20, bench.now).output); // no command
    bench.RunFor(Milliseconds(5000));
    EXPECT_EQ(Reports(bench), std::vector<std::string>{"B:?0000101000000?1"});
}

TEST(Outstation, WhatItDoesNotGetItDoesNotDo)
{
    TerminalBench bench;
    bench.Execute("behave Plant30 refuses");
    bench.Deliver(bench.console.SendStatus(plant, 18, bench.now).output);
    bench.RunFor(Milliseconds(5000));
    EXPECT_EQ(bench.Events<map27::MessageProgress>().back().code, 224);
    EXPECT_TRUE(Reports(bench).empty());
    EXPECT_EQ(bench.Execute("signals Plant30"), "ok sensors 00000101 controls 00000001");
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
    const auto reports = Reports(bench);
    EXPECT_GE(reports.size(), 120U);
    EXPECT_GE(std::ranges::count_if(reports, [](const auto& text) { return text.starts_with("B:"); }), 18);
    EXPECT_TRUE(std::ranges::any_of(reports, [](const auto& text) { return text.find('?') != text.npos; }));
    const std::string state = bench.Execute("signals Plant30").substr(11, 8);
    EXPECT_EQ(reports.back().substr(2, 8), state);
}
