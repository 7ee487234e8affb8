#include "core/logon/frmSettings.h"

#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/settings/SerialDefaults.h"
#include "core/settings/SerialPortList.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSourceImpl.h"
#include "core/texts/TextIds.h"
#include "support/DialogDriver.h"
#include "support/FakeBeeper.h"
#include "support/QtPrinters.h"
#include "support/ScriptedPrompt.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>

using driver::Child;
using driver::Click;
using driver::Type;

namespace {

struct FakeSerial : ISerialDefaults {
    QString DefaultPort() const override { return port; }
    void SetDefaultPort(const QString& value) override { port = value; }
    int DefaultBaud() const override { return baud; }
    void SetDefaultBaud(int value) override { baud = value; }

    QString port = "COM2";
    int baud = 9600;
};

struct FakePorts : ISerialPortList {
    std::vector<SerialPortChoice> Ports() const override { return ports; }

    std::vector<SerialPortChoice> ports;
};

// Only its paths are used.
struct FakeSession : IDbLogon {
    QString WorkgroupFile() const override { return Given(workgroup); }
    void SetWorkgroupFile(const QString& path) override { workgroup = path; }
    QString DatabaseFile() const override { return Given(database); }
    void SetDatabaseFile(const QString& path) override { database = path; }
    void Logon(bool, bool) override {}
    void Logoff() override {}
    QString SelectWorkgroupFile() override { return Given(picked); }
    QString SelectDatabaseFile() override { return Given(picked); }

    static QString Given(const QString& path)
    {
        if (path.isEmpty())
            throw Error(ErrorCode::NoFile, "no file");
        return path;
    }

    QString workgroup = "/old.kynw", database = "/old.kyndb", picked;
};

class frmSettingsTest : public testing::Test {
protected:
    void SetUp() override { form.setObjectName("frmSettings"); }

