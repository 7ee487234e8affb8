// Who is calling and why things end: octets in, words out, from the wire to every place where the dispatcher
// looks.

#include "RegroupStack.h"
#include "core/base/ProgramLog.h"
#include "mainwindow/log/LogModel.h"
#include "mainwindow/log/LogPane.h"
#include "radio/base/TextIds.h"
#include "support/Files.h"
#include "support/Table.h"

#include <QAbstractButton>
#include <QPushButton>
#include <QTableView>

namespace {

map27::Octets FromHex(const std::string& text)
{
    const QByteArray octets = QByteArray::fromHex(QByteArray::fromStdString(text));
    return {octets.begin(), octets.end()};
}

// The console, and at the other end a radio that answers questions about itself and otherwise says only what
// the test does.
class Stack : public RegroupStack {
public:
    Stack()
    {
        ProgramLog::Open(folder.path());
        radio.instead = [this](const QByteArray& sent) { return Exchange(sent); };
        Take(m_link.Start(Now()));
        EXPECT_TRUE(BecomesReady());
        Run(1000);
        heard.clear();
    }
    ~Stack() { radio.instead = {}; }

    bool BecomesReady()
    {
        return RunUntil(
            [this] { return m_link.IsReady() && executive.Link().state == LinkStatus::State::Ready; });
    }
    void Say(const std::string& message)
    {
        Take(m_link.Send(FromHex(message), Now()).output);
        Run(500);
    }
    void Begin(const std::string& what)
    {
        if (what == "status")
            executive.SendStatus("Unit20", 5);
        else if (what == "text")
            executive.SendText("Unit20", "Hello", false);
        else if (what == "regroup")
            executive.SendRegroup("Unit20", 3, "/0007001");
        else if (what == "call")
            executive.StartCall("Unit20", false, false, true);
        else if (what == "ring")
            Say("A4 00 00 02 00 08");
        else if (what == "talk")
            Say("A4 00 00 02 00 00");
        Run(500);
    }
    QString Label(const char* name)
    {
        const auto& label = Find<QLabel>(name);
        return label.isVisible() ? label.text() : QString();
    }
    QString Strip()
    {
        QStringList texts;
        for (const char* name : {"callText", "inUseText", "failedText", "attentionText"})
            texts.append(Label(name));
        texts.removeAll(QString());
        return texts.join(u' ');
    }
    void Dismiss()
    {
        for (const char* name : {"cmdDismissFailed", "cmdAttentionDone"})
            for (auto& button = Find<QAbstractButton>(name); button.isVisible();) {
                Run(1500); // a button that has just moved does nothing
                button.click();
            }
    }
    QString Bar() { return Find<QWidget>("sbrStatus").findChild<QLabel*>("main")->text(); }

    std::string condition = "B2 04 80 FF";
    std::string numbering = "B1 00 00 03 00 02 00 47 00 00 00 00";
    QStringList heard; // from the console, but for its questions

private:
    QByteArray Exchange(const QByteArray& sent)
    {
        const auto* first = reinterpret_cast<const std::uint8_t*>(sent.constData());
        Take(m_link.Feed({first, static_cast<std::size_t>(sent.size())}, Now()));
        Take(m_link.OnTime(Now()));
        return std::exchange(m_answer, {});
    }
    void Take(const map27::LinkOutput& output)
    {
        for (const map27::Octets& frame : output.frames)
            m_answer.append(reinterpret_cast<const char*>(frame.data()),
                            static_cast<qsizetype>(frame.size()));
        for (const map27::LinkEvent& event : output.events)
            if (const auto* message = std::get_if<map27::MessageReceived>(&event))
                Hear(map27::ToHex(message->message));
    }
    void Hear(const std::string& message)
    {
        const std::map<std::string, std::string> answers{{"B0 00", "B0 00 00 03 2A 51 E2 40 FE 00 00 FE"},
                                                         {"B0 01", numbering},
                                                         {"B0 03", condition},
                                                         {"B0 04", "B5 01 2C 12 34"}};
        if (const auto answer = answers.find(message); answer != answers.end())
            Take(m_link.Send(FromHex(answer->second), Now()).output);
        else
            heard.append(QString::fromStdString(message));
    }
    map27::TimePoint Now() const { return map27::TimePoint{clock.Ticks()}; }

