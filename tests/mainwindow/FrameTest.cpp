// The frame: places of the panes, full screen, splitter, placement across runs, tabs, closing, status bar and
// strip.

#include "MainWindowStack.h"
#include "core/attention/AttentionBook.h"
#include "core/session/Registry.h"
#include "mainwindow/bars/StatusBar.h"
#include "mainwindow/bars/StatusPanel.h"
#include "mainwindow/frame/PaneLayout.h"
#include "mainwindow/log/LogModel.h"
#include "mainwindow/log/LogPane.h"
#include "support/DialogDriver.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSignalSpy>
#include <QTabBar>
#include <QToolButton>
#include <QTreeView>

namespace {

struct FieldCase {
    int strength;
    const char* text;
};

TEST(FieldStrength, RoundsHalvesToTheEvenMark)
{
    constexpr FieldCase Cases[] = {
        {0, "0 ........"},     {15, "15 ........"},   {16, "16 |......."},   {46, "46 |......."},
        {47, "47 ||......"},   {79, "79 ||......"},   {80, "80 |||....."},   {100, "100 |||....."},
        {239, "239 ||||||||"}, {240, "240 ||||||||"}, {255, "255 ||||||||"}, {207, "207 ||||||.."},
    };
    MainWindowStack stack;
    StatusBar bar(stack.strings, stack.clock, nullptr);
    for (const FieldCase& c : Cases) {
        bar.ShowOperatingConditions(true, c.strength);
        EXPECT_EQ(bar.Panel(StatusBar::Part::FieldStrength).text(), QLatin1String(c.text));
    }
}

struct LayoutCase {
    double logWidth;
    QRect log, splitter, tabPane, send;
};

TEST(PaneLayout, SharesTheClientAreaOfTheTabs)
{
    const LayoutCase Cases[] = {
        {190, {410, 72, 190, 204}, {404, 72, 6, 204}, {0, 72, 404, 204}, {0, 280, 600, 90}},
        {0, {600, 72, 0, 204}, {594, 72, 6, 204}, {0, 72, 594, 204}, {0, 280, 600, 90}},
        {594, {6, 72, 594, 204}, {0, 72, 6, 204}, {0, 72, 0, 204}, {0, 280, 600, 90}},
        {5000, {6, 72, 594, 204}, {0, 72, 6, 204}, {0, 72, 0, 204}, {0, 280, 600, 90}},
    };
    for (const LayoutCase& c : Cases) {
        const PaneLayout layout = ArrangePanes({.client = {600, 392},
                                                .toolBarHeight = 40,
                                                .statusBarHeight = 22,
                                                .tabRowHeight = 30,
                                                .splitterWidth = 6,
                                                .sendPaneHeight = 90,
                                                .logWidth = c.logWidth});
        EXPECT_EQ(layout.tabStrip, QRect(0, 40, 600, 330));
        EXPECT_EQ(layout.log, c.log);
        EXPECT_EQ(layout.splitter, c.splitter);
        EXPECT_EQ(layout.tabPane, c.tabPane);
        EXPECT_EQ(layout.send, c.send);
    }
}

TEST(Frame, OpensWhereItStoodAndFirstAtTheDefaultPlace)
{
    MainWindowStack stack;
    winMain& first = stack.Open();
    EXPECT_EQ(QRect(first.pos(), first.size()), QRect(0, 0, 600, 400));
    EXPECT_TRUE(stack.Find<QLabel>("lblSeeLast").isVisible());
    EXPECT_FALSE(first.IsFullScreen());
    EXPECT_EQ(stack.Find<QTabBar>("tsMain").currentIndex(), 0);
    first.move(30, 40);
    first.resize(640, 480);
    stack.CloseWindow();
    winMain& second = stack.Open();
    EXPECT_EQ(QRect(second.pos(), second.size()), QRect(30, 40, 640, 480));

    // A place that is on no screen any more.
    stack.CloseWindow();
    stack.settings.Write(QStringLiteral("winMain"), QStringLiteral("x"), QStringLiteral("9000"));
    winMain& third = stack.Open();
    EXPECT_TRUE(third.screen()->geometry().intersects(third.geometry()));
}

TEST(Frame, FullScreenRestoresAndStoresTheRectangleBefore)
{
    MainWindowStack stack;
    winMain& window = stack.Open();
    const QRect normal(50, 60, 620, 420);
    window.move(normal.topLeft());
    window.resize(normal.size());
    stack.Click("tbMain_fullscreen");
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.geometry() == window.screen()->geometry(); }));
    EXPECT_TRUE(stack.Action("miFullscreen").isChecked());
    EXPECT_TRUE(stack.Action("miFullscreen").isEnabled()) << "full screen can be left again";
    stack.Trigger("miFullscreen");
    EXPECT_TRUE(QTest::qWaitFor([&] { return QRect(window.pos(), window.size()) == normal; }));
    EXPECT_FALSE(stack.Find<QToolButton>("tbMain_fullscreen").isChecked());

    stack.Trigger("miFullscreen");
    stack.CloseWindow();
    EXPECT_EQ(stack.settings.Read(QStringLiteral("winMain"), QStringLiteral("wi"), {}),
              QStringLiteral("620"));
    EXPECT_EQ(stack.settings.Read(QStringLiteral("winMain"), QStringLiteral("fullscreen"), {}),
              QStringLiteral("True"));
    winMain& again = stack.Open();
    EXPECT_TRUE(again.IsFullScreen());
    EXPECT_TRUE(QTest::qWaitFor([&] { return again.geometry() == again.screen()->geometry(); }));
    stack.Click("tbMain_fullscreen");
    EXPECT_TRUE(QTest::qWaitFor([&] { return QRect(again.pos(), again.size()) == normal; }));
}

