#include "Bench.h"

using map27::Milliseconds;

namespace {

constexpr map27::Address unit20{0, 2};

// Each acknowledgement as "ms code cause".
std::vector<std::string> Progress(const TerminalBench& bench)
{
    std::vector<std::string> lines;
    for (const auto& one : bench.seen) {
        if (const auto* progress = std::get_if<map27::MessageProgress>(&one.event))
            lines.push_back(std::to_string(one.at.count()) + ' ' + std::to_string(progress->code) + ' ' +
                            std::to_string(progress->cause));
        else if (const auto* cleared = std::get_if<map27::TransactionCleared>(&one.event))
            lines.push_back(std::to_string(one.at.count()) + " cleared " + std::to_string(cleared->cause));
    }
    return lines;
}

struct BehaviourCase {
    const char* behaviour; // of Unit20, as a command has it
    std::vector<std::string> expected;
};

class MessageBehaviour : public testing::TestWithParam<BehaviourCase> {};

} // namespace

TEST_P(MessageBehaviour, EndsStatusAndTextAlike)
{
    TerminalBench bench;
    ASSERT_EQ(bench.Execute(std::string("behave Unit20 ") + GetParam().behaviour), "ok");

    bench.Forget();
    bench.Deliver(bench.console.SendStatus(unit20, 5, bench.now).output);
    bench.RunFor(Milliseconds(20000));
    EXPECT_EQ(Progress(bench), GetParam().expected);
    EXPECT_EQ(bench.Execute("last"), "ok status 5 to Unit20 (0/2)");

    bench.Deliver(bench.console.CancelTransaction(bench.now));
    bench.Forget();
    bench.Deliver(bench.console.SendText(unit20, "hello", map27::TextCoding::EightBit, bench.now).output);
    bench.RunFor(Milliseconds(20000));
    EXPECT_EQ(Progress(bench), GetParam().expected);
    EXPECT_EQ(bench.Execute("last"), "ok text \"hello\" to Unit20 (0/2)");
}

INSTANTIATE_TEST_SUITE_P(
    All, MessageBehaviour,
    testing::Values(
        BehaviourCase{"answers", {"300 192 0"}}, BehaviourCase{"slow", {"8000 192 0"}},
        BehaviourCase{"rings", {"300 192 0"}}, BehaviourCase{"queued", {"300 208 2", "2300 192 0"}},
        BehaviourCase{"busy 100 500", {"100 208 10", "600 192 0"}}, BehaviourCase{"refuses", {"300 224 12"}},
        BehaviourCase{"engaged", {"300 224 12"}}, BehaviourCase{"no-answer", {"300 192 0"}},
        BehaviourCase{"call-back", {"300 192 0"}}, BehaviourCase{"out-of-reach", {"1500 224 4"}},
        BehaviourCase{"rejects 50", {"50 224 3"}}, BehaviourCase{"overload", {"300 224 11"}},
        BehaviourCase{"diverted", {"300 208 38", "1300 192 0"}},
        BehaviourCase{"diverted-away", {"300 224 6"}}, BehaviourCase{"diverted-nowhere", {"300 224 14"}},
        BehaviourCase{"diverted-to-group", {"300 224 22"}}, BehaviourCase{"silent", {}}),
    [](const auto& row) {
        std::string name = row.param.behaviour;
        std::erase_if(name, [](char c) { return c == '-' || c == ' '; });
        return name;
    });

TEST(Message, StatusAndTextMayDiffer)
{
    TerminalBench bench; // Unit23 refuses all but texts
    bench.Deliver(bench.console.SendStatus({0, 5}, 1, bench.now).output);
    bench.RunFor(Milliseconds(3000));
    bench.Deliver(bench.console.SendText({0, 5}, "x", map27::TextCoding::SevenBit, bench.now).output);
    bench.RunFor(Milliseconds(3000));
    const auto progress = bench.Events<map27::MessageProgress>();
    ASSERT_EQ(progress.size(), 2U);
    EXPECT_EQ(progress[0].code, 224);
    EXPECT_EQ(progress[0].cause, 0x0C);
    EXPECT_EQ(progress[1].code, 192);
}

