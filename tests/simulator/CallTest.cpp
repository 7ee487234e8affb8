#include "Bench.h"

using map27::Milliseconds;
using Lines = std::vector<std::string>;

namespace {

std::string Line(const map27::TerminalEvent& event)
{
    if (const auto* call = std::get_if<map27::OutgoingCallProgress>(&event))
        return std::to_string(call->code) + ' ' + std::to_string(call->cause);
    if (const auto* answer = std::get_if<map27::AnswerProgress>(&event))
        return std::to_string(answer->code) + ' ' + std::to_string(answer->cause);
    if (const auto* cleared = std::get_if<map27::TransactionCleared>(&event))
        return "cleared " + std::to_string(cleared->type) + ' ' + std::to_string(cleared->cause);
    if (const auto* incoming = std::get_if<map27::IncomingCall>(&event))
        return "in " + std::to_string(incoming->type) + ' ' + std::to_string(incoming->flags) + ' ' +
               map27::ToText(incoming->from);
    if (const auto* condition = std::get_if<map27::OperatingConditionReceived>(&event))
        return std::string("hook ") + (condition->info.offHook ? "off" : "on") +
               (condition->info.transmitting ? " tx" : "");
    return {};
}

// Everything that bears on calls as "ms what", or only what.
Lines Story(const TerminalBench& bench, bool withTimes = true)
{
    Lines lines;
    for (const auto& one : bench.seen) {
        if (const std::string line = Line(one.event); !line.empty())
            lines.push_back((withTimes ? std::to_string(one.at.count()) + ' ' : "") + line);
    }
    return lines;
}

void Call(TerminalBench& bench, map27::Address to, bool emergency = false)
{
    const auto result = bench.console.MakeCall(to, emergency, false, true, bench.now);
    EXPECT_FALSE(result.refusal);
    bench.Deliver(result.output);
}

// In a call with Unit20, which the console made; nothing remembered.
void BeInCall(TerminalBench& bench)
{
    Call(bench, {0, 2});
    bench.RunFor(Milliseconds(500));
    bench.Forget();
}

struct OutgoingCase {
    const char* name;
    const char* behaviour; // of Unit20
    bool emergency;
    Lines expected;
};

class OutgoingCall : public testing::TestWithParam<OutgoingCase> {};

} // namespace