TEST(Frame, AMaximisedWindowHasNoFullScreenAndComesBackMaximised)
{
    MainWindowStack stack;
    winMain& window = stack.Open();
    window.showMaximized();
    EXPECT_FALSE(stack.Action("miFullscreen").isEnabled());
    EXPECT_FALSE(stack.Find<QWidget>("tbMain_fullscreen").isEnabled());
    stack.CloseWindow();
    EXPECT_EQ(stack.settings.WindowPlacement().width, 600);
    winMain& again = stack.Open();
    EXPECT_TRUE(again.isMaximized());
    again.showNormal();
    EXPECT_TRUE(stack.Action("miFullscreen").isEnabled());
    EXPECT_TRUE(QTest::qWaitFor([&] { return again.size() == QSize(600, 400); }));
}

void Drag(QWidget& splitter, int by)
{
    const QPoint start = splitter.rect().topLeft();
    QTest::mousePress(&splitter, Qt::LeftButton, Qt::NoModifier, start);
    EXPECT_EQ(splitter.backgroundRole(), QPalette::Highlight);
    const QPoint end = start + QPoint(by, 0);
    QMouseEvent move(QEvent::MouseMove, QPointF(end), QPointF(splitter.mapToGlobal(end)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&splitter, &move);
    QTest::mouseRelease(&splitter, Qt::LeftButton, Qt::NoModifier, {});
    EXPECT_EQ(splitter.backgroundRole(), QPalette::Button);
}

TEST(Frame, TheSplitterStaysInsideAndItsWidthIsKept)
{
    OpenStack stack;
    EXPECT_EQ(stack.Find<QWidget>("picLog").width(), 190);
    Drag(stack.Find<QWidget>("picHPaneResize"), -60);
    EXPECT_EQ(stack.Find<QWidget>("picLog").width(), 250);
    EXPECT_EQ(stack.Find<QWidget>("picGroups").width() + 6 + 250, 600);
    stack.CloseWindow();
    stack.Open();
    EXPECT_EQ(stack.Find<QWidget>("picLog").width(), 250);
    Drag(stack.Find<QWidget>("picHPaneResize"), -5000);
    EXPECT_EQ(stack.Find<QWidget>("picLog").width(), 594);
    Drag(stack.Find<QWidget>("picHPaneResize"), 5000);
    EXPECT_EQ(stack.settings.LogWidth(), 0);
}

TEST(Frame, TabsGoRoundAndShowTheirPane)
{
    OpenStack stack;
    const QStringList panes = {QStringLiteral("picGroups"), QStringLiteral("picIndividuals"),
                               QStringLiteral("picScada")};
    const auto shown = [&] {
        QStringList visible;
        for (const QString& pane : panes)
            if (stack.Find<QWidget>(pane.toLatin1()).isVisible())
                visible.append(pane);
        return visible.join(QLatin1Char(' '));
    };
    auto& address = stack.Find<QWidget>("cmbAddress");
    EXPECT_EQ(shown(), panes[0]);
    for (const int next : {1, 2, 0, 1}) {
        QTest::keyClick(&address, Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_EQ(shown(), panes[next]);
    }
    for (const int next : {0, 2}) {
        QTest::keyClick(&address, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(shown(), panes[next]);
    }
    stack.Window().SelectTab(MainTabs::Tab::Individuals);
    EXPECT_EQ(shown(), panes[1]);
}

TEST(Closing, AsksExactlyOnceWhileLoggedOn)
{
    MainWindowStack stack;
    winMain& window = stack.Open();
    QSignalSpy unloaded(&window, &winMain::Unloaded);
    stack.LogOn();
    // The close button a second time while the question is open asks no second one.
    stack.prompt.whileOpen = [&] { window.close(); };
    stack.prompt.ExpectConfirmation(stack.Text(2020), false);
    EXPECT_FALSE(window.close());
    stack.prompt.ExpectConfirmation(stack.Text(2020), false);
    stack.Trigger("mbExit");
    stack.prompt.whileOpen = nullptr;
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(unloaded.count(), 0);

    stack.prompt.ExpectConfirmation(stack.Text(2020), true);
    stack.Trigger("mbExit");
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(unloaded.count(), 1);
    window.close();
    EXPECT_EQ(unloaded.count(), 1);
}

TEST(Closing, EndsTheSessionButLeavesTheDatabaseOpen)
{
    MainWindowStack stack;
    winMain& window = stack.Open();
    stack.LogOn();
    RegistrySet(stack.session, QStringLiteral("on_off_duty"), QStringLiteral("1"));
    stack.executive.UpdateDutyStatus(QStringLiteral("Dispatch"), true);
    stack.prompt.ExpectConfirmation(stack.Text(2020), true);
    EXPECT_TRUE(window.close());
    EXPECT_TRUE(stack.session.IsOpen());
    EXPECT_FALSE(stack.ProfileIsLoggedOn());
    EXPECT_TRUE(stack.control->operations.contains(QStringLiteral("CloseLink")));
    const auto directory = stack.EntryOf(QStringLiteral("Dispatch"));
    EXPECT_FALSE(directory->Field(QStringLiteral("on_duty")).toBool());
    // What the radio still says reaches no window.
    Q_EMIT stack.control->TextReceived(QStringLiteral("late"), 0, 2);
}

TEST(Closing, WithoutAnOperatorThereIsNoQuestion)
{
    MainWindowStack stack;
    winMain& window = stack.Open();
    QSignalSpy unloaded(&window, &winMain::Unloaded);
    EXPECT_TRUE(window.close());
    EXPECT_EQ(unloaded.count(), 1);
}

TEST(Dialogs, BlockTheMainWindowButNotTheOneOfTheRadioCall)
{
    LoggedOnStack stack;
    Q_EMIT stack.control->IncomingCall(0, 8, 0, 2);
    {
        driver::WhenShown act(QStringLiteral("frmSettings"), [&](QWidget& dialog) {
            EXPECT_EQ(dialog.windowModality(), Qt::WindowModal);
            EXPECT_EQ(dialog.parentWidget(), &stack.Window());
            EXPECT_EQ(stack.executive.AgentWindow().parentWidget(), nullptr);
            driver::Click(dialog, QStringLiteral("cmdCancel"));
        });
        stack.Trigger("miSettings");
    }
    EXPECT_EQ(stack.settingsDialog.parentWidget(), nullptr) << "the window would take the dialog with it";
    {
        driver::WhenShown act(QStringLiteral("frmPassword"), [](QWidget& dialog) {
            driver::Type(dialog, QStringLiteral("txt_0"), QString::fromLatin1(TestDatabase::password));
            driver::Type(dialog, QStringLiteral("txt_1"), QStringLiteral("new secret"));
            driver::Type(dialog, QStringLiteral("txt_2"), QStringLiteral("new secret"));
            driver::Click(dialog, QStringLiteral("Command2"));
        });
        stack.Trigger("miPassword");
    }
    EXPECT_EQ(stack.Panel("main"), stack.Text(2231));
}

TEST(StatusBar, ShowsMessagesConditionAndTime)
{
    OpenStack stack;
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^V\\d+\\.\\d{2,}\\.\\d{4,}$"))
                    .match(stack.Panel("version"))
                    .hasMatch());
    EXPECT_EQ(stack.Panel("callsign"), QStringLiteral("---"));
    EXPECT_EQ(stack.Panel("time"), QStringLiteral("10:00 AM"));
    stack.clock.Step(std::chrono::hours(15));
    dynamic_cast<StatusBar&>(stack.Find<QWidget>("sbrStatus")).ShowNow();
    EXPECT_EQ(stack.Panel("time"), QStringLiteral("1:00 AM"));
    EXPECT_EQ(stack.Panel("date"), QStringLiteral("3/2/24"));

    stack.Find<StatusBar>("sbrStatus").SbrMessage(QStringLiteral("text"));
    EXPECT_EQ(stack.Panel("main"), QStringLiteral("text"));
    EXPECT_EQ(stack.Find<QLabel>("main").toolTip(),
              QStringLiteral("Last updated: Saturday, March 2, 2024 at 1:00 AM."));
    for (const bool inService : {true, false}) {
        stack.Find<StatusBar>("sbrStatus").ShowOperatingConditions(inService, 47);
        EXPECT_EQ(stack.Panel("opcon"), QString(QChar(inService ? 216 : 215)));
        EXPECT_EQ(stack.Find<QLabel>("opcon").accessibleName(), stack.Text(inService ? 5410 : 5411));
        EXPECT_EQ(stack.Panel("field"), QStringLiteral("47 ||......"));
    }
}

TEST(StatusBar, MouseAsksTheRadioAndOpensMenus)
{
    struct DoubleClick {
        const char* panel;
        const char* request;
    };
    constexpr DoubleClick Cases[] = {{"opcon", "RequestRadioInfo 3"},
                                     {"field", "RequestRadioInfo 3"},
                                     {"callsign", "RequestRadioInfo 1"},
                                     {"ident", "RequestRadioInfo 1"}};
    OpenStack stack;
    for (const DoubleClick& c : Cases) {
        QTest::mouseDClick(&stack.Find<QLabel>(c.panel), Qt::LeftButton);
        QTest::mouseClick(&stack.Find<QLabel>(c.panel), Qt::RightButton);
        EXPECT_FALSE(stack.Find<QMenu>("mbRadio").isVisible());
    }
    QTest::mouseDClick(&stack.Find<QLabel>("version"), Qt::LeftButton);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());
    EXPECT_EQ(stack.windows.opened, QStringList());
    stack.LogOn();
    for (const DoubleClick& c : Cases) {
        QTest::mouseDClick(&stack.Find<QLabel>(c.panel), Qt::LeftButton);
        EXPECT_EQ(stack.control->TakeOperations(), QStringList({QLatin1String(c.request)})) << c.panel;
        QTest::mouseClick(&stack.Find<QLabel>(c.panel), Qt::RightButton);
        EXPECT_TRUE(stack.Find<QMenu>("mbRadio").isVisible()) << c.panel;
        stack.Find<QMenu>("mbRadio").close();
    }
    QTest::mouseClick(&stack.Find<QLabel>("main"), Qt::RightButton);
    EXPECT_FALSE(stack.Find<QMenu>("mbRadio").isVisible());
    QTest::mouseClick(&stack.Find<QLabel>("version"), Qt::RightButton);
    EXPECT_TRUE(stack.Find<QMenu>("mbHelp").isVisible());
    stack.Find<QMenu>("mbHelp").close();
}

TEST(RadioCommands, SayWhatWasAskedOrWhyItCouldNot)
{
    LoggedOnStack stack;
    stack.Trigger("miNetInfo");
    EXPECT_EQ(stack.control->TakeOperations(), QStringList({QStringLiteral("RequestRadioInfo 4")}));
    EXPECT_EQ(stack.Panel("main"), stack.Text(2002));
    stack.control->failures[QStringLiteral("RequestRadioInfo")] = QStringLiteral("no connection");
    stack.prompt.ExpectWarning(QStringLiteral("no connection"));
    stack.Trigger("miOpCon");
    EXPECT_EQ(stack.Panel("main"), stack.Text(2028));
    stack.prompt.Finish();
    Q_EMIT stack.control->IncomingCall(0, 8, 0, 4);
    stack.Trigger("miNumInfo"); // told in the call window now
    EXPECT_TRUE(stack.executive.AgentWindow()
                    .findChild<QPlainTextEdit*>(QStringLiteral("txtLog"))
                    ->toPlainText()
                    .contains(QStringLiteral("no connection")));
    stack.control->failures[QStringLiteral("ResetLink")] = QStringLiteral("no port");
    stack.prompt.ExpectWarning(QStringLiteral("no port"));
    stack.Click("tbMain_disconnect");
}

TEST(LinkStrip, TakesRoomOnlyWhenItHasSomethingToSay)
{
    LoggedOnStack stack;
    const int tabsAlone = stack.Find<QWidget>("tsMain").y();
    const int sendAlone = stack.Find<QWidget>("picSend").y();
    stack.Find<StatusBar>("sbrStatus").ShowOperatingConditions(true, 100);
    stack.clock.Step(std::chrono::seconds(2));
    Q_EMIT stack.control->OperatingConditionReceived(1, 0, 0, 100, 0);
    EXPECT_EQ(stack.Panel("main"), stack.Text(2206));
    LinkStatus status{LinkStatus::State::Lost, QStringLiteral("The cable is out. ").repeated(20), false};
    Q_EMIT stack.control->LinkChanged(status);
    EXPECT_EQ(stack.Find<QLabel>("linkText").text(), status.text);
    EXPECT_EQ(stack.Panel("opcon") + stack.Panel("field"), QString()) << "a lost radio is not in service";
    EXPECT_EQ(stack.Panel("main"), QString()) << "nor ready";
    const int strip = stack.Find<QWidget>("linkStrip").height();
    EXPECT_GT(strip, 2 * stack.Window().fontMetrics().height()) << "a long text is not cut";
    EXPECT_EQ(stack.Find<QWidget>("tsMain").y(), tabsAlone + strip);
    EXPECT_EQ(stack.Find<QWidget>("picSend").y(), sendAlone) << "the lower edge stays";
    EXPECT_FALSE(stack.Find<QWidget>("simulationText").isVisible());

    Q_EMIT stack.control->LinkChanged({LinkStatus::State::Ready, QString(), true});
    EXPECT_TRUE(stack.Find<QWidget>("simulationText").isVisible());
    Q_EMIT stack.control->LinkChanged({LinkStatus::State::Ready, QString(), false});
    EXPECT_EQ(stack.Find<QWidget>("tsMain").y(), tabsAlone);

    // Twice the font and the smallest window: everything keeps its room.
    QFont large = stack.Window().font();
    large.setPointSizeF(2 * large.pointSizeF());
    stack.Window().setFont(large);
    stack.Window().resize(600, 400);
    Q_EMIT stack.control->LinkChanged(status);
    QApplication::processEvents();
    EXPECT_EQ(stack.Find<QWidget>("picSend").geometry().bottom() + 1, stack.Find<QWidget>("sbrStatus").y());
    EXPECT_GT(stack.Find<QWidget>("picLog").height(), 2 * stack.Window().fontMetrics().height());
}

TEST(LinkStrip, ANumberingThatContradictsTheRadioIsSaidOnce)
{
    LoggedOnStack stack;
    auto& text = stack.Find<QLabel>("numberingText");
    EXPECT_FALSE(text.isVisible());
    const int tabsAlone = stack.Find<QWidget>("tsMain").y();
    stack.control->unitMax = 61; // the plan has 2..71
    Q_EMIT stack.control->NumberingReceived();
    EXPECT_TRUE(text.isVisible());
    EXPECT_TRUE(text.text().contains(QStringLiteral("2..61"))) << text.text().toStdString();
    EXPECT_GT(stack.Find<QWidget>("tsMain").y(), tabsAlone);
    stack.clock.Step(std::chrono::seconds(1));
    stack.Click("cmdDismissNumbering");
    Q_EMIT stack.control->NumberingReceived();
    EXPECT_FALSE(text.isVisible()) << "nothing new";
    stack.control->unitMax = 51;
    Q_EMIT stack.control->NumberingReceived();
    EXPECT_TRUE(text.isVisible());
    stack.control->unitMax = 71;
    Q_EMIT stack.control->NumberingReceived();
    EXPECT_FALSE(text.isVisible());
    EXPECT_EQ(stack.Find<QWidget>("tsMain").y(), tabsAlone);
}

constexpr qint16 EmergencyCall = 165;

// Two emergencies, one of them twice, in a strip whose buttons do nothing for a second after each change.
TEST(Attention, EachEmergencyStaysUntilItIsDealtWith)
{
    LoggedOnStack stack;
    const auto text = [&] { return stack.Find<QLabel>("attentionText").text(); };
    const auto wait = [&](int seconds) { stack.clock.Step(std::chrono::seconds(seconds)); };
    Q_EMIT stack.control->IncomingCall(EmergencyCall, 8, 0, 2);
    EXPECT_EQ(text(), QStringLiteral("EMERGENCY: Unit20 (Emergency Incoming Call), since 10:00:00 AM"));
    EXPECT_EQ(stack.beeper.Heard(SoundKind::Emergency), 1);
    wait(7);
    Q_EMIT stack.control->IncomingCall(EmergencyCall, 8, 0, 4);
    Q_EMIT stack.control->TransactionCleared(0, 0);
    Q_EMIT stack.control->LinkChanged({LinkStatus::State::Ready, QString(), false});
    EXPECT_EQ(text(),
              QStringLiteral("EMERGENCY: Unit20 (Emergency Incoming Call), since 10:00:00 AM [in all: "
                             "emergencies: 2]"));
    stack.Click("cmdAttentionDone");
    EXPECT_EQ(stack.console.attention->Entries().size(), 2U) << "another one came just before the click";
    wait(1);
    stack.Click("cmdSilence");
    EXPECT_FALSE(stack.Find<QWidget>("cmdSilence").isVisible());
    stack.Click("cmdTake");
    EXPECT_TRUE(text().startsWith(QStringLiteral("EMERGENCY: Unit22"))) << "nobody has taken that one";
    stack.Click("cmdTake");
    wait(1);
    stack.Click("cmdTake");
    EXPECT_TRUE(text().contains(QStringLiteral("taken by admin at "))) << text().toStdString();
    EXPECT_FALSE(stack.Find<QWidget>("cmdTake").isVisible());
    Q_EMIT stack.control->IncomingCall(EmergencyCall, 8, 0, 4);
    EXPECT_TRUE(text().contains(QStringLiteral("2 times"))) << "he calls again, so it is not over";
    for (int i = 0; i < 2; ++i) {
        wait(1);
        stack.Click("cmdAttentionDone");
    }
    EXPECT_FALSE(stack.Find<QLabel>("attentionText").isVisible());
    stack.executive.ResetTran();
}

TEST(Attention, ACallThatNobodyAnsweredStaysUntilItIsCalledBack)
{
    LoggedOnStack stack;
    const auto text = [&] { return stack.Find<QLabel>("attentionText").text(); };
    const auto ring = [&](qint16 ident) { Q_EMIT stack.control->IncomingCall(0, 8, 0, ident); };
    const auto clear = [&] { Q_EMIT stack.control->TransactionCleared(0, 0); };
    ring(2);
    EXPECT_FALSE(stack.Find<QWidget>("attentionText").isVisible()) << "it still rings";
    clear();
    EXPECT_EQ(text(), QStringLiteral("Missed call: Unit20 (Incoming Call), since 10:00:00 AM"));

    // Answered, refused, and one that takes over while another one rings.
    stack.clock.Step(std::chrono::seconds(7));
    auto* button =
        stack.executive.AgentWindow().findChild<QAbstractButton*>(QStringLiteral("cmdAnswerHungup"));
    ring(4);
    button->click();
    Q_EMIT stack.control->AnswerProgress(197, 0);
    clear();
    ring(4);
    stack.executive.AgentWindow().findChild<QAbstractButton*>(QStringLiteral("cmdClose"))->click();
    EXPECT_EQ(stack.console.attention->Entries().size(), 1U);
    ring(2);
    ring(4);
    EXPECT_TRUE(text().contains(QStringLiteral("2 times since 10:00:00 AM, last at 10:00:07 AM")));

    stack.LogOff(); // while the last one rings
    EXPECT_TRUE(text().endsWith(QStringLiteral("[in all: missed calls: 2]"))) << text().toStdString();
    EXPECT_TRUE(stack.Find<QWidget>("attentionText").isVisible());
    for (const char* name : {"cmdTake", "cmdCallBack", "cmdAttentionDone"})
        EXPECT_FALSE(stack.Find<QWidget>(name).isEnabled()) << "somebody has to take note of it";
    EXPECT_FALSE(stack.Find<QWidget>("lvAttention").isVisible());
    stack.LogOn();
    EXPECT_TRUE(stack.Find<QWidget>("lvAttention").isVisible()) << "the next one is told";
    EXPECT_FALSE(stack.Find<QWidget>("lvAttention").hasFocus());
    stack.control->TakeOperations();
    stack.clock.Step(std::chrono::seconds(1));
    stack.Address().setEditText("half a line");
    stack.Click("cmdCallBack");
    EXPECT_EQ(stack.control->TakeOperations(), QStringList({QStringLiteral("MakeCall 0 2 off off on")}));
    EXPECT_EQ(stack.Address().currentText(), "half a line");
    EXPECT_EQ(stack.console.attention->Entries().size(), 2U) << "not yet connected";
    Q_EMIT stack.control->OutgoingCallProgress(196, 0);
    EXPECT_EQ(stack.console.attention->Entries().size(), 1U);
    stack.executive.ResetTran();
}

TEST(Attention, AMessageThatFailedIsSentAgainAndAnEmergencyStatusSounds)
{
    LoggedOnStack stack;
    const auto status = stack.session.Database().OpenTable("status");
    status->Seek(7);
    status->Edit();
    status->SetField("emergency", true);
    status->Update();
    stack.Window().LoadStati();
    stack.prompt.ExpectWarning(stack.Text(2202));
    stack.executive.SendText(QStringLiteral("Unit20"), QStringLiteral("a \\x"), true);
    stack.control->TakeOperations();
    Q_EMIT stack.control->MessageProgress(224, 0, 0, 2);
    QCoreApplication::processEvents();
    stack.prompt.Finish();
    const auto text = [&] { return stack.Find<QLabel>("attentionText").text(); };
    EXPECT_TRUE(text().startsWith(QStringLiteral("Message not sent: Unit20 (a "))) << text().toStdString();
    EXPECT_EQ(stack.beeper.Heard(SoundKind::Failure), 1);
    stack.clock.Step(std::chrono::seconds(1));
    stack.Click("cmdSendAgain");
    EXPECT_EQ(stack.control->TakeOperations().size(), 1);
    Q_EMIT stack.control->MessageProgress(192, 0, 0, 2);
    EXPECT_TRUE(stack.console.attention->Entries().empty());

    Q_EMIT stack.control->StatusReceived(0, 2, 5);
    EXPECT_TRUE(stack.console.attention->Entries().empty());
    stack.clock.Step(std::chrono::seconds(1));
    Q_EMIT stack.control->StatusReceived(0, 2, 7);
    EXPECT_TRUE(text().startsWith(QStringLiteral("EMERGENCY: Unit20 (07 - Busy)"))) << text().toStdString();
    EXPECT_EQ(stack.beeper.Heard(SoundKind::Emergency), 1);
    const auto last = [&] {
        const auto& log = *stack.Find<QTreeView>("lvLog").model();
        return log.index(log.rowCount() - 1, 0);
    };
    EXPECT_TRUE(last().data(LogModel::EmergencyRole).toBool()) << last().data().toString().toStdString();
    stack.Find<LogPane>("picLog").ReloadLog();
    EXPECT_TRUE(last().data(LogModel::EmergencyRole).toBool()) << "read back";
}

// A sentence that is being typed goes to its box, whatever comes in.
TEST(Attention, TakesNoKeyThatWasMeantForSomethingElse)
{
    LoggedOnStack stack;
    stack.Address().setFocus();
    stack.Address().clearEditText();
    Q_EMIT stack.control->IncomingCall(EmergencyCall, 0, 0, 2);
    Q_EMIT stack.control->TransactionCleared(0, 0);
    stack.Window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stack.Window()));
    stack.Address().setFocus();
    stack.clock.Step(std::chrono::seconds(5));
    for (int i = 0; i < 60; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        ASSERT_FALSE(stack.Find<QWidget>("attentionPanel").isAncestorOf(QApplication::focusWidget()));
    }
    stack.Address().setFocus();
    for (const Qt::Key key : {Qt::Key_T, Qt::Key_D, Qt::Key_S})
        QTest::keyClick(&stack.Window(), key, Qt::AltModifier);
    EXPECT_FALSE(stack.console.attention->Entries().front().IsTaken());

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F11); // on purpose
    auto& list = stack.Find<QTreeView>("lvAttention");
    EXPECT_TRUE(list.hasFocus());
    QTest::keyClick(&list, Qt::Key_Return);
    QTest::keyClick(&list, Qt::Key_Space);
    EXPECT_FALSE(stack.console.attention->Entries().front().IsTaken());
    stack.clock.Step(std::chrono::seconds(1)); // the row may have moved
    QTest::keyClick(&stack.Find<QWidget>("cmdTake"), Qt::Key_Space);
    EXPECT_TRUE(stack.console.attention->Entries().front().IsTaken());
    QTest::keyClick(&list, Qt::Key_Escape);
    EXPECT_FALSE(list.isVisible());
    EXPECT_TRUE(stack.Address().hasFocus());
}

