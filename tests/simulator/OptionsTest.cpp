#include "simulator/program/Options.h"

#include <gtest/gtest.h>

TEST(Options, AllOfThem)
{
    const auto parsed = sim::ParseOptions({"--listen=[::1]:0", "--scenario", "s.json", "--speed", "1200",
                                           "--trace", "t", "--seed", "9", "--fault", "delay",
                                           "--fault=drop-frames=0.2", "--silent-after", "2.5"});
    const auto* options = std::get_if<sim::Options>(&parsed);
    ASSERT_TRUE(options);
    EXPECT_EQ(options->listenHost, "::1");
    EXPECT_EQ(options->listenPort, 0);
    EXPECT_EQ(options->scenario, "s.json");
    EXPECT_EQ(options->trace, "t");
    EXPECT_EQ(options->simulation.bitsPerSecond, 1200U);
    EXPECT_EQ(options->simulation.seed, 9U);
    EXPECT_EQ(options->simulation.faults.Of(sim::FaultKind::Delay), 500);
    EXPECT_EQ(options->simulation.faults.Of(sim::FaultKind::DropFrames), 0.2);
    EXPECT_EQ(options->simulation.silentAfter, map27::Milliseconds(2500));
    EXPECT_TRUE(std::holds_alternative<sim::HelpWanted>(sim::ParseOptions({"--pty", "x", "--help"})));
}

TEST(Options, AReplayTakesOthersThanASimulation)
{
    const auto parsed = sim::ParseOptions({"--pty", "x", "--replay", "t", "--fast", "--patience", "2.5"});
    const auto* options = std::get_if<sim::Options>(&parsed);
    ASSERT_TRUE(options);
    EXPECT_EQ(options->replay, "t");
    EXPECT_TRUE(options->replaySettings.fast && !options->replaySettings.withCommands);
    EXPECT_EQ(options->replaySettings.patience, map27::Milliseconds(2500));
    for (const QStringList& wrong : {QStringList{"--fast"}, QStringList{"--replay", "t", "--seed", "1"},
                                     QStringList{"--replay", "t", "--patience", "-1"}})
        EXPECT_TRUE(std::holds_alternative<sim::OptionsProblem>(
            sim::ParseOptions(QStringList{"--pty", "x"} + wrong)));
}
