#include "core/base/AppPaths.h"
#include "core/logon/DbSessionImpl.h"
#include "core/logon/FirstRunChoice.h"
#include "core/logon/frmLogon.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSourceImpl.h"
#include "core/texts/TextIds.h"
#include "dao/sqlite/Connection.h"
#include "support/DialogDriver.h"
#include "support/FakeClock.h"
#include "support/Files.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QTimer>

using namespace std::chrono_literals;
using driver::Child;
using driver::Click;
using driver::Type;
using driver::WhenShown;

namespace {

QString Message(QWidget& dialog)
{
    return Child<QLabel>(dialog, "lblMessage").text();
}

QString FieldText(QWidget& dialog, const char* name)
{
    return Child<QLineEdit>(dialog, name).text();
}

void EnterLogon(QWidget& dialog, const QString& user, const QString& password)
{
    Type(dialog, "txtUserName", user);
    Type(dialog, "txtPassword", password);
    QTest::keyClick(&Child<QWidget>(dialog, "txtPassword"), Qt::Key_Return);
}

class LogonTest : public testing::Test {
protected:
    LogonTest()
    {
        m_dataHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", folder.filePath("data").toUtf8());
        session.SetAppName("Console");
    }
    ~LogonTest() override
    {
        if (m_dataHome.isEmpty())
            qunsetenv("XDG_DATA_HOME");
        else
            qputenv("XDG_DATA_HOME", m_dataHome);
    }

    void UseDatabase(const dao::Location& location)
    {
        session.SetDatabaseFile(location.database);
        session.SetWorkgroupFile(location.workgroup);
    }

    Error FailedLogon()
    {
        try {
            session.Logon(true, true);
        } catch (const Error& error) {
            EXPECT_FALSE(session.IsOpen());
            return error;
        }
        ADD_FAILURE() << "logged on";
        return Error(0, {});
    }