// What somebody wrote into the settings by hand is told once, all of it, and the window opens with the
// defaults.
TEST(Frame, NonsenseSettingsAreToldInOneBox)
{
    MainWindowStack stack;
    stack.settings.Write(QStringLiteral("prefs"), QStringLiteral("log_width"), QStringLiteral("abc"));
    stack.settings.Write(QStringLiteral("prefs"), QStringLiteral("log_time_period"), QStringLiteral("-5"));
    stack.settings.Write(QStringLiteral("winMain"), QStringLiteral("fullscreen"), QStringLiteral("perhaps"));
    stack.prompt.ExpectWarning(
        QStringLiteral("Settings, section [prefs], log_width: \"abc\" is not a number.\n"
                       "Settings, section [winMain], fullscreen: \"perhaps\" is neither True nor False."));
    const winMain& window = stack.Open();
    QCoreApplication::processEvents();
    EXPECT_EQ(window.size(), QSize(600, 400));
    EXPECT_EQ(stack.Find<QWidget>("picLog").width(), 190);
    EXPECT_EQ(stack.Find<QLineEdit>("txtLogPeriod").text(), QStringLiteral("30"));
    stack.CloseWindow();

    QFile file(stack.settings.FileName());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("a stray line\n");
    file.close();
    QString fault;
    try {
        stack.settings.LogWidth();
    } catch (const Error& failure) {
        fault = failure.Description();
    }
    stack.prompt.ExpectWarning(fault); // though it hinders every reading
    stack.Open();
    QCoreApplication::processEvents();
    EXPECT_EQ(stack.Panel("main"), QString());
}

} // namespace