    map27::Link m_link{map27::LinkParameters::ForBitRate(9600)};
    QByteArray m_answer;
};

TEST(Causes, AreToldInWordsWhereTheDispatcherLooks)
{
    Stack stack;
    for (const TableRow& row : ReadTable("causes.tsv", "causes", 63)) {
        const auto& [began, octets, box, bar, strip, progress] =
            std::tie(row.at(0), row.at(1), row.at(2), row.at(3), row.at(4), row.at(5));
        SCOPED_TRACE(began + ", " + octets);
        stack.Begin(began);
        if (box != "-")
            stack.prompt.ExpectWarning(stack.Text(std::stoi(box)));
        if (octets == "unplug")
            stack.radio.Unplug();
        else
            stack.Say(octets);
        stack.Run(500);
        stack.prompt.Finish();
        EXPECT_EQ(stack.Bar().toStdString(), bar);
        EXPECT_EQ(stack.Strip().isEmpty(), strip == "-") << stack.Strip().toStdString();
        EXPECT_TRUE(strip == "-" || stack.Strip().contains(QString::fromStdString(strip)))
            << stack.Strip().toStdString();
        if (progress != "-") {
            EXPECT_TRUE(stack.AgentShown() && stack.Progress().split('\n').last().toStdString() == progress)
                << stack.Progress().toStdString();
        }
        if (octets != "unplug") {
            EXPECT_TRUE(ReadFile(ProgramLog::FileName()).contains(QByteArray::fromStdString(octets)));
        }

        stack.radio.plugged = true;
        stack.Run(3000); // what was asked when the link came back has been answered
        stack.executive.ResetTran();
        ASSERT_TRUE(stack.BecomesReady());
        stack.Run(1000);
        stack.Dismiss();
        EXPECT_EQ(stack.Strip(), QString());
        EXPECT_EQ(stack.executive.TransactionKind(), TransactionKind::None);
        ASSERT_FALSE(HasFailure());
    }
}

// The window of this shift's messages, newest first.
QTableView& SentList()
{
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* list = window->findChild<QTableView*>("lvSent"))
            return *list;
    throw std::runtime_error("no list of what was sent");
}

QString SentCell(int row, int column)
{
    return SentList().model()->index(row, column).data().toString();
}

TEST(Causes, StandInTheListOfThisShift)
{
    Stack stack;
    int sent = 0;
    for (const TableRow& row : ReadTable("causes.tsv", "sent", 13)) {
        SCOPED_TRACE(row.at(0) + ", " + row.at(2));
        const QString to = QString::fromStdString(row.at(1));
        if (row.at(0) == "status")
            stack.executive.SendStatus(to, 5);
        else
            stack.executive.SendText(to, "Hello", false);
        stack.Run(500);
        if (row.at(2).find("E0") != std::string::npos || row.at(2).starts_with("B4"))
            stack.prompt.ExpectWarning(stack.Text(RadioText::MessageNotSent));
        if (row.at(2) == "unplug")
            stack.radio.Unplug();
        else if (row.at(2) == "cancel")
            stack.executive.ResetTran();
        else if (row.at(2) != "-")
            for (const QString& octets : QString::fromStdString(row.at(2)).split(u','))
                stack.Say(octets.toStdString());
        stack.Run(500);
        stack.prompt.Finish();
        EXPECT_EQ(SentList().model()->rowCount(), ++sent);
        EXPECT_EQ(SentCell(0, 1), to);
        EXPECT_EQ(SentCell(0, 3).toStdString(), row.at(3));
        EXPECT_EQ(SentCell(0, 4).toStdString(), row.at(4) == "-" ? "" : row.at(4));

        stack.radio.plugged = true;
        stack.Run(3000); // what was asked when the link came back has been answered
        stack.executive.ResetTran();
        ASSERT_TRUE(stack.BecomesReady());
        stack.Run(1000);
        EXPECT_EQ(SentCell(0, 3) == "Delivered", row.at(3) == "Delivered") << "nothing confirms it later";
        ASSERT_FALSE(HasFailure());
    }
}

