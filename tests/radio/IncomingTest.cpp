// What the radio brings in: over the real wire, to the real database, in virtual time.

#include "RadioStack.h"
#include "core/attention/AttentionBook.h"
#include "core/session/Registry.h"
#include "core/texts/TextIds.h"
#include "radio/base/TextIds.h"

namespace {

constexpr int Unit27 = 9;
constexpr int Stranger = 40; // dialled 58, not in the directory

bool OnDuty(RadioStack& stack, const QString& callsign)
{
    const auto id = stack.EntryOf(callsign)->Field(QStringLiteral("address_id")).toInt();
    const auto people = stack.session.Database().QueryDef(QStringLiteral("find_individual_ob_callsign"));
    people->SetParameter(QStringLiteral("lookfor"), QString());
    for (const auto rows = people->OpenSnapshot(); !rows->Eof(); rows->MoveNext()) {
        if (rows->Field(QStringLiteral("address_id")).toInt() == id)
            return rows->Field(QStringLiteral("on_duty")).toBool();
    }
    return false;
}

TEST(Incoming, NumberingShowsTheOwnRadioAndMarksItOnDuty)
{
    ConnectedStack stack;
    EXPECT_EQ(stack.views.own, QStringLiteral("Dispatch  200200121"));
    EXPECT_EQ(stack.executive.MyCallsign(), QStringLiteral("Dispatch"));
    EXPECT_TRUE(OnDuty(stack, QStringLiteral("Dispatch")));
    EXPECT_TRUE(stack.views.condition.startsWith(QStringLiteral("in ")));
    EXPECT_TRUE(stack.executive.Link().simulation);
    stack.executive.AskNetworkInfo();
    stack.Run(500);
    EXPECT_TRUE(stack.views.message.startsWith(QStringLiteral("Radio Channel Number: ")))
        << stack.views.message.toStdString();
}

TEST(Incoming, StatusIsLoggedAnnouncedAndMovesTheDuty)
{
    ConnectedStack stack;
    const int beeps = stack.beeper.Heard(SoundKind::Status);
    stack.radio.Perform(sim::StatusAction{stack.AddressOf(Unit27), 1});
    stack.Run(500);
    EXPECT_TRUE(OnDuty(stack, QStringLiteral("Unit27")));
    stack.radio.Perform(sim::StatusAction{stack.AddressOf(Unit27), 2});
    stack.Run(500);
    EXPECT_FALSE(OnDuty(stack, QStringLiteral("Unit27")));
    RegistrySet(stack.session, QStringLiteral("radio_onduty"), QStringLiteral("5"));
    RegistrySet(stack.session, QStringLiteral("radio_offduty"), QStringLiteral("5"));
    stack.radio.Perform(sim::StatusAction{stack.AddressOf(Unit27), 5}); // both codes: on, then off
    stack.Run(500);
    EXPECT_FALSE(OnDuty(stack, QStringLiteral("Unit27")));
    EXPECT_EQ(stack.views.lines, QStringList({QStringLiteral("1|Status 1 in.|Unit27|Dispatch"),
                                              QStringLiteral("1|Status 2 in.|Unit27|Dispatch"),
                                              QStringLiteral("1|05 - Arrived|Unit27|Dispatch")}));
    EXPECT_EQ(stack.Records().last(), QStringLiteral("1|5|Unit27|Dispatch"));
    EXPECT_EQ(stack.beeper.Heard(SoundKind::Status), beeps + 3);

    stack.settings.SetBeepNotify(false);
    stack.radio.Perform(sim::StatusAction{{0, Stranger}, 5});
    stack.Run(500);
    EXPECT_EQ(stack.Records().last(), QStringLiteral("1|5|200200158|Dispatch"));
    EXPECT_EQ(stack.beeper.Heard(SoundKind::Status), beeps + 3);
}

TEST(Incoming, TextsAndScadaReports)
{
    const std::pair<const char*, const char*> cases[] = {
        {"Hello", ""},
        {"I:10000001", "S10000001"},
        {"O:1x0?0000", "C1x0?0000"},
        {"B:0000000011111111", "S00000000C11111111"},
        {"B:00000000", ""},
        {"I:1000000111111111", ""},
    };
    ConnectedStack stack;
    for (const auto& [text, scada] : cases) {
        for (const map27::TextCoding coding : {map27::TextCoding::SevenBit, map27::TextCoding::EightBit}) {
            stack.views.scada.clear();
            stack.radio.Perform(sim::TextAction{stack.AddressOf(Unit27), coding, text});
            stack.Run(1500);
            EXPECT_EQ(stack.views.scada, QString::fromLatin1(scada)) << text;
            EXPECT_EQ(stack.Records().last(),
                      QStringLiteral("2|%1|Unit27|Dispatch").arg(QString::fromLatin1(text)));
        }
    }
}

struct CallCase {
    const char* name;
    sim::CallAction call;
    const char* caption;
    const char* party;
    TransactionKind kind;
    std::size_t emergencies;
};

class IncomingCall : public testing::TestWithParam<CallCase> {};

const CallCase CallCases[] = {
    {"Ringing", {.from = {0, Unit27}}, "Incoming Call", "Unit27", TransactionKind::CallRinging, 0},
    {"Connected",
     {.from = {0, Unit27}, .rings = false},
     "Incoming Call",
     "Unit27",
     TransactionKind::CallConnected,
     0},
    {"Emergency",
     {.from = {0, Unit27}, .emergency = true, .rings = false},
     "Emergency Incoming Call",
     "Unit27",
     TransactionKind::CallConnected,
     1},
    {"Telephone", {.from = {0, 8101}}, "Incoming PSTN Call", "/0008101", TransactionKind::CallRinging, 0},
};

TEST_P(IncomingCall, IsShownAndRecorded)
{
    const CallCase& c = GetParam();
    ConnectedStack stack;
    stack.radio.Perform(c.call);
    stack.Run(500);
    EXPECT_TRUE(stack.AgentShown());
    EXPECT_EQ(stack.executive.TransactionKind(), c.kind);
    EXPECT_EQ(stack.executive.AgentWindow().windowTitle(), QString::fromLatin1(c.caption));
    EXPECT_EQ(stack.Agent<QListWidget>("lsParty").item(0)->text(), QString::fromLatin1(c.party));
    EXPECT_EQ(stack.console.attention->Entries().size(), c.emergencies);
    EXPECT_EQ(stack.beeper.Heard(SoundKind::Emergency), static_cast<int>(c.emergencies));
    EXPECT_EQ(stack.beeper.Heard(SoundKind::Ringing), c.emergencies == 0 ? 1 : 0);
    EXPECT_EQ(stack.Records(),
              QStringList(QStringLiteral("3|%1|%2|Dispatch")
                              .arg(QString::fromLatin1(c.caption), QString::fromLatin1(c.party))));

    if (c.kind == TransactionKind::CallRinging) {
        EXPECT_EQ(stack.Button(), stack.Text(RadioText::Answer));
        stack.Click("cmdAnswerHungup");
        ASSERT_TRUE(stack.RunUntil(
            [&] { return stack.executive.TransactionKind() == TransactionKind::CallConnected; }));
    }
    EXPECT_EQ(stack.Button(), stack.Text(RadioText::Hungup));
    stack.radio.Perform(sim::HangUpAction{});
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_FALSE(stack.AgentShown());
}

INSTANTIATE_TEST_SUITE_P(All, IncomingCall, testing::ValuesIn(CallCases),
                         [](const auto& test) { return test.param.name; });

TEST(Incoming, CallTakesOverAndTheMessageIsNotConfirmed)
{
    ConnectedStack stack;
    stack.executive.SendStatus(QStringLiteral("Unit25"), 5);
    stack.Run(300);
    stack.radio.Perform(sim::CallAction{.from = stack.AddressOf(Unit27)});
    stack.Run(300);
    EXPECT_EQ(stack.executive.TransactionKind(), TransactionKind::CallRinging);
    EXPECT_TRUE(stack.AgentShown());
    stack.Click("cmdClose");
    EXPECT_EQ(stack.executive.TransactionKind(), TransactionKind::None);
    stack.Run(5000);
    EXPECT_EQ(stack.Records(), QStringList(QStringLiteral("3|Incoming Call|Unit27|Dispatch")));
    EXPECT_FALSE(stack.AgentShown());
}

TEST(Incoming, CallerWhoGivesUpClosesTheDialogue)
{
    ConnectedStack stack;
    stack.radio.Perform(sim::CallAction{.from = stack.AddressOf(Unit27)});
    stack.Run(300);
    EXPECT_TRUE(stack.AgentShown());
    stack.radio.Perform(sim::HangUpAction{});
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_FALSE(stack.AgentShown());
}

// The warning comes once, every message is still shown, and records are written again when the database is
// back.
TEST(Incoming, RecordsThatCannotBeWrittenAreToldOnceAndStoredLater)
{
    ConnectedStack stack;
    bool failing = true;
    stack.session.onUse = [&] {
        if (failing)
            throw Error(ErrorCode::General, QStringLiteral("the disk is full"));
    };
    stack.prompt.ExpectWarning(QStringLiteral("the disk is full ") +
                               stack.strings.LoadString(CoreText::RecordsKept));
    for (int i = 0; i < 3; ++i) {
        stack.radio.Perform(sim::StatusAction{stack.AddressOf(Unit27), 5});
        stack.Run(500);
    }
    EXPECT_EQ(stack.views.lines.size(), 3);
    failing = false;
    stack.radio.Perform(sim::StatusAction{stack.AddressOf(Unit27), 5});
    stack.Run(500);
    EXPECT_TRUE(QTest::qWaitFor([&] { return stack.Records().size() == 4; }, 5000));
}

// Events are handled while an earlier one's box is open, and their own boxes wait.
TEST(Incoming, BoxesComeOneAtATimeAndEventsGoOn)
{
    ConnectedStack stack;
    bool inside = false;
    stack.prompt.whileOpen = [&] {
        EXPECT_FALSE(inside);
        if (inside)
            return;
        inside = true;
        stack.radio.Perform(sim::StatusAction{stack.AddressOf(Unit27), 5});
        stack.Run(500);
        EXPECT_EQ(stack.Records(), QStringList(QStringLiteral("1|5|Unit27|Dispatch")));
        inside = false;
        stack.prompt.whileOpen = {};
    };
    stack.prompt.ExpectWarning(stack.Text(RadioText::MessageNotSent));
    stack.executive.SendStatus(QStringLiteral("Unit23"), 5);
    ASSERT_TRUE(stack.RunToEnd());
    stack.Run(100);
    EXPECT_EQ(stack.Records().size(), 1);
}

TEST(Agent, LoggingOffHangsUp)
{
    ConnectedStack stack;
    stack.radio.Perform(sim::CallAction{.from = stack.AddressOf(Unit27), .rings = false});
    stack.Run(300);
    EXPECT_TRUE(stack.radio.radio.Condition().offHook);
    stack.executive.Disconnect();
    EXPECT_FALSE(stack.radio.offHookAtClose);
    EXPECT_FALSE(stack.AgentShown());
    EXPECT_EQ(stack.executive.Link().state, LinkStatus::State::Closed);
}

TEST(Agent, CannotBeClosedFromItsFrameAndReleasesTheTransmitter)
{
    ConnectedStack stack;
    stack.radio.Perform(sim::CallAction{.from = stack.AddressOf(Unit27), .rings = false});
    stack.Run(300);
    stack.executive.AgentWindow().close();
    EXPECT_TRUE(stack.AgentShown());
    auto& ptt = stack.Agent<QPushButton>("cmdPTT");
    stack.executive.AgentWindow().activateWindow();
    ASSERT_TRUE(stack.RunUntil([&] { return ptt.hasFocus(); }));
    for (const Qt::Key key : {Qt::Key_Shift, Qt::Key_F6, Qt::Key_F12}) {
        QTest::keyPress(&ptt, key);
        QTest::keyRelease(&ptt, key);
    }
    EXPECT_EQ(ptt.text(), stack.Text(RadioText::TransmitReleased));
    QTest::keyPress(&ptt, Qt::Key_Space);
    EXPECT_EQ(ptt.text(), stack.Text(RadioText::Transmitting));
    stack.Run(300);
    EXPECT_TRUE(stack.radio.radio.Condition().transmitting);
    QFocusEvent away(QEvent::FocusOut);
    QCoreApplication::sendEvent(&ptt, &away);
    stack.Run(300);
    EXPECT_FALSE(stack.radio.radio.Condition().transmitting);
}

// The caption shows what the radio has been told, not what the hand does.
TEST(Agent, TransmitsOnlyWhileConnected)
{
    ConnectedStack stack;
    stack.radio.Perform(sim::CallAction{.from = stack.AddressOf(Unit27)});
    stack.Run(300);
    auto& ptt = stack.Agent<QPushButton>("cmdPTT");
    QTest::mousePress(&ptt, Qt::LeftButton);
    EXPECT_EQ(ptt.text(), stack.Text(RadioText::TransmitReleased));
    stack.Click("cmdAnswerHungup");
    ASSERT_TRUE(
        stack.RunUntil([&] { return stack.executive.TransactionKind() == TransactionKind::CallConnected; }));
    stack.Run(300);
    EXPECT_FALSE(stack.radio.radio.Condition().transmitting);
    QTest::mouseRelease(&ptt, Qt::LeftButton);
    QTest::mousePress(&ptt, Qt::LeftButton);
    EXPECT_EQ(ptt.text(), stack.Text(RadioText::Transmitting));
    stack.radio.Perform(sim::HangUpAction{});
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_EQ(ptt.text(), stack.Text(RadioText::TransmitReleased));
}

} // namespace
