#include "Bench.h"

using map27::Milliseconds;
using Lines = std::vector<std::string>;

namespace {

struct RawCase {
    const char* name;
    const char* before; // command, or a message in hexadecimal; may be empty
    const char* message;
    Lines answers; // within 400 ms
};

class RawMessage : public testing::TestWithParam<RawCase> {};

// Idle, in a call with Unit20, being set up, ringing.
constexpr const char* idle = "";
constexpr const char* inCall = "A4 00 00 02 00 08";
constexpr const char* settingUp = "A4 00 00 0A 00 08"; // Unit28 never answers
constexpr const char* ringing = "call Unit22";

} // namespace

TEST_P(RawMessage, IsAnswered)
{
    RawBench bench;
    const std::string before = GetParam().before;
    if (before.starts_with("A4")) {
        bench.Send(before);
    } else if (!before.empty()) {
        ASSERT_EQ(bench.Execute(before), "ok");
    }
    bench.RunFor(Milliseconds(400));
    bench.TakeMessages();

    bench.Send(GetParam().message);
    bench.RunFor(Milliseconds(400));
    EXPECT_EQ(bench.TakeMessages(), GetParam().answers);
}

INSTANTIATE_TEST_SUITE_P(
    All, RawMessage,
    testing::Values(
        // What the radio is.
        RawCase{"Personality", idle, "B0 00", {"B0 00 00 03 00 00 00 00 B8 00 80 FE"}},
        RawCase{
            "Numbering", idle, "B0 01", {"B1 00 00 03 00 02 00 47 1B 58 1B 61 00 1B 58 00 1B 59 00 1B 5A"}},
        RawCase{"Settings", idle, "B0 02", {"B3 B8 00 00 FE"}},
        RawCase{"Condition", idle, "B0 03", {"B2 04 9E FF"}},
        RawCase{"ConditionInCall", inCall, "B0 03", {"B2 06 9E FF"}},
        RawCase{"ConditionOutOfContact", "contact lost", "B0 03", {"B2 00 00 FF"}},
        RawCase{"Network", idle, "B0 04", {"B5 01 45 2A 17"}},
        RawCase{"UnknownQuestion", idle, "B0 85", {"B4 02"}},
        RawCase{"NewSettings", idle, "B3 60 00 00 06", {"B3 20 00 00 06"}},
        RawCase{"SettingsOfAnOldConsole", idle, "B3 10 00 00", {"B3 10 00 00 FE"}},
        // What it does not know or have.
        RawCase{"UnknownType", idle, "20 01", {"B4 01"}},
        RawCase{"ReservedType", idle, "C9 00 00", {"B4 01"}}, RawCase{"TooShort", idle, "80 00", {"B4 01"}},
        RawCase{"Escape", idle, "00 01", {"B4 01"}}, RawCase{"ModemData", idle, "A3 01", {"B4 01"}},
        RawCase{"Diversion", idle, "87 00 00 02 00 00", {"B4 01"}},
        RawCase{"DiversionCancel", idle, "A7 00 00 02 00 01", {"B4 01"}},
        RawCase{"DataCall", idle, "A4 00 00 02 00 18", {"B4 02"}},
        RawCase{"Include", idle, "A4 00 00 02 00 48", {"B4 01"}}, RawCase{"Volume", idle, "B6 01 93", {}},
        // Addresses.
        RawCase{"ToNobody", idle, "80 00 00 00 00 05", {"B4 02"}},
        RawCase{"ToReservedIdent", idle, "80 00 1F FA 00 05", {"B4 02"}},
        RawCase{"StatusToPstn", idle, "80 00 1F A5 11 12 05", {"B4 02"}},
        RawCase{"PstnWithoutNumber", idle, "A4 00 1F A5 00 08", {"B4 02"}},
        RawCase{"ReservedDescription", idle, "80 00 00 02 91 00 05", {"B4 02"}},
        RawCase{"OtherPrefix", idle, "80 05 00 02 00 05", {"E0 00 00 00 00 03"}},
        RawCase{"Everybody", idle, "A4 00 1F FF 00 28", {"C4 00 1F FF 00 00", "B2 06 9E FF"}},
        RawCase{"PabxExtension", idle, "A4 00 12 67 31 20 08", {"D4 00 12 67 00 01"}},
        RawCase{"PstnAcknowledgedWithoutDigits", idle, "A4 00 1F A5 12 99 9F 08", {"E4 00 1F A5 00 0C"}},
        RawCase{"StoredNumber", idle, "A4 00 1F B9 00 08", {"D4 00 1F B9 00 01"}},
        // Data.
        RawCase{"StatusOutOfRange", idle, "80 00 00 02 00 20", {"B4 04"}},
        RawCase{"ReservedCoding", idle, "81 00 00 02 00 C7 41", {"B4 04"}},
        RawCase{"NotSevenBit", idle, "81 00 00 02 00 B7 E1", {"A6 00 00 02 06"}},
        RawCase{"NotADigit", idle, "81 00 00 02 00 17 41", {"A6 00 00 02 06"}},
        RawCase{"TooLong",
                idle,
                "81 00 00 02 00 F7 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41",
                {"A6 00 00 02 05"}},
        RawCase{"RegroupCommand", idle, "81 00 00 02 00 87 56 4B 01 01 03 00 1B 58", {"C0 00 00 02 00 00"}},
        // At the wrong time.
        RawCase{"NoContact", "contact lost", "A4 00 00 02 00 08", {"A6 00 00 00 04"}},
        RawCase{"StatusInCall", inCall, "80 00 00 02 00 05", {"B4 03"}},
        RawCase{"IncludeInCall", inCall, "A4 00 00 09 00 48", {"B4 01"}},
        RawCase{"SecondCall", settingUp, "A4 00 00 02 00 08", {"B4 03"}},
        RawCase{"KeyOutsideACall", idle, "B2 03", {"B4 03"}},
        RawCase{"OffHookIdle", idle, "B2 02", {"B4 03"}},
        RawCase{"OnHookIdle", idle, "B2 00", {"B2 04 9E FF"}},
        RawCase{"KeyWhileRinging", ringing, "B2 03", {"B4 03"}},
        RawCase{"KeyWhileSettingUp", settingUp, "B2 03", {"B4 03"}},
        RawCase{"KeyInCall", inCall, "B2 03", {"B2 07 9E FF"}},
        // Ends.
        RawCase{"HookInCall", inCall, "B2 00", {"B2 04 9E FF"}},
        RawCase{"KeyWithHookDown", inCall, "B2 01", {"B2 04 9E FF"}},
        RawCase{"Disconnect", inCall, "86 00 00 02 07", {"B2 04 9E FF"}},
        RawCase{"CancelCrossingTheConnection", inCall, "A6 00 00 02 08", {"B2 04 9E FF"}},
        RawCase{"CancelSetUp", settingUp, "A6 00 00 0A 08", {"E4 00 00 0A 00 08"}},
        RawCase{"HookWhileSettingUp", settingUp, "B2 00", {"E4 00 00 0A 00 08"}},
        RawCase{"CancelRinging", ringing, "A6 00 00 04 08", {"B2 04 9E FF"}},
        RawCase{"DisconnectIdle", idle, "86 00 00 02 07", {}},
        RawCase{"CancelIdle", idle, "A6 00 00 02 08", {}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Radio, AKeyPressedTooEarlyEndsTheAttempt)
{
    RawBench bench;
    bench.Send(settingUp);
    bench.Send("B2 03");
    bench.RunFor(Milliseconds(60000));
    EXPECT_EQ(bench.TakeMessages(), Lines{"B4 03"}); // never a connection that the console does not know of
    EXPECT_EQ(bench.simulation.SimulatedRadio().CallState(), sim::CallService::State::Idle);
}

TEST(Radio, WhatTheConsoleSwitchesOffDoesNotArrive)
{
    RawBench bench;
    bench.Send("B3 30 00 00 FE"); // status and short texts only
    bench.TakeMessages();
    const std::string off = "error the console has switched this kind of message or call off";
    EXPECT_EQ(bench.Execute("call Unit22"), off);
    EXPECT_EQ(bench.Execute("text Unit20 a text that does not fit into a short message"), off);
    EXPECT_TRUE(bench.TakeMessages().empty());
    EXPECT_EQ(bench.Execute("text Unit20 short"), "ok");
    EXPECT_EQ(bench.Execute("status Unit20 5"), "ok");
    EXPECT_EQ(bench.TakeMessages().back(), "80 00 00 02 00 05");
}

TEST(Radio, ANewOwnNumberIsReportedUnasked)
{
    TerminalBench bench;
    ASSERT_EQ(bench.Execute("numbering 5/1207 units 1000 1999 3"), "ok");
    const auto reports = bench.Events<map27::NumberingReceived>();
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0].info.radio, (map27::Address{5, 1207}));
    EXPECT_EQ(reports[0].info.individuals, (map27::IdentRange{1000, 1999, true}));
    EXPECT_EQ(reports[0].info.groups, (map27::IdentRange{7000, 7009, false})); // kept
    // To what is another prefix now the radio acknowledges without an address.
    bench.Deliver(bench.console.SendStatus({0, 2}, 1, bench.now).output);
    bench.RunFor(Milliseconds(400));
    EXPECT_TRUE(std::ranges::any_of(bench.traced, [](const sim::TracedFrame& frame) {
        return map27::ToHex(frame.frame).find("C0 00 00 00 00 00") != std::string::npos;
    }));
    EXPECT_EQ(bench.Events<map27::MessageProgress>().back().code, 192);
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