TEST_P(OutgoingCall, GoesAsTheCalledRadioBehaves)
{
    TerminalBench bench;
    ASSERT_EQ(bench.Execute(std::string("behave Unit20 ") + GetParam().behaviour), "ok");
    Call(bench, {0, 2}, GetParam().emergency);
    bench.RunFor(Milliseconds(20000));
    EXPECT_EQ(Story(bench), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    All, OutgoingCall,
    testing::Values(OutgoingCase{"Answers", "answers", false, {"300 196 0", "300 hook off"}},
                    OutgoingCase{"Emergency", "answers", true, {"100 212 5", "400 196 0", "400 hook off"}},
                    OutgoingCase{
                        "Rings", "rings 300 1000", false, {"300 212 1", "1300 196 0", "1300 hook off"}},
                    OutgoingCase{"Queued", "queued", false, {"300 212 2", "2300 196 0", "2300 hook off"}},
                    OutgoingCase{"Busy", "busy", false, {"300 212 10", "2300 196 0", "2300 hook off"}},
                    OutgoingCase{"Refuses", "refuses", false, {"300 212 1", "2300 228 12"}},
                    OutgoingCase{"Engaged", "engaged", false, {"300 228 12"}},
                    OutgoingCase{"NoAnswer", "no-answer", false, {"300 212 1", "15300 228 4"}},
                    OutgoingCase{"CallBack", "call-back", false, {"300 228 7", "10300 in 164 8 0/2"}},
                    OutgoingCase{"OutOfReach", "out-of-reach", true, {"100 212 5", "1600 228 4"}},
                    OutgoingCase{"Rejects", "rejects", false, {"300 228 3"}},
                    OutgoingCase{"Overload", "overload", false, {"300 228 11"}},
                    OutgoingCase{"Silent", "silent", false, {}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Call, TheOtherSideHangsUpAfterItsTalk)
{
    TerminalBench bench; // Unit29 rings 2.5 s and talks 8 s
    Call(bench, {0, 11});
    bench.RunFor(Milliseconds(20000));
    EXPECT_EQ(Story(bench),
              (Lines{"300 212 1", "2800 196 0", "2800 hook off", "10800 cleared 134 11", "10800 hook on"}));
}

TEST(Call, GatewaysRingRejectAndAreEngaged)
{
    struct {
        int gateway;
        const char* digits;
        Lines expected;
    } const cases[] = {
        {1, "01223", {"300 212 1", "2300 196 0", "2300 hook off"}},
        {1, "999", {"300 228 12"}},
        {2, "4711", {"300 212 1", "1800 196 0", "1800 hook off"}},
        {2, "4712", {"300 228 3"}},
    };
    for (const auto& row : cases) {
        TerminalBench bench;
        bench.Deliver(
            bench.console.MakeGatewayCall(row.gateway, row.digits, false, false, true, bench.now).output);
        bench.RunFor(Milliseconds(5000));
        EXPECT_EQ(Story(bench), row.expected) << row.digits;
    }
}

TEST(Call, CancellingASetUpEndsItAtTheRadio)
{
    TerminalBench bench;
    bench.Execute("behave Unit20 rings");
    Call(bench, {0, 2});
    bench.RunFor(Milliseconds(1000));
    bench.Deliver(bench.console.CancelTransaction(bench.now));
    EXPECT_EQ(bench.simulation.SimulatedRadio().CallState(), sim::CallService::State::Idle);
    bench.RunFor(Milliseconds(10000));
    EXPECT_EQ(Story(bench), Lines{"300 212 1"});
}

TEST(Call, HookAndKeyAreReportedAndHangingUpEndsIt)
{
    TerminalBench bench;
    BeInCall(bench);
    bench.Deliver(bench.console.SetTransmit(true, bench.now).output);
    bench.Deliver(bench.console.SetTransmit(false, bench.now).output);
    bench.Deliver(bench.console.ClearCall(bench.now));
    EXPECT_EQ(Story(bench, false), (Lines{"hook off tx", "hook off", "hook on"}));
    EXPECT_EQ(bench.Execute("hangup"), "error there is no call");
}

TEST(Call, TheMaximumCallTimeWarnsAndEnds)
{
    sim::Scenario scenario = sim::LoadScenario("tour");
    scenario.network.maxCallTimeCode = *sim::MaxCallTimeCode(30);
    TerminalBench bench(scenario);
    BeInCall(bench);
    bench.Deliver(bench.console.SetTransmit(true, bench.now).output);
    bench.RunFor(Milliseconds(60000));
    // The call has been up for 200 ms when the story begins.
    EXPECT_EQ(Story(bench), (Lines{"0 hook off tx", "19800 213 10", "29800 cleared 166 1", "29800 hook on"}));
}

TEST(Call, LossOfContactAndOfTheLinkEndIt)
{
    TerminalBench bench;
    BeInCall(bench);
    bench.Execute("contact lost");
    EXPECT_EQ(Story(bench, false), (Lines{"cleared 166 4", "hook on"}));

    bench.Execute("contact found");
    BeInCall(bench);
    bench.Execute("restart");
    bench.RunFor(Milliseconds(3000));
    EXPECT_EQ(bench.simulation.SimulatedRadio().CallState(), sim::CallService::State::Idle);
    EXPECT_TRUE(bench.console.IsLinkReady());
    EXPECT_EQ(Story(bench, false).front(), "cleared 0 0");
}

namespace {

struct IncomingCase {
    const char* command;
    const char* expected; // type, flags, caller
    bool connected;
};

class IncomingCall : public testing::TestWithParam<IncomingCase> {};

} // namespace

TEST_P(IncomingCall, IsToldAsItIs)
{
    TerminalBench bench;
    ASSERT_EQ(bench.Execute(GetParam().command), "ok");
    Lines expected{GetParam().expected};
    if (GetParam().connected)
        expected.push_back("hook off");
    EXPECT_EQ(Story(bench, false), expected);
}

INSTANTIATE_TEST_SUITE_P(All, IncomingCall,
                         testing::Values(IncomingCase{"call Unit22", "in 164 8 0/4", false},
                                         IncomingCase{"call Unit22 connected", "in 164 0 0/4", true},
                                         IncomingCase{"call unit27 emergency", "in 165 8 0/9", false},
                                         IncomingCase{"call Unit27 emergency connected", "in 165 0 0/9",
                                                      true},
                                         IncomingCase{"call Unit25 group", "in 164 32 0/7", true},
                                         IncomingCase{"call Unit25 group ring", "in 164 40 0/7", false},
                                         IncomingCase{"call 5/300 group", "in 164 32 0/0", true},
                                         IncomingCase{"call 5/300", "in 164 8 5/300", false},
                                         IncomingCase{"call Unit29 system", "in 164 32 0/8191", true},
                                         IncomingCase{"call Unit29 emergency group", "in 165 32 0/11", true},
                                         IncomingCase{"pstn-call 01223", "in 164 8 0/8101", false},
                                         IncomingCase{"pabx-call", "in 164 8 0/8102", false}));

TEST(Call, AnsweringRefusingAndGivingUp)
{
    TerminalBench bench;
    bench.Execute("call Unit22");
    bench.RunFor(Milliseconds(2000));
    bench.Deliver(bench.console.AnswerCall(bench.now).output);
    bench.RunFor(Milliseconds(1000));
    EXPECT_EQ(bench.Execute("hangup"), "ok");
    EXPECT_EQ(Story(bench), (Lines{"0 in 164 8 0/4", "2000 hook off", "2300 197 0", "3000 cleared 134 11",
                                   "3000 hook on"}));

    bench.Forget();
    bench.Execute("call Unit22");
    bench.Deliver(bench.console.RefuseCall(bench.now).output);
    EXPECT_EQ(bench.simulation.SimulatedRadio().CallState(), sim::CallService::State::Idle);

    bench.Forget();
    bench.Execute("call Unit22");
    bench.RunFor(Milliseconds(70000)); // rings for 60 s
    EXPECT_EQ(Story(bench), (Lines{"0 in 164 8 0/4", "60000 229 3", "60000 hook on"}));
}

TEST(Call, OnlyAnEmergencyDisturbsACall)
{
    TerminalBench bench;
    BeInCall(bench);
    EXPECT_EQ(bench.Execute("call Unit22"), "error the radio is in a call");
    EXPECT_TRUE(bench.seen.empty());
    EXPECT_EQ(bench.Execute("call Unit27 emergency"), "ok");
    EXPECT_EQ(Story(bench, false), (Lines{"cleared 166 14", "hook on", "in 165 8 0/9"}));
    EXPECT_EQ(bench.Execute("call Unit22"), "error another call rings");
}

TEST(Call, AnIncomingCallDropsOneBeingSetUpWithoutAWord)
{
    TerminalBench bench;
    bench.Execute("behave Unit20 rings");
    Call(bench, {0, 2});
    bench.RunFor(Milliseconds(400));
    bench.Execute("call Unit22");
    bench.RunFor(Milliseconds(10000));
    EXPECT_EQ(Story(bench, false), (Lines{"212 1", "cleared 164 0", "in 164 8 0/4"}));
}