TEST(Causes, AMessageIsSentAgainFromTheListAsANewOne)
{
    Stack stack;
    stack.executive.SendText("Unit20", "Hello", true);
    stack.Run(500);
    stack.Say("C0 00 00 02 00 00");
    stack.executive.SendStatus("Unit20", 11, Map27Executive::Purpose::Command);
    stack.Run(500);
    stack.Say("C0 00 00 02 00 00");
    stack.prompt.ExpectWarning(stack.Text(RadioText::AddressUnknown).replace("#01", "Nobody"));
    stack.executive.SendStatus("Nobody", 5);
    stack.prompt.Finish();
    EXPECT_EQ(SentCell(0, 3), "Not delivered") << "what never left is listed, too";
    const qsizetype records = stack.Records().size();

    stack.Find<QAction>("miSentMessages").trigger();
    auto& again = *SentList().window()->findChild<QPushButton*>("cmdSendAgain");
    EXPECT_FALSE(again.isEnabled()) << "nothing is chosen";
    SentList().selectRow(1);
    EXPECT_FALSE(again.isEnabled()) << "a command to an outstation";
    stack.heard.clear();
    QTest::keyClick(&SentList(), Qt::Key_Return);
    SentList().selectRow(2);
    QTest::keyPress(&SentList(), Qt::Key_Return);
    QTest::keyPress(&SentList(), Qt::Key_Return); // still held
    stack.Run(500);
    ASSERT_EQ(stack.heard.size(), 1);
    EXPECT_TRUE(stack.heard.first().startsWith("81") || stack.heard.first().startsWith("82"));
    EXPECT_EQ(SentList().selectionModel()->selectedRows().value(0).row(), 3) << "the choice stays";
    EXPECT_EQ(SentCell(0, 3), "Sending");
    stack.Say("C0 00 00 02 00 00");
    EXPECT_EQ(SentCell(0, 3), "Delivered");
    EXPECT_EQ(stack.Records().size(), records + 1);

    stack.prompt.ExpectConfirmation(stack.Text(2027), true);
    stack.Find<QAction>("miLogOnLogOff").trigger();
    EXPECT_EQ(SentList().model()->rowCount(), 0) << "the next operator's list is a new one";
}

TEST(Causes, NameWhoAndWhatIsCalling)
{
    Stack stack;
    for (const TableRow& row : ReadTable("causes.tsv", "callers", 13)) {
        SCOPED_TRACE(row.at(0));
        stack.Say(row.at(0));
        EXPECT_EQ(stack.executive.AgentWindow().windowTitle().toStdString(), row.at(1));
        EXPECT_EQ(stack.Agent<QListWidget>("lsParty").item(0)->text().toStdString(), row.at(2));
        EXPECT_EQ(stack.Agent<QPushButton>("cmdPTT").isVisible(), row.at(3) == "talk");
        const auto& log = *stack.Find<QTreeView>("lvLog").model();
        const QModelIndex line = log.index(log.rowCount() - 1, 0);
        EXPECT_TRUE(line.data().toString().toStdString().ends_with(row.at(4)))
            << line.data().toString().toStdString();
        EXPECT_EQ(line.data(LogModel::TagRole).toString().toStdString(), row.at(5));
        EXPECT_EQ(line.data(LogModel::EmergencyRole).toBool(), row.at(0).starts_with("A5"));
        EXPECT_EQ(stack.Records().last().toStdString(), row.at(6));

        stack.Say("E5 00 00 02 00 03"); // those that ring are missed
        const std::string strip = row.at(7);
        EXPECT_TRUE(strip == "-" || stack.Strip().contains(QString::fromStdString(strip)))
            << stack.Strip().toStdString();
        if (strip != "-" && !row.at(0).starts_with("A5")) {
            EXPECT_EQ(stack.Find<QAbstractButton>("cmdCallBack").isVisible(), row.at(8) != "-");
        }
        stack.executive.ResetTran();
        ASSERT_TRUE(stack.BecomesReady());
        stack.Run(1500);
        stack.heard.clear();
        if (strip != "-" && row.at(8) != "-") {
            stack.Find<QAbstractButton>("cmdCallBack").click();
            stack.Run(500);
            EXPECT_EQ(stack.heard.value(0).toStdString(), row.at(8));
            stack.executive.ResetTran();
            ASSERT_TRUE(stack.BecomesReady());
        }
        stack.Dismiss();
        ASSERT_FALSE(HasFailure());
    }
    stack.Find<LogPane>("picLog").ReloadLog();
    const auto& log = *stack.Find<QTreeView>("lvLog").model();
    EXPECT_TRUE(log.index(log.rowCount() - 1, 0).data(LogModel::TagRole).toString().isEmpty())
        << "read back, nobody is nobody, too";
}