    QTemporaryDir folder;
    CStringSourceImpl strings{QStringList{}};
    FakeSession session;
    FakeSerial serial;
    Settings settings{folder.filePath("settings.ini"), strings};
    ScriptedPrompt prompt;
    FakeBeeper beeper;
    FakePorts ports;
    frmSettings form{{session, serial, settings, prompt, beeper, strings, &ports}};
    QLineEdit& databaseField = Child<QLineEdit>(form, "txtDbFile");
    QComboBox& port = Child<QComboBox>(form, "cmbPort");
    QComboBox& rate = Child<QComboBox>(form, "cmbBaudRate");
};

TEST_F(frmSettingsTest, WithADatabaseOnAServerTheWorkgroupFileIsNotUsed)
{
    session.database = "postgresql://server/fleet";
    form.show();
    auto& workgroup = Child<QLineEdit>(form, "txtSysFile");
    auto& reason = Child<QLabel>(form, "lblServerAccounts");
    EXPECT_FALSE(workgroup.isEnabled());
    EXPECT_TRUE(reason.isVisible());
    Type(form, "txtDbFile", "/site.kyndb");
    EXPECT_TRUE(workgroup.isEnabled());
    EXPECT_FALSE(reason.isVisible());
}

TEST_F(frmSettingsTest, ShowsWhatIsStoredAndStoresWhatIsEntered)
{
    settings.SetPrintfEscapes(true);
    form.show();
    EXPECT_EQ(form.windowTitle(), "Settings");
    EXPECT_EQ(Child<QLabel>(form, "Label1").text(), "Serial &Port")
        << "without the blank that its text begins with";
    EXPECT_EQ(databaseField.text(), "/old.kyndb");
    EXPECT_EQ(Child<QLineEdit>(form, "txtSysFile").text(), "/old.kynw");
    EXPECT_EQ(port.currentText(), "COM2");
    EXPECT_EQ(rate.currentText(), "9600");
    EXPECT_TRUE(Child<QCheckBox>(form, "chkNotifyWithBeep").isChecked());
    EXPECT_TRUE(Child<QCheckBox>(form, "chkPrintfEscapes").isChecked());

    Type(form, "txtDbFile", " /new, x.kyndb");
    Type(form, "txtSysFile", "");
    Type(form, "cmbPort", " COM7 ");
    QTest::keyClick(&rate, Qt::Key_Up);
    Click(form, "chkNotifyWithBeep");
    Click(form, "cmdSave");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(session.database, " /new, x.kyndb");
    EXPECT_EQ(session.workgroup, "");
    EXPECT_EQ(serial.port, "COM7");
    EXPECT_EQ(serial.baud, 1200);
    EXPECT_FALSE(settings.BeepNotify());
    EXPECT_TRUE(settings.PrintfEscapes());

    session.workgroup = "/w";
    form.show();
    EXPECT_EQ(port.currentText(), "COM7");
}

TEST_F(frmSettingsTest, PortsThatExistAreOfferedWithTheirDevice)
{
    form.show();
    EXPECT_EQ(port.count(), 4);
    form.hide();
    ports.ports = {{"/dev/ttyS0", ""}, {"/dev/ttyUSB0", "FTDI USB Serial"}}; // plugged in meanwhile
    form.show();
    EXPECT_EQ(port.currentText(), "COM2");
    EXPECT_EQ(port.itemText(4), "/dev/ttyS0");
    EXPECT_EQ(port.itemText(5), "/dev/ttyUSB0 (FTDI USB Serial)");
    port.setFocus();
    QTest::keyClick(&port, Qt::Key_End);
    for (int i = 0; i < 6; ++i)
        QTest::keyClick(&port, Qt::Key_Down);
    EXPECT_EQ(port.currentText(), "/dev/ttyUSB0");
    Click(form, "cmdSave");
    EXPECT_EQ(serial.port, "/dev/ttyUSB0");
}

TEST_F(frmSettingsTest, ABlankPortIsRefused)
{
    form.show();
    Type(form, "cmbPort", "   ");
    prompt.ExpectInfo("Please select the serial port.");
    Click(form, "cmdSave");
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(beeper.beeps, 1);
    EXPECT_EQ(form.focusWidget(), &port);
    EXPECT_EQ(serial.port, "COM2");
}

TEST_F(frmSettingsTest, ARateThatIsNotInTheListStays)
{
    serial.baud = 4800;
    form.show();
    EXPECT_EQ(rate.currentIndex(), -1);
    Click(form, "cmdSave");
    EXPECT_EQ(serial.baud, 4800);
}

TEST_F(frmSettingsTest, ClosingAndCancellingStoreNothing)
{
    const std::function<void()> ways[] = {[&] { Click(form, "cmdCancel"); }, [&] { form.close(); },
                                          [&] { QTest::keyClick(&form, Qt::Key_Escape); }};
    for (const auto& leave : ways) {
        form.show();
        Type(form, "cmbPort", "COM9");
        Type(form, "txtDbFile", "x");
        leave();
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(serial.port, "COM2");
        EXPECT_EQ(session.database, "/old.kyndb");
    }
    form.show();
    EXPECT_EQ(port.currentText(), "COM2");
}

TEST_F(frmSettingsTest, PickersFillTheirFieldUnlessTheyFail)
{
    form.show();
    Click(form, "cmdSelDbFile");
    EXPECT_EQ(databaseField.text(), "/old.kyndb");
    session.picked = "/picked";
    Click(form, "cmdSelDbFile");
    EXPECT_EQ(databaseField.text(), "/picked");
    Click(form, "cmdSelSysFile");
    EXPECT_EQ(Child<QLineEdit>(form, "txtSysFile").text(), "/picked");
}

TEST_F(frmSettingsTest, WithoutAFileItSaysSoAndStaysAway)
{
    session.database.clear();
    prompt.ExpectError("Please select a file. The program won't proceed until you do it.");
    EXPECT_EQ(form.exec(), QDialog::Rejected);
    EXPECT_FALSE(form.isVisible());
}

TEST_F(frmSettingsTest, OtherFailuresAreShownAndTheDialogStays)
{
    settings.Write("prefs", "beepnotify", "maybe");
    prompt.ExpectError("Settings, section [prefs], beepnotify: \"maybe\" is neither True nor False.");
    const driver::WhenShown shown("frmSettings", [this](QWidget& dialog) {
        EXPECT_EQ(port.currentText(), "COM2");
        QFile::remove(settings.FileName());
        ASSERT_TRUE(QDir().mkpath(settings.FileName())); // nothing can be stored now
        prompt.ExpectError(
            QString("The settings file %1 cannot be read: Is a directory").arg(settings.FileName()));
        Click(dialog, "cmdSave");
        EXPECT_TRUE(dialog.isVisible());
        dialog.close();
    });
    EXPECT_EQ(form.exec(), QDialog::Rejected);
}

} // namespace
