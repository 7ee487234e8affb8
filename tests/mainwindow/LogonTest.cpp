// Logging on and off, step by step.

#include "MainWindowStack.h"
#include "core/session/OpenSessions.h"
#include "core/session/Registry.h"
#include "dao/records/Database.h"
#include "mainwindow/bars/StatusBar.h"
#include "mainwindow/base/TextIds.h"
#include "map27/codec/Messages.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QTimer>
#include <QToolButton>

namespace {

bool SessionPressed(MainWindowStack& stack)
{
    return stack.Find<QToolButton>("tbMain_session").isChecked();
}

struct FailureCase {
    const char* name;
    std::function<void(MainWindowStack&)> prepare;
    const char* message; // in the status bar when no box is expected
};

void Raise(quint32 code, const char* description)
{
    throw Error(code, QLatin1String(description));
}

const FailureCase Failures[] = {
    {"Cancelled",
     [](MainWindowStack& s) {
         s.session.onLogon = [] { Raise(ErrorCode::LogonCancelled, "Cancelled by the operator."); };
     },
     "Cancelled by the operator."},
    {"LogonFailed",
     [](MainWindowStack& s) {
         s.session.onLogon = [] { Raise(ErrorCode::General, "No such file."); };
         s.prompt.ExpectError(QStringLiteral("No such file."));
     },
     ""},
    {"RightsUnreadable",
     [](MainWindowStack& s) {
         s.session.onIsMemberOf = [] { Raise(ErrorCode::General, "Disk gone."); };
         s.prompt.ExpectError(QStringLiteral("Disk gone."));
     },
     ""},
    {"RadioAbsent",
     [](MainWindowStack& s) {
         s.control->failures[QStringLiteral("OpenLink")] = QStringLiteral("Port COM2 does not exist.");
         s.prompt.ExpectError(QStringLiteral("Port COM2 does not exist."));
     },
     ""},
};

TEST(Logon, AFailureLeavesNobodyLoggedOn)
{
    for (const FailureCase& c : Failures) {
        SCOPED_TRACE(c.name);
        OpenStack stack;
        c.prepare(stack);
        stack.Click("tbMain_session");
        stack.prompt.Finish();
        EXPECT_FALSE(stack.Window().LoggedOn());
        EXPECT_FALSE(stack.session.IsOpen());
        EXPECT_FALSE(SessionPressed(stack));
        EXPECT_FALSE(stack.Action("miPassword").isEnabled());
        EXPECT_EQ(stack.Panel("main"), QLatin1String(c.message));
        EXPECT_EQ(stack.settings.GetLogonCount(), 0);
        // The next attempt is not hindered, nor does it inherit anything.
        stack.session.onLogon = nullptr;
        stack.session.onIsMemberOf = nullptr;
        stack.control->failures.clear();
        stack.LogOn();
    }
}

TEST(Logon, WithoutNumberingAnAdministratorIsLoggedOnToConfigureIt)
{
    OpenStack stack;
    stack.session.Logon(true, true);
    const auto fleets = stack.session.Database().OpenTable(QStringLiteral("fleet"));
    fleets->MoveFirst();
    fleets->Delete();
    stack.session.Logoff();
    stack.prompt.ExpectInfo(stack.Text(204));
    stack.Trigger("miLogOnLogOff");
    EXPECT_TRUE(stack.Window().LoggedOn());
    EXPECT_TRUE(stack.Action("miNumInfo").isEnabled());
    EXPECT_EQ(stack.settings.GetLogonCount(), 1);
    EXPECT_EQ(stack.Action("miNumbering").text(), stack.Text(4034) + QStringLiteral("..."));
}

TEST(Logon, FillsTheWindowAndLogoffUndoesIt)
{
    LoggedOnStack stack;
    Q_EMIT stack.control->OperatingConditionReceived(1, 0, 0, 47, 0);
    EXPECT_EQ(stack.Panel("main"), stack.Text(2039)) << "the console's own questions have been answered";
    stack.clock.Step(std::chrono::seconds(2));
    dynamic_cast<StatusBar&>(stack.Find<QWidget>("sbrStatus")).ShowNow();
    EXPECT_EQ(stack.Panel("main"), stack.Text(2206));
    EXPECT_EQ(stack.settings.GetLogonCount(), 1);
    EXPECT_TRUE(stack.ProfileIsLoggedOn());
    EXPECT_TRUE(SessionPressed(stack));
    EXPECT_EQ(stack.Action("miLogOnLogOff").text(), stack.Text(2053));
    EXPECT_EQ(stack.Find<QToolButton>("tbMain_session").toolTip(), stack.Text(2053));
    EXPECT_EQ(stack.Action("miNumbering").text(), stack.Text(4034) + QStringLiteral("..."));
    EXPECT_EQ(stack.Panel("callsign"), QStringLiteral("Dispatch  "));
    EXPECT_EQ(stack.Panel("ident"), QStringLiteral("200200121"));
    const auto& stati = stack.Find<QComboBox>("cmbStatusMessage");
    ASSERT_EQ(stati.count(), 2);
    EXPECT_EQ(stati.itemText(0), QStringLiteral("05 - Proceed"));
    EXPECT_EQ(stati.itemData(1).toInt(), 7);
    EXPECT_EQ(stati.currentText(), QString()) << "a status is chosen that nobody chose";

    stack.prompt.ExpectConfirmation(stack.Text(2027), false);
    stack.Click("tbMain_session");
    EXPECT_TRUE(stack.Window().LoggedOn());
    EXPECT_TRUE(SessionPressed(stack));

    stack.prompt.ExpectConfirmation(stack.Text(2027), true);
    stack.Click("tbMain_session");
    EXPECT_FALSE(stack.Window().LoggedOn());
    EXPECT_FALSE(stack.session.IsOpen());
    EXPECT_FALSE(SessionPressed(stack));
    EXPECT_EQ(stack.Action("miLogOnLogOff").text(), stack.Text(2052));
    EXPECT_EQ(stack.Panel("main"), stack.Text(2051));
    EXPECT_EQ(stack.Panel("opcon") + stack.Panel("field"), QString());
    EXPECT_EQ(stack.Panel("callsign") + stack.Panel("ident"), QStringLiteral("------"));
    EXPECT_TRUE(stack.control->operations.contains(QStringLiteral("CloseLink")));
    stack.session.Logon(true, true);
    EXPECT_FALSE(stack.ProfileIsLoggedOn());
}

TEST(Logon, ASiteSettingCoversLogAndListsUntilTheNextOne)
{
    LoggedOnStack stack;
    const auto covered = [&] {
        QStringList names;
        for (const char* name : {"lvLog", "tvGroups", "lvIndividuals"})
            if (stack.Find<QWidget>(name).isHidden())
                names.append(QLatin1String(name));
        return names.size();
    };
    stack.LogOff();
    EXPECT_EQ(covered(), 0);
    stack.LogOn();
    stack.Trigger("miCoverLists");
    stack.LogOff();
    EXPECT_EQ(covered(), 3);
    EXPECT_TRUE(stack.Find<QLabel>("paneCover").isVisible());
    stack.LogOn();
    EXPECT_EQ(covered(), 0);
    Q_EMIT stack.Find<QMenu>("mbAdmin").aboutToShow();
    EXPECT_TRUE(stack.Action("miCoverLists").isChecked());

    // A database that is gone at the logoff uncovers nothing.
    stack.session.onUse = [] { throw Error(ErrorCode::General, QStringLiteral("gone")); };
    stack.prompt.ExpectConfirmation(stack.Text(2027), true);
    stack.prompt.ExpectQuestion(QStringLiteral("Can't read or update user profile. Retry?"), false);
    stack.Trigger("miLogOnLogOff");
    stack.session.onUse = nullptr;
    EXPECT_EQ(covered(), 3);
}

TEST(Logon, RunsByItselfOnceSomebodyHasEverLoggedOn)
{
    OpenStack stack;
    QCoreApplication::processEvents();
    EXPECT_FALSE(stack.Window().LoggedOn());
    stack.CloseWindow();
    stack.settings.IncrementLogonCount();
    stack.Open();
    EXPECT_TRUE(QTest::qWaitFor([&] { return stack.Window().LoggedOn(); }));
}

TEST(Logon, OwnRadioGoesOffDutyAtLogoff)
{
    LoggedOnStack stack;
    RegistrySet(stack.session, QStringLiteral("on_off_duty"), QStringLiteral("1"));
    stack.executive.UpdateDutyStatus(QStringLiteral("Dispatch"), true);
    stack.LogOff();
    stack.session.Logon(true, true);
    const auto directory = stack.EntryOf(QStringLiteral("Dispatch"));
    EXPECT_FALSE(directory->Field(QStringLiteral("on_duty")).toBool());
}

bool IsOnDuty(MainWindowStack& stack, const char* callsign)
{
    const auto directory = stack.EntryOf(QLatin1String(callsign));
    return directory->Field(QStringLiteral("on_duty")).toBool();
}

TEST(Logon, AProgramToldToEndHangsUpAndAsksNothing)
{
    for (const bool databaseGone : {false, true}) {
        SCOPED_TRACE(databaseGone);
        LoggedOnStack stack;
        const QString database = stack.session.Database().Id();
        RegistrySet(stack.session, QStringLiteral("on_off_duty"), QStringLiteral("1"));
        stack.executive.UpdateDutyStatus(QStringLiteral("Dispatch"), true);
        Q_EMIT stack.control->IncomingCall(0, 0, 0, 4);
        stack.control->TakeOperations();
        QStringList before; // what the radio was told before the database was touched
        stack.prompt.ExpectConfirmation(stack.Text(2027), false);
        stack.prompt.whileOpen = [&] {
            stack.session.onUse = [&] {
                if (before.isEmpty())
                    before = stack.control->operations;
                if (databaseGone)
                    Raise(ErrorCode::General, "Server gone.");
            };
            stack.Window().EndAtOnce();
            stack.session.onUse = nullptr;
        };
        stack.Trigger("miLogOnLogOff");
        stack.prompt.Finish();
        stack.prompt.whileOpen = nullptr;
        EXPECT_EQ(before, QStringList({QStringLiteral("CancelTransaction"), QStringLiteral("ClearCall"),
                                       QStringLiteral("CloseLink")}));
        EXPECT_FALSE(stack.Window().isVisible());
        EXPECT_EQ(OpenSessions(stack.settings).Of(database).size(), databaseGone ? 1 : 0);
        EXPECT_EQ(IsOnDuty(stack, "Dispatch"), databaseGone);
        EXPECT_EQ(stack.ProfileIsLoggedOn(), databaseGone);
        stack.CloseWindow();
        stack.Open();
        ASSERT_TRUE(QTest::qWaitFor([&] { return stack.Window().LoggedOn(); }));
        EXPECT_FALSE(IsOnDuty(stack, "Dispatch")) << "put right before the radio reports";
    }
}

// Whoever confirmed knew nothing of it.
TEST(Logon, ACallThatComesWhileTheDatabaseIsWaitedForIsNotCut)
{
    for (const bool exit : {false, true})
        for (const qint16 flags : {0, 8}) { // talking, ringing
            SCOPED_TRACE(testing::Message() << "exit " << exit << ", flags " << flags);
            LoggedOnStack stack;
            QStringList during;
            bool comes = true;
            stack.session.onUse = [&] {
                if (!std::exchange(comes, false))
                    return;
                stack.control->TakeOperations();
                Q_EMIT stack.control->IncomingCall(static_cast<qint16>(map27::Type::EmergencyCall), flags, 0,
                                                   2);
                QTimer::singleShot(0, &stack.Window(), [&] {
                    during = stack.control->TakeOperations();
                    EXPECT_EQ(stack.Panel("main"), stack.Text(MainText::EndsAfterCall));
                    Q_EMIT stack.control->TransactionCleared(0, 0);
                });
            };
            stack.prompt.ExpectConfirmation(stack.Text(exit ? 2020 : 2027), true);
            stack.Trigger(exit ? "mbExit" : "miLogOnLogOff");
            stack.session.onUse = nullptr;
            EXPECT_FALSE(comes);
            EXPECT_FALSE(during.contains(QStringLiteral("ClearCall"))) << during.join(u' ').toStdString();
            EXPECT_TRUE(stack.control->operations.contains(QStringLiteral("CloseLink")));
            EXPECT_FALSE(stack.Window().LoggedOn());
        }
}

// Somebody else's session that was cut short at this console is ended by the next one who may do it.
TEST(Logon, EndsWhatAnotherAccountLeftOpenHere)
{
    OpenStack stack;
    stack.session.Logon(true, true);
    const QString database = stack.session.Database().Id();
    stack.AddRow("user_profile", {{"UserName", "lost"}, {"logged_on", true}});
    OpenSessions(stack.settings).Keep({database, QStringLiteral("Lost"), {}});
    OpenSessions(stack.settings).Keep({QStringLiteral("another database"), QStringLiteral("lost"), {}});
    stack.session.Logoff();
    stack.database.AddOperator(QStringLiteral("op"), QStringLiteral("x"));
    const auto lostIsLoggedOn = [&] {
        const auto profiles = stack.session.Database().OpenTable(QStringLiteral("user_profile"));
        profiles->SetIndex(QStringLiteral("i_user"));
        profiles->Seek(QStringLiteral("lost"));
        return profiles->Field(QStringLiteral("logged_on")).toBool();
    };
    stack.session.logonName = QStringLiteral("op");
    stack.session.logonPassword = QStringLiteral("x");
    stack.Trigger("miLogOnLogOff");
    EXPECT_TRUE(lostIsLoggedOn()) << "an operator has no right to it";
    stack.LogOff();
    stack.session.logonName = QString::fromLatin1(TestDatabase::userName);
    stack.session.logonPassword = QString::fromLatin1(TestDatabase::password);
    stack.Trigger("miLogOnLogOff");
    EXPECT_FALSE(lostIsLoggedOn());
    ASSERT_EQ(OpenSessions(stack.settings).Of(database).size(), 1) << "the present one";
    EXPECT_EQ(OpenSessions(stack.settings).Of(QStringLiteral("another database")).size(), 1);
    stack.LogOff();
    EXPECT_EQ(OpenSessions(stack.settings).Of(database).size(), 0);
}

} // namespace