TEST(Causes, ACallThatOutlivesItsLinkIsOursAgainAndNothingStaysKeyed)
{
    Stack stack;
    auto& ptt = stack.Agent<QPushButton>("cmdPTT");
    for (const bool outgoing : {false, true}) {
        stack.Begin(outgoing ? "call" : "talk");
        if (outgoing)
            stack.Say("C4 00 00 02 00 00");
        QTest::mousePress(&ptt, Qt::LeftButton);
        stack.Run(300);
        ASSERT_EQ(stack.heard.last(), QStringLiteral("B2 03"));
        const qsizetype records = stack.Records().size();

        stack.radio.Unplug();
        stack.Run(3000);
        EXPECT_FALSE(stack.AgentShown());
        EXPECT_TRUE(stack.Strip().contains("The call with Unit20 is over: the connection")) << outgoing;
        stack.prompt.ExpectWarning(stack.Text(RadioText::LinkNotReady));
        stack.executive.SendStatus("Unit22", 5); // what is tried meanwhile changes nothing
        stack.prompt.Finish();
        stack.heard.clear();
        stack.condition = "B2 07 80 FF";
        stack.radio.plugged = true;
        ASSERT_TRUE(stack.RunUntil([&] { return !stack.heard.isEmpty(); }));
        EXPECT_EQ(stack.heard, QStringList("B2 02")) << "off hook, but not transmitting";
        stack.condition = "B2 06 80 FF";
        stack.Run(1000);
        EXPECT_TRUE(stack.AgentShown());
        EXPECT_EQ(stack.executive.TransactionKind(), TransactionKind::CallConnected);
        EXPECT_EQ(stack.Agent<QListWidget>("lsParty").item(0)->text(), QStringLiteral("Unit20"));
        EXPECT_EQ(ptt.text(), stack.Text(RadioText::TransmitReleased)) << "though it is still held down";
        EXPECT_EQ(stack.Records().size(), records);
        EXPECT_EQ(stack.Label("inUseText"), QString());
        QTest::mouseRelease(&ptt, Qt::LeftButton);
        QTest::mousePress(&ptt, Qt::LeftButton);
        stack.Run(300);
        EXPECT_EQ(stack.heard.last(), QStringLiteral("B2 03"));
        stack.Click("cmdAnswerHungup");
        stack.condition = "B2 04 80 FF";
        stack.Say(stack.condition);
        EXPECT_TRUE(stack.heard.last().startsWith("86 00 00 02")) << stack.heard.last().toStdString();
        EXPECT_EQ(stack.executive.TransactionKind(), TransactionKind::None);
        stack.Dismiss();
    }
}

TEST(Causes, ARadioInUseByItselfIsShownAndCanBeHungUp)
{
    Stack stack;
    stack.condition = "B2 06 80 FF";
    stack.Say(stack.condition);
    EXPECT_EQ(stack.Label("inUseText"), stack.Text(RadioText::OffHookUnasked));
    stack.condition = "B2 07 80 FF";
    stack.Say(stack.condition);
    EXPECT_EQ(stack.Label("inUseText"), stack.Text(RadioText::TransmitsUnasked));
    EXPECT_EQ(stack.Bar(), stack.Text(RadioText::TransmitsUnasked));
    EXPECT_TRUE(ReadFile(ProgramLog::FileName()).contains("B2 07 80 FF"));
    EXPECT_TRUE(stack.heard.isEmpty()) << "whoever talks there is left alone";
    stack.Run(1500);
    stack.Find<QAbstractButton>("cmdHangUpRadio").click();
    stack.Run(300);
    EXPECT_EQ(stack.heard, QStringList("B2 00"));
    stack.condition = "B2 04 80 FF";
    stack.Say(stack.condition);
    EXPECT_EQ(stack.Strip(), QString());

    // The last word of a call that has just ended proves nothing.
    stack.Begin("talk");
    stack.Click("cmdAnswerHungup");
    stack.Say("B2 06 80 FF");
    EXPECT_EQ(stack.Strip(), QString());
}

TEST(Causes, ARadioThatReportsNonsenseIsTold)
{
    const std::pair<const char*, const char*> reports[] = {
        {"B1 00 00 03 00 47 00 02 00 00 00 00", "(idents 71..2, 2 digits)"},
        {"B1 00 00 03 00 00 00 00 00 00 00 00", "(idents 0..0, 2 digits)"},
        {"B1 00 00 00 00 00 00 00 00 00 00 00", "(prefix 0, ident 0)"},
    };
    Stack stack;
    for (const auto& [report, words] : reports) {
        stack.Say(report);
        EXPECT_TRUE(stack.Label("numberingText").contains(words))
            << stack.Label("numberingText").toStdString();
        EXPECT_TRUE(ReadFile(ProgramLog::FileName()).contains(words));
        EXPECT_EQ(stack.executive.MyCallsign(), QStringLiteral("Dispatch")) << "the last that made sense";
        stack.Say(stack.numbering);
        EXPECT_EQ(stack.Label("numberingText"), QString());
    }
}

} // namespace