    QTemporaryDir folder;
    CStringSourceImpl strings{QStringList{}};
    Settings settings{folder.filePath("settings.ini"), strings};
    FakeClock clock;
    DbSession session{settings, strings, clock, TestDatabase::Options()};
    TestDatabase database;

private:
    QByteArray m_dataHome;
};

TEST_F(LogonTest, LogsOnAndProposesTheNameNextTime)
{
    UseDatabase(database.location);
    {
        const WhenShown logon("frmLogon", [](QWidget& dialog) {
            EXPECT_EQ(dialog.windowTitle(), "Log On to Console");
            EXPECT_EQ(FieldText(dialog, "txtUserName"), "");
            EnterLogon(dialog, " Admin ", TestDatabase::password);
        });
        session.Logon(true, true);
    }
    EXPECT_EQ(session.Workspace().UserName(), "admin");
    EXPECT_TRUE(session.IsMemberOf("Admins"));
    EXPECT_FALSE(session.IsMemberOf("admins"));
    EXPECT_EQ(session.Database().FieldSize("address", "callsign"), 14);

    session.Logoff();
    EXPECT_THROW(session.Workspace(), Error);
    EXPECT_THROW(session.Database(), Error);
    EXPECT_THROW(session.IsMemberOf("Admins"), Error);

    const WhenShown again("frmLogon", [](QWidget& dialog) {
        EXPECT_EQ(FieldText(dialog, "txtUserName"), "admin");
        EXPECT_EQ(dialog.focusWidget(), &Child<QWidget>(dialog, "txtPassword"));
        Click(dialog, "cmdCancel");
    });
    const Error cancelled = FailedLogon();
    EXPECT_EQ(cancelled.Code(), 0x80040003);
    EXPECT_EQ(cancelled.Description(), strings.LoadString(CoreText::LogonCancelled));
}

TEST_F(LogonTest, AnOlderDatabaseIsMigratedWhileTheDialogSaysHowFarItIs)
{
    if (TestServer::IsWanted())
        GTEST_SKIP() << "files only: a server is migrated by its owner";
    const auto file = dao::sqlite::Connection::Open(
        database.location.database, dao::sqlite::Connection::Mode::ReadWrite, std::chrono::seconds(1));
    file->Execute("drop table regroup_act; delete from index_def where table_name = 'regroup_act'; "
                  "update file_info set value = value - 1 where name = 'schema_version'");
    file->Close();
    UseDatabase(database.location);
    QStringList said;
    const WhenShown logon("frmLogon", [&](QWidget& dialog) {
        QTimer::singleShot(0, &dialog, [&] { said.append(Message(dialog)); });
        EnterLogon(dialog, "admin", TestDatabase::password);
    });
    session.Logon(true, true);
    EXPECT_EQ(said, QStringList({database.location.database +
                                 " is being brought to the form of this version: 0 % are done."}));
    EXPECT_TRUE(session.IsOpen());
}

TEST_F(LogonTest, WrongPasswordsAreSaidInTheDialogAndTakeEverLonger)
{
    UseDatabase(database.location);
    const WhenShown logon("frmLogon", [this](QWidget& dialog) {
        auto& logonDialog = dynamic_cast<frmLogon&>(dialog);
        auto& ok = Child<QPushButton>(dialog, "cmdOK");
        EnterLogon(dialog, "admin", "wrong");
        const QString refusal = Message(dialog);
        EXPECT_FALSE(refusal.isEmpty());
        EXPECT_TRUE(ok.isEnabled());
        EXPECT_EQ(FieldText(dialog, "txtPassword"), "");
        EXPECT_EQ(FieldText(dialog, "txtUserName"), "admin");

        for (const int seconds : {1, 2, 4, 8, 16, 30, 30}) {
            EnterLogon(dialog, "nobody", "wrong");
            EXPECT_FALSE(ok.isEnabled());
            EXPECT_TRUE(Message(dialog).contains(QString(" %1 s").arg(seconds)))
                << Message(dialog).toStdString();
            EnterLogon(dialog, "admin", TestDatabase::password); // Enter is not a way round
            EXPECT_FALSE(session.IsOpen());
            clock.Step(std::chrono::seconds(seconds) - 1ms);
            logonDialog.Tick();
            EXPECT_FALSE(ok.isEnabled());
            clock.Step(1ms);
            logonDialog.Tick();
            EXPECT_TRUE(ok.isEnabled());
            EXPECT_EQ(Message(dialog), refusal);
        }
        EnterLogon(dialog, "admin", TestDatabase::password);
    });
    session.Logon(true, true);
    EXPECT_TRUE(session.IsOpen());
}

TEST_F(LogonTest, ClosingTheDialogDoesNotShortenThePauseButASuccessEndsTheCount)
{
    UseDatabase(database.location);
    {
        const WhenShown logon("frmLogon", [](QWidget& dialog) {
            EnterLogon(dialog, "admin", "wrong");
            EnterLogon(dialog, "admin", "wrong");
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        EXPECT_EQ(FailedLogon().Code(), ErrorCode::LogonCancelled);
    }
    {
        const WhenShown logon("frmLogon", [this](QWidget& dialog) {
            EXPECT_FALSE(Child<QPushButton>(dialog, "cmdOK").isEnabled());
            clock.Step(1s);
            dynamic_cast<frmLogon&>(dialog).Tick();
            EnterLogon(dialog, "admin", TestDatabase::password);
        });
        session.Logon(true, true);
    }
    const WhenShown logon("frmLogon", [](QWidget& dialog) {
        EnterLogon(dialog, "admin", "wrong");
        EXPECT_TRUE(Child<QPushButton>(dialog, "cmdOK").isEnabled());
        dialog.close();
    });
    EXPECT_EQ(FailedLogon().Code(), ErrorCode::LogonCancelled);
}

TEST_F(LogonTest, AnEmptyNameIsNoAttempt)
{
    UseDatabase(database.location);
    const WhenShown logon("frmLogon", [this](QWidget& dialog) {
        for (int i = 0; i < 3; ++i)
            EnterLogon(dialog, "  ", "x");
        EXPECT_EQ(Message(dialog), strings.LoadString(CoreText::UserNameMissing));
        EXPECT_TRUE(Child<QPushButton>(dialog, "cmdOK").isEnabled());
        dialog.close();
    });
    FailedLogon();
}

TEST_F(LogonTest, AFileThatIsNoneOrMissingFailsWithItsName)
{
    const QString notes = WriteFile(folder.filePath("notes.kyndb"), "these are notes, not a database\n");
    const QString missing = "/nonexistent/some.kynw";
    for (const auto& [location, name] :
         {std::pair(dao::Location{notes, database.location.workgroup}, notes),
          std::pair(dao::Location{database.location.database, missing}, missing)}) {
        UseDatabase(location);
        const WhenShown logon("frmLogon", [](QWidget& dialog) { EnterLogon(dialog, "admin", "secret"); });
        const Error error = FailedLogon();
        EXPECT_EQ(error.Code(), ErrorCode::General);
        EXPECT_TRUE(error.Description().contains(name)) << error.what();
    }
}

TEST_F(LogonTest, PathsHaveDefaultsAndStayEmptyWhenEmptied)
{
    EXPECT_EQ(session.DatabaseFile(), AppPaths::DataFolder() + "/VeltorKyn.kyndb");
    EXPECT_EQ(session.WorkgroupFile(), AppPaths::DataFolder() + "/VeltorKyn.kynw");
    session.SetDatabaseFile("/elsewhere/a.kyndb");
    EXPECT_EQ(session.WorkgroupFile(), "/elsewhere/a.kynw");
    session.SetDatabaseFile("");
    session.SetWorkgroupFile("");
    for (const auto read : {&DbSession::DatabaseFile, &DbSession::WorkgroupFile}) {
        try {
            (session.*read)();
            ADD_FAILURE();
        } catch (const Error& error) {
            EXPECT_EQ(error.Code(), 0x80040001);
        }
    }
    const WhenShown firstRun("frmFirstRun", [this](QWidget& dialog) {
        EXPECT_EQ(Child<QLabel>(dialog, "lblIntro").text(), strings.LoadString(CoreText::DatabaseNotChosen));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(FailedLogon().Code(), ErrorCode::LogonCancelled);
    EXPECT_THROW(session.DatabaseFile(), Error);
}

TEST_F(LogonTest, WithoutADatabaseOneIsCreatedAndItsAdministratorLoggedOn)
{
    const WhenShown firstRun("frmFirstRun", [this](QWidget& dialog) {
        EXPECT_TRUE(Child<QLabel>(dialog, "lblIntro").text().contains(session.DatabaseFile()));
        EXPECT_EQ(FieldText(dialog, "txtDbFile"), session.DatabaseFile());
        EXPECT_EQ(FieldText(dialog, "txtSysFile"), session.WorkgroupFile());
        const auto expectRefusal = [&](int id, const char* focus) {
            Click(dialog, "cmdOK");
            EXPECT_EQ(Message(dialog), strings.LoadString(id));
            EXPECT_EQ(dialog.focusWidget()->objectName(), focus);
        };
        expectRefusal(CoreText::AdministratorMissing, "txtUserName");
        Type(dialog, "txtUserName", "Chief");
        expectRefusal(CoreText::PasswordMissing, "txtPassword");
        Type(dialog, "txtPassword", "one");
        Type(dialog, "txtRepeat", "One");
        expectRefusal(CoreText::PasswordRepeatDiffers, "txtPassword");
        EXPECT_EQ(FieldText(dialog, "txtRepeat"), "");
        EXPECT_FALSE(QFileInfo::exists(session.DatabaseFile()));
        Type(dialog, "txtPassword", "one");
        Type(dialog, "txtRepeat", "one");
        Click(dialog, "cmdOK");
    });
    session.Logon(true, true);
    EXPECT_EQ(session.Workspace().UserName(), "Chief");
    EXPECT_TRUE(session.IsMemberOf("Admins"));
    EXPECT_TRUE(QFileInfo::exists(AppPaths::DataFolder() + "/VeltorKyn.kynw"));
}

TEST_F(LogonTest, ANewDatabaseGoesWhereItIsPutAndNothingIsOverwritten)
{
    const QString place = folder.filePath("site/north.kyndb");
    const WhenShown firstRun("frmFirstRun", [this, place](QWidget& dialog) {
        Type(dialog, "txtUserName", "chief");
        Type(dialog, "txtPassword", "one");
        Type(dialog, "txtRepeat", "one");

        Type(dialog, "txtDbFile", database.location.database);
        Click(dialog, "cmdOK");
        EXPECT_TRUE(Message(dialog).contains(database.location.database)) << Message(dialog).toStdString();

        auto& shared = Child<QCheckBox>(dialog, "chkShared");
        EXPECT_FALSE(Child<QComboBox>(dialog, "cmbGroup").isEnabled());
        shared.setChecked(true);
        Type(dialog, "txtDbFile", folder.filePath("shared.kyndb")); // below a private folder
        Click(dialog, "cmdOK");
        EXPECT_TRUE(Message(dialog).contains(folder.path())) << Message(dialog).toStdString();
        Type(dialog, "txtDbFile", "postgresql:///x");
        EXPECT_FALSE(shared.isEnabled());
        shared.setChecked(false);

        Type(dialog, "txtDbFile", "/proc/none/x.kyndb");
        Click(dialog, "cmdOK");
        EXPECT_TRUE(Message(dialog).contains("/proc/none")) << Message(dialog).toStdString();

        Type(dialog, "txtSysFile", "/tmp/x.kyndb");
        Type(dialog, "txtDbFile", "/tmp/x.kyndb");
        Click(dialog, "cmdOK");
        EXPECT_EQ(Message(dialog), strings.LoadString(CoreText::SameFile));

        const WhenShown picker("fileDialog", [this, place](QWidget& fileDialog) {
            ASSERT_TRUE(QDir().mkpath(folder.filePath("site")));
            dynamic_cast<QFileDialog&>(fileDialog).selectFile(folder.filePath("site/north"));
            QTest::keyClick(&Child<QLineEdit>(fileDialog, "fileNameEdit"), Qt::Key_Return);
        });
        Click(dialog, "cmdSelDbFile");
        EXPECT_EQ(FieldText(dialog, "txtDbFile"), place);
        EXPECT_EQ(FieldText(dialog, "txtSysFile"), "/tmp/x.kyndb") << "typed by hand, it stays";
        Type(dialog, "txtSysFile", folder.filePath("site/accounts.kynw"));
        Click(dialog, "cmdOK");
    });
    session.Logon(true, true);
    EXPECT_EQ(session.DatabaseFile(), place);
    EXPECT_EQ(session.WorkgroupFile(), folder.filePath("site/accounts.kynw"));
    EXPECT_NO_THROW(database.Open());
}

TEST_F(LogonTest, AnExistingDatabaseIsOpenedAndRememberedOnceSomebodyIsLoggedOn)
{
    const QString before = session.DatabaseFile();
    const auto choose = [this](QWidget& dialog) {
        Click(dialog, "optOpen");
        EXPECT_FALSE(Child<QLineEdit>(dialog, "txtUserName").isEnabled());
        Click(dialog, "cmdOK");
        EXPECT_EQ(Message(dialog), strings.LoadString(CoreText::DatabasePathMissing));
        Type(dialog, "txtDbFile", folder.filePath("none.kyndb"));
        Click(dialog, "cmdOK");
        EXPECT_TRUE(Message(dialog).contains("none.kyndb"));
        Type(dialog, "txtDbFile", database.location.database);
        EXPECT_EQ(FieldText(dialog, "txtSysFile"), database.location.workgroup);
        Click(dialog, "cmdOK");
    };
    {
        const WhenShown firstRun("frmFirstRun", choose);
        const WhenShown logon("frmLogon", [](QWidget& dialog) { dialog.close(); });
        EXPECT_EQ(FailedLogon().Code(), ErrorCode::LogonCancelled);
        EXPECT_EQ(session.DatabaseFile(), before);
    }
    const WhenShown firstRun("frmFirstRun", choose);
    const WhenShown logon("frmLogon", [](QWidget& dialog) { EnterLogon(dialog, "admin", "secret"); });
    session.Logon(true, true);
    EXPECT_EQ(session.DatabaseFile(), database.location.database);
    EXPECT_EQ(session.WorkgroupFile(), database.location.workgroup);
}

TEST_F(LogonTest, PickersGiveThePathOrAnError)
{
    UseDatabase(database.location);
    {
        const WhenShown picker("fileDialog", [this](QWidget& dialog) {
            EXPECT_EQ(dialog.windowTitle(), "Select the Workgroup Information File");
            dynamic_cast<QFileDialog&>(dialog).selectFile(database.location.workgroup);
            QTest::keyClick(&Child<QLineEdit>(dialog, "fileNameEdit"), Qt::Key_Return);
        });
        EXPECT_EQ(session.SelectWorkgroupFile(), database.location.workgroup);
    }
    const WhenShown picker("fileDialog", [](QWidget& dialog) { dialog.close(); });
    EXPECT_THROW(session.SelectDatabaseFile(), Error);
}

TEST_F(LogonTest, PersonalIdentifiersDiffer)
{
    QSet<QString> seen;
    for (int i = 0; i < 100; ++i) {
        const QString pid = session.MakePID("admin", "");
        EXPECT_EQ(pid.size(), 20);
        seen.insert(pid);
    }
    EXPECT_EQ(seen.size(), 100);
}

TEST(FirstRunChoiceTest, RelativePathsStartInTheDataFolder)
{
    EXPECT_EQ(FullPath(" a/../b.kyndb "), QDir::cleanPath(AppPaths::DataFolder() + "/b.kyndb"));
    EXPECT_EQ(FullPath("/x/b.kyndb"), "/x/b.kyndb");
    EXPECT_EQ(FullPath("postgresql://host/db"), "postgresql://host/db");
    EXPECT_EQ(FullPath(" "), "");
}

} // namespace
