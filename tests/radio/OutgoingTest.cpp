// What becomes of everything that the operator starts: over the real wire, to the real database, in virtual
// time.

#include "RadioStack.h"
#include "radio/base/TextIds.h"

namespace {

struct OutgoingCase {
    const char* name;
    std::function<void(RadioStack&)> send;
    QStringList records; // afterwards in the table event
    QStringList lines;   // shown in the log
    int warning;         // catalogue id of the box at the end; 0 none
    const char* scada;
};

class Outgoing : public testing::TestWithParam<OutgoingCase> {};

const QString Long(101, QLatin1Char('a'));

const OutgoingCase Cases[] = {
    {"StatusDelivered",
     [](RadioStack& s) { s.executive.SendStatus(QStringLiteral("Unit20"), 5); },
     {QStringLiteral("1|5|Dispatch|Unit20")},
     {QStringLiteral("1|05 - Proceed|Dispatch|Unit20")},
     0,
     "reflect "},
    {"StatusWithoutText",
     [](RadioStack& s) { s.executive.SendStatus(QStringLiteral(" 22 "), 31); },
     {QStringLiteral("1|31|Dispatch| 22 ")},
     {QStringLiteral("1|Status 31 out.|Dispatch| 22 ")},
     0,
     "reflect "},
    {"StatusQueuedThenDelivered",
     [](RadioStack& s) { s.executive.SendStatus(QStringLiteral("Unit25"), 5); },
     {QStringLiteral("1|5|Dispatch|Unit25")},
     {QStringLiteral("1|05 - Proceed|Dispatch|Unit25")},
     0,
     "reflect "},
    {"StatusRefused",
     [](RadioStack& s) { s.executive.SendStatus(QStringLiteral("Unit23"), 5); },
     {},
     {},
     RadioText::MessageNotSent,
     "cancel "},
    {"StatusOutOfReach",
     [](RadioStack& s) { s.executive.SendStatus(QStringLiteral("24"), 5); },
     {},
     {},
     RadioText::MessageNotSent,
     "cancel "},
    {"TextSevenBit",
     [](RadioStack& s) { s.executive.SendText(QStringLiteral("Unit20"), QStringLiteral("a\\tb"), false); },
     {QStringLiteral("2|a\\tb|Dispatch|Unit20")},
     {QStringLiteral("2|a\\tb|Dispatch|Unit20")},
     0,
     "reflect "},
    {"TextEightBitLong",
     [](RadioStack& s) { s.executive.SendText(QStringLiteral("Unit20"), QString(88, QChar(0xE9)), true); },
     {QStringLiteral("2|%1|Dispatch|Unit20").arg(QString(88, QChar(0xE9)))},
     {QStringLiteral("2|%1|Dispatch|Unit20").arg(QString(88, QChar(0xE9)))},
     0,
     "reflect "},
    {"TextEscapesExpanded",
     [](RadioStack& s) {
         s.settings.SetPrintfEscapes(true);
         s.executive.SendText(QStringLiteral("Unit20"), QStringLiteral("a\\\\b#01"), false);
     },
     {QStringLiteral("2|a\\b#01|Dispatch|Unit20")},
     {QStringLiteral("2|a\\b#01|Dispatch|Unit20")},
     0,
     "reflect "},
    {"CallRefused",
     [](RadioStack& s) { s.executive.StartCall(QStringLiteral("Unit23"), false, false, true); },
     {},
     {},
     RadioText::CallFailed,
     ""},
};

TEST_P(Outgoing, EndsAsItShould)
{
    const OutgoingCase& c = GetParam();
    ConnectedStack stack;
    if (c.warning != 0)
        stack.prompt.ExpectWarning(stack.Text(c.warning));
    c.send(stack);
    EXPECT_TRUE(stack.AgentShown());
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_FALSE(stack.AgentShown());
    EXPECT_EQ(stack.Records(), c.records);
    EXPECT_EQ(stack.views.lines, c.lines);
    EXPECT_EQ(stack.views.scada, QString::fromLatin1(c.scada));
    EXPECT_FALSE(stack.executive.Outgoing().MessagePending);
}

INSTANTIATE_TEST_SUITE_P(All, Outgoing, testing::ValuesIn(Cases),
                         [](const auto& test) { return test.param.name; });

struct RefusedCase {
    const char* name;
    std::function<void(RadioStack&)> send;
    QString sentence;
};

class Refused : public testing::TestWithParam<RefusedCase> {};

const RefusedCase RefusedCases[] = {
    {"UnknownCallsign", [](RadioStack& s) { s.executive.SendStatus(QStringLiteral("Nobody"), 5); },
     QStringLiteral("'Nobody' is neither a callsign in the address directory nor a number.")},
    {"BadNumber", [](RadioStack& s) { s.executive.SendStatus(QStringLiteral("2x"), 5); },
     QStringLiteral("Number contains the invalid character 'x'.")},
    {"TextTooLong", [](RadioStack& s) { s.executive.SendText(QStringLiteral("20"), Long, false); },
     QStringLiteral("The message is too long: 101 characters, at most 100 can be sent in this encoding.")},
    {"TextTooLongForEightBit",
     [](RadioStack& s) { s.executive.SendText(QStringLiteral("20"), Long.left(89), true); },
     QStringLiteral("The message is too long: 89 characters, at most 88 can be sent in this encoding.")},
    {"CharacterNotInCoding",
     [](RadioStack& s) { s.executive.SendText(QStringLiteral("20"), QString(QChar(0xE9)), false); },
     QStringLiteral("The character 'é' can't be sent in this encoding.")},
    {"CharacterInNoCoding",
     [](RadioStack& s) { s.executive.SendText(QStringLiteral("20"), QString(QChar(0x20AC)), true); },
     QStringLiteral("The character '€' can't be sent in this encoding.")},
    {"StatusOutOfRange", [](RadioStack& s) { s.executive.SendStatus(QStringLiteral("20"), 32); },
     QStringLiteral("Status 32 does not exist. A status is a number from 0 to 31.")},
    {"IdentNotForTerminals", [](RadioStack& s) { s.executive.SendStatus(QStringLiteral("/0008185"), 5); },
     QStringLiteral("The radio can't send to address /0008185.")},
    {"DummyAddress",
     [](RadioStack& s) { s.executive.StartCall(QStringLiteral("/0000000"), false, false, true); },
     QStringLiteral("The radio can't send to address /0000000.")},
};

TEST_P(Refused, SaysWhyAndLeavesTheRadioFree)
{
    ConnectedStack stack;
    stack.prompt.ExpectWarning(GetParam().sentence);
    GetParam().send(stack);
    EXPECT_EQ(stack.executive.TransactionKind(), TransactionKind::None);
    EXPECT_FALSE(stack.AgentShown());
    stack.Run(2000);
    EXPECT_EQ(stack.Records(), QStringList());

    // The refused request leaves nothing behind that hinders the next.
    stack.executive.SendStatus(QStringLiteral("Unit20"), 5);
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_EQ(stack.Records().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(All, Refused, testing::ValuesIn(RefusedCases),
                         [](const auto& test) { return test.param.name; });

TEST(OutgoingCall, RingsConnectsTransmitsAndHangsUp)
{
    ConnectedStack stack;
    stack.executive.StartCall(QStringLiteral("Unit22"), true, false, true);
    ASSERT_TRUE(
        stack.RunUntil([&] { return stack.Progress().contains(stack.Text(RadioText::CallingWait)); }));
    EXPECT_EQ(stack.Button(), stack.Text(RadioText::Cancel));
    ASSERT_TRUE(
        stack.RunUntil([&] { return stack.executive.TransactionKind() == TransactionKind::CallConnected; }));
    EXPECT_EQ(stack.Records(), QStringList(QStringLiteral("3|Emergency Voice|Dispatch|Unit22")));
    EXPECT_EQ(stack.Button(), stack.Text(RadioText::Hungup));

    auto& ptt = stack.Agent<QPushButton>("cmdPTT");
    QTest::mousePress(&ptt, Qt::LeftButton);
    EXPECT_EQ(ptt.text(), stack.Text(RadioText::Transmitting));
    stack.Run(500);
    EXPECT_TRUE(stack.radio.radio.Condition().transmitting);
    QTest::mouseRelease(&ptt, Qt::LeftButton);
    stack.Run(500);
    EXPECT_FALSE(stack.radio.radio.Condition().transmitting);

    stack.Click("cmdAnswerHungup");
    EXPECT_EQ(stack.executive.TransactionKind(), TransactionKind::None);
    EXPECT_FALSE(stack.AgentShown());
    stack.Run(500);
    EXPECT_FALSE(stack.radio.radio.Condition().offHook);
}

TEST(OutgoingCall, GatewaysByTheDialledNumber)
{
    for (const auto& [dial, description] :
         {std::pair("01223456789", RadioText::PstnCall), std::pair("4711", RadioText::PabxCall)}) {
        ConnectedStack stack;
        stack.executive.StartCall(QString::fromLatin1(dial), false, false, true);
        ASSERT_TRUE(stack.RunUntil([&] {
            return stack.executive.TransactionKind() == TransactionKind::CallConnected;
        })) << dial;
        EXPECT_EQ(
            stack.Records(),
            QStringList(
                QStringLiteral("3|%1|Dispatch|%2").arg(stack.Text(description), QString::fromLatin1(dial))));
    }
}

// A cancelled message is never shown as sent, even when its acknowledgement is on the way, and does not
// confirm the next.
TEST(OutgoingMessage, CancelledIsNeverConfirmed)
{
    for (const char* button : {"cmdAnswerHungup", "cmdClose"}) {
        ConnectedStack stack;
        stack.executive.SendStatus(QStringLiteral("Unit25"), 5);
        ASSERT_TRUE(
            stack.RunUntil([&] { return stack.Progress().contains(stack.Text(RadioText::SendingWait)); }));
        stack.Click(button);
        EXPECT_FALSE(stack.AgentShown());
        stack.prompt.ExpectWarning(stack.Text(RadioText::MessageNotSent));
        stack.executive.SendStatus(QStringLiteral("Unit23"), 5); // refuses
        ASSERT_TRUE(stack.RunToEnd());
        EXPECT_EQ(stack.Records(), QStringList()) << button;
    }
}

TEST(OutgoingMessage, BusyRadioIsLeftAlone)
{
    ConnectedStack stack;
    stack.executive.SendStatus(QStringLiteral("Unit25"), 5);
    stack.prompt.ExpectWarning(stack.Text(RadioText::NotReadyForStatus));
    stack.executive.SendStatus(QStringLiteral("Unit20"), 5);
    stack.prompt.ExpectWarning(stack.Text(RadioText::NotReadyForText));
    stack.executive.SendText(QStringLiteral("Unit20"), QStringLiteral("x"), false);
    stack.prompt.ExpectWarning(stack.Text(RadioText::NotReadyForRegrouping));
    EXPECT_FALSE(stack.executive.SendRegroup(QStringLiteral("Unit20"), 1, QStringLiteral("/0000000")));
    stack.executive.StartCall(QStringLiteral("Unit20"), false, false, true); // only raises the open dialogue
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_EQ(stack.Records(), QStringList(QStringLiteral("1|5|Dispatch|Unit25")));
}

// Transactions ended from outside: nothing is recorded, and the radio side works afterwards.
TEST(OutgoingMessage, EndedByLinkResetOrCable)
{
    const std::pair<const char*, std::function<void(RadioStack&)>> ends[] = {
        {"reset", [](RadioStack& s) { s.executive.ResetTran(); }},
        {"cable",
         [](RadioStack& s) {
             s.radio.Unplug();
             s.Run(3000);
             s.radio.plugged = true;
         }},
        {"radio restarted", [](RadioStack& s) { s.radio.Perform(sim::RestartAction{}); }},
    };
    for (const auto& [name, end] : ends) {
        ConnectedStack stack;
        stack.executive.SendStatus(QStringLiteral("Unit25"), 5);
        stack.Run(300);
        end(stack);
        ASSERT_TRUE(stack.RunToEnd()) << name;
        EXPECT_FALSE(stack.AgentShown()) << name;
        EXPECT_EQ(stack.Records(), QStringList()) << name;
        ASSERT_TRUE(stack.RunUntil([&] { return stack.executive.Link().state == LinkStatus::State::Ready; }))
            << name;
        stack.Run(1000);
        stack.executive.SendStatus(QStringLiteral("Unit20"), 5);
        ASSERT_TRUE(stack.RunToEnd()) << name;
        EXPECT_EQ(stack.Records().size(), 1) << name;
    }
}

TEST(Regroup, StoredOnlyWhenConfirmed)
{
    const std::tuple<const char*, const char*, int> cases[] = {
        {"Unit20", "reload store reflect ", 0},
        {"24", "reload cancel ", RadioText::RegroupingFailed},
    };
    for (const auto& [member, calls, warning] : cases) {
        ConnectedStack stack;
        if (warning != 0)
            stack.prompt.ExpectWarning(stack.Text(warning));
        EXPECT_TRUE(stack.executive.SendRegroup(QString::fromLatin1(member), 3, QStringLiteral("/0007001")));
        ASSERT_TRUE(stack.RunToEnd());
        EXPECT_EQ(stack.views.calls, QString::fromLatin1(calls)) << member;
    }
}

} // namespace