TEST(Message, AStrangerIsInvalid)
{
    TerminalBench bench;
    bench.Deliver(bench.console.SendStatus({0, 60}, 1, bench.now).output);
    bench.RunFor(Milliseconds(300));
    EXPECT_EQ(Progress(bench), std::vector<std::string>{"300 224 3"});
}

TEST(Message, CancellingFreesTheRadioForTheNext)
{
    TerminalBench bench;
    bench.Execute("behave Unit20 silent");
    bench.Deliver(bench.console.SendStatus(unit20, 1, bench.now).output);
    bench.Deliver(bench.console.CancelTransaction(bench.now));
    EXPECT_FALSE(bench.simulation.SimulatedRadio().MessageOpen());
    bench.Deliver(bench.console.SendStatus({0, 9}, 2, bench.now).output);
    bench.RunFor(Milliseconds(1000)); // less than the console waits for a lost end
    EXPECT_EQ(Progress(bench), std::vector<std::string>{"300 192 0"});
}

TEST(Message, LossOfContactEndsIt)
{
    TerminalBench bench;
    bench.Execute("behave Unit20 silent");
    bench.Deliver(bench.console.SendStatus(unit20, 1, bench.now).output);
    bench.Execute("contact lost");
    bench.Deliver(bench.console.SendStatus(unit20, 1, bench.now).output);
    EXPECT_EQ(Progress(bench), (std::vector<std::string>{"0 cleared 4", "0 cleared 4"}));

    bench.Execute("contact found");
    const auto conditions = bench.Events<map27::OperatingConditionReceived>();
    ASSERT_EQ(conditions.size(), 2U);
    EXPECT_FALSE(conditions[0].info.inContact);
    EXPECT_TRUE(conditions[1].info.inContact);
    EXPECT_EQ(conditions[1].info.fieldStrength, 158);
}

TEST(Message, AnIncomingCallTakesItsPlace)
{
    TerminalBench bench;
    bench.Execute("behave Unit20 busy");
    bench.Deliver(bench.console.SendStatus(unit20, 1, bench.now).output);
    bench.RunFor(Milliseconds(400));
    EXPECT_EQ(bench.Execute("call Unit22"), "ok");
    bench.RunFor(Milliseconds(5000));
    EXPECT_EQ(Progress(bench), (std::vector<std::string>{"300 208 10", "400 cleared 0"}));
}

namespace {

struct TextCase {
    const char* command;
    const char* text;
    std::size_t octets; // on the wire, a full codeword count
};

class ReceivedText : public testing::TestWithParam<TextCase> {};

} // namespace

TEST_P(ReceivedText, ArrivesPaddedAndIsReadAsItWasWritten)
{
    // Every seed pads in its own way.
    for (std::uint64_t seed = 1; seed <= 6; ++seed) {
        const sim::Scenario scenario = sim::LoadScenario("tour");
        RawBench raw(scenario, {.bitsPerSecond = 0, .seed = seed});
        ASSERT_EQ(raw.Execute(GetParam().command), "ok");
        const auto messages = raw.Events<map27::MessageReceived>();
        ASSERT_EQ(messages.size(), 1U);
        EXPECT_EQ(messages[0].message.size(), 6 + GetParam().octets);

        TerminalBench bench(scenario, {.bitsPerSecond = 0, .seed = seed});
        ASSERT_EQ(bench.Execute(GetParam().command), "ok");
        const auto texts = bench.Events<map27::TextReceived>();
        ASSERT_EQ(texts.size(), 1U);
        EXPECT_EQ(texts[0].text, GetParam().text);
        EXPECT_EQ(texts[0].from, unit20);
    }
}

INSTANTIATE_TEST_SUITE_P(All, ReceivedText,
                         testing::Values(TextCase{"text Unit20 I:01100110", "I:01100110", 12},
                                         TextCase{"text Unit20 8 I:01100110", "I:01100110", 11},
                                         TextCase{"text Unit20 B:0110011010011001", "B:0110011010011001", 18},
                                         TextCase{"text 0/2 8 Grüße", "Grüße", 5},
                                         TextCase{"text Unit20 7", "7", 5},
                                         TextCase{"text Unit20 7  two  blanks", " two  blanks", 12},
                                         TextCase{"text Unit20 A text of more than one short message",
                                                  "A text of more than one short message", 37}));
