#include "simulator/program/Options.h"

#include <gtest/gtest.h>

TEST(Options, WrongOnesAreExplained)
{
    const std::pair<QStringList, const char*> cases[] = {
        {{}, "one of --pty and --listen is needed; --help explains them"},
        {{"--pty", "a", "--listen", "b:1"}, "one of --pty and --listen is needed; --help explains them"},
        {{"--pty"}, "Missing value after '--pty'. --help lists the switches."},
        {{"--pty="}, "--pty: its value is empty"},
        {{"radio"}, "unknown argument: radio"},
        {{"--pty", "a", "--rain"}, "Unknown option 'rain'. --help lists the switches."},
        {{"--listen", "host"}, "--listen: \"host\" is not HOST:PORT with a port from 0 to 65535"},
        {{"--listen", ":5"}, "--listen: \":5\" is not HOST:PORT with a port from 0 to 65535"},
        {{"--listen", "h:70000"}, "--listen: \"h:70000\" is not HOST:PORT with a port from 0 to 65535"},
        {{"--speed", "10"}, "--speed: \"10\" is neither 0 nor 50 to 1000000"},
        {{"--seed", "-1"}, "--seed: \"-1\" is not a whole number from 0"},
        {{"--fault", "noise=1.5"}, "--fault: noise must be off or 0 to 1, not \"1.5\""},
        {{"--fault", "noise=nan"}, "--fault: noise must be off or 0 to 1, not \"nan\""},
        {{"--fault", "rain"},
         "--fault: unknown fault \"rain\"; known are bit-errors, drop-frames, wrong-fcs, lost-la, "
         "duplicate-lt, "
         "noise, delay, no-credit, stray-lr, flag-fcs, no-ident, extra-octets, unknown-types, "
         "short-settings, "
         "high-network-bits, connected-twice"},
        {{"--silent-after", "x"}, "--silent-after: \"x\" is not a number from 0 to 2592000"},
    };
    for (const auto& [arguments, reason] : cases) {
        const auto parsed = sim::ParseOptions(arguments);
        const auto* problem = std::get_if<sim::OptionsProblem>(&parsed);
        ASSERT_TRUE(problem) << reason;
        EXPECT_EQ(problem->reason, reason);
    }
}

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
