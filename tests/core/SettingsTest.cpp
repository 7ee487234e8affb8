#include "core/settings/Settings.h"

#include "core/base/ProgramLog.h"
#include "core/eventlog/EventSpool.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSourceImpl.h"
#include "dao/base/FileAccess.h"
#include "support/Files.h"
#include "support/OtherUser.h"
#include "support/QtPrinters.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class SettingsTest : public testing::Test {
protected:
    QString FailureOf(const std::function<void()>& act)
    {
        try {
            act();
        } catch (const Error& error) {
            return error.Description();
        }
        return {};
    }

    QTemporaryDir folder;
    QString file = folder.filePath("made/on demand/settings.ini");
    CStringSourceImpl strings{QStringList{}};
};

class HandWrittenSettings : public SettingsTest {
protected:
    void SetUp() override { QDir().mkpath(folder.filePath("made/on demand")); }
};

TEST_F(SettingsTest, AFreshUserReadsDefaultsAndLeavesNoFile)
{
    const Settings settings(file, strings);
    EXPECT_EQ(settings.LogWidth(), 190);
    EXPECT_EQ(settings.LogView(), "text");
    EXPECT_EQ(settings.LogTimeUnit(), TimeUnit::Minutes);
    EXPECT_EQ(settings.LogTimePeriod(), 30);
    EXPECT_EQ(settings.MaxLogSize(), 500);
    EXPECT_EQ(settings.MaxAddressListSize(), 500);
    EXPECT_TRUE(settings.BeepNotify());
    EXPECT_FALSE(settings.PrintfEscapes());
    EXPECT_EQ(settings.GetLogonCount(), 0);
    EXPECT_EQ(settings.LogFont(), 0);
    EXPECT_EQ(settings.ScadaLastUnit(), "");
    EXPECT_EQ(settings.DefaultGroupKey(), "");
    EXPECT_EQ(settings.SerialPort("COM2"), "COM2");
    EXPECT_EQ(settings.BaudRate(), 9600);
    EXPECT_EQ(settings.WindowPlacement().width, 600);
    EXPECT_EQ(settings.WindowPlacement().height, 400);
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(SettingsTest, WhatIsWrittenIsReadByTheNextProgram)
{
    {
        Settings settings(file, strings);
        settings.SetLogWidth(190.125);
        settings.SetBeepNotify(false);
        settings.SetDefaultGroupKey("DGS1A_3");
        settings.IncrementLogonCount();
        settings.IncrementLogonCount();
        settings.SetWindowPlacement({-5, 7, 800, 500, true, 2});
    }
    const Settings settings(file, strings);
    EXPECT_EQ(settings.LogWidth(), 190.125);
    EXPECT_FALSE(settings.BeepNotify());
    EXPECT_EQ(settings.DefaultGroupKey(), "DGS1A_3");
    EXPECT_EQ(settings.GetLogonCount(), 2);
    const Settings::Placement placement = settings.WindowPlacement();
    EXPECT_EQ(placement.x, -5);
    EXPECT_EQ(placement.height, 500);
    EXPECT_TRUE(placement.fullScreen);
    EXPECT_EQ(placement.windowState, 2);
    EXPECT_TRUE(ReadFile(file).contains("\nbeepnotify=False\n"));
    EXPECT_TRUE(ReadFile(file).contains("\n[dynamic regrouping]\ndefgroupkey=DGS1A_3\n"));
}

// What the program keeps for its user nobody else reads, in folders that nobody else enters.
TEST_F(SettingsTest, FilesAndFoldersAreForTheUserAlone)
{
    const QTemporaryDir home;
    const auto mode = [&](const char* path) {
        return static_cast<int>(QFile::permissions(home.filePath(path))) & 0x77;
    };
    Settings written(home.filePath("config/VeltorKyn/VeltorKyn.ini"), strings);
    written.Write("DB", "key", "value");
    const QString log = ProgramLog::FileName();
    ProgramLog::Open(home.filePath("data/VeltorKyn"));
    ProgramLog::Write("x");
    for (const char* made : {"config", "config/VeltorKyn", "data", "data/VeltorKyn"})
        EXPECT_EQ(mode(made), 0) << made;
    for (const char* made : {"config/VeltorKyn/VeltorKyn.ini", "data/VeltorKyn/veltorkyn.log"}) {
        EXPECT_TRUE(QFile::exists(home.filePath(made))) << made;
        EXPECT_EQ(mode(made), 0) << made;
    }
    EventSpool(home.filePath("spool"), "id");
    EXPECT_EQ(mode("spool"), 0);
    if (!log.isEmpty())
        ProgramLog::Open(QFileInfo(log).path());
    // What is there keeps its rights.
    QFile::setPermissions(home.filePath("config/VeltorKyn/VeltorKyn.ini"), dao::OwnerOnly | QFile::ReadGroup);
    written.Write("DB", "key", "other");
    EXPECT_EQ(mode("config/VeltorKyn/VeltorKyn.ini"), static_cast<int>(QFile::ReadGroup));
}

TEST_F(SettingsTest, AnyTextSurvives)
{
    Settings settings(file, strings);
    for (const QString& text : {QString("  both ends "), QString("two\r\nlines\n"), QString("\t"),
                                QString("a, b; c # d"), QString(R"(C:\new\table)"), QString("\"quoted\""),
                                QString("=[x]="), QString("@percent(%20)"), QString("100 %41"), QString(""),
                                QString::fromUtf8("Gr\xC3\xBC\xC3\x9F"
                                                  "e \xF0\x9F\x93\xBB"),
                                QString(QChar(0x00A0)) + "x"}) {
        settings.SetScadaLastUnit(text);
        EXPECT_EQ(Settings(file, strings).ScadaLastUnit(), text);
    }
}

TEST_F(HandWrittenSettings, ValuesAreReadAsTheyStand)
{
    WriteFile(
        file,
        "; written by hand\r\n[DB]\r\n  DatabaseFile =  C:\\new, old; \"x\" # \xC3\xA4 100 %41  \r\n"
        "[ Scada ]\nlast=first\nlast=second\n[prefs]\nbeepnotify=FALSE\nprintf_escapes=1\nlog_width=1e2\n"
        "maxlogsize= 7.5 \n");
    const Settings settings(file, strings);
    EXPECT_EQ(settings.Read("db", "databasefile", {}),
              QString::fromUtf8("C:\\new, old; \"x\" # \xC3\xA4 100 %41"));
    EXPECT_EQ(settings.ScadaLastUnit(), "second");
    EXPECT_FALSE(settings.BeepNotify());
    EXPECT_TRUE(settings.PrintfEscapes());
    EXPECT_EQ(settings.LogWidth(), 100);
    EXPECT_EQ(settings.MaxLogSize(), 8);
}

TEST_F(HandWrittenSettings, AChangeKeepsEveryOtherLine)
{
    WriteFile(file, "; mine\n[prefs]\nodd thing=1\n# note\nlog_view = text\n\n[other]\nx=1\n");
    Settings settings(file, strings);
    settings.SetLogView("hex");
    settings.SetLogFont(3);
    settings.SetSerialPort("COM7");
    EXPECT_EQ(ReadFile(file),
              "; mine\n[prefs]\nodd thing=1\n# note\nlog_view =hex\nlogfont=3\n\n[other]\nx=1\n\n"
              "[serial_comm]\nport=COM7\n");
}

TEST_F(HandWrittenSettings, AChangeByOthersIsSeenAndNotOverwritten)
{
    Settings settings(file, strings);
    settings.SetLogView("hex");
    WriteFile(file, "[prefs]\nlog_view=text\nlogfont=4\n");
    EXPECT_EQ(settings.LogView(), "text");
    settings.SetBeepNotify(false);
    EXPECT_EQ(settings.LogFont(), 4);
    ASSERT_TRUE(QFile::remove(file));
    EXPECT_EQ(settings.LogFont(), 0);
}

TEST_F(HandWrittenSettings, NonsenseIsNamed)
{
    const struct {
        const char* key;
        const char* value;
        std::function<void(const Settings&)> read;
    } table[] = {
        {"log_width", "abc", [](const Settings& s) { s.LogWidth(); }},
        {"log_width", "1,5", [](const Settings& s) { s.LogWidth(); }},
        {"log_width", "nan", [](const Settings& s) { s.LogWidth(); }},
        {"log_width", "", [](const Settings& s) { s.LogWidth(); }},
        {"maxlogsize", "ten", [](const Settings& s) { s.MaxLogSize(); }},
        {"maxlogsize", "0", [](const Settings& s) { s.MaxLogSize(); }},
        {"maxlogsize", "3000000000", [](const Settings& s) { s.MaxLogSize(); }},
        {"log_time_unit", "3", [](const Settings& s) { s.LogTimeUnit(); }},
        {"logfont", "-1", [](const Settings& s) { s.LogFont(); }},
        {"beepnotify", "yes", [](const Settings& s) { s.BeepNotify(); }},
        {"logoncount", "0x1", [](const Settings& s) { s.GetLogonCount(); }},
    };
    for (const auto& row : table) {
        WriteFile(file, QByteArray("[prefs]\n") + row.key + '=' + row.value + '\n');
        const Settings settings(file, strings);
        const QString failure = FailureOf([&] { row.read(settings); });
        EXPECT_TRUE(failure.contains("[prefs]") && failure.contains(row.key) &&
                    failure.contains('"' + QString(row.value) + '"'))
            << row.key << '=' << row.value << ": " << failure.toStdString();
    }
    for (const char* period : {"0", "-5", "abc", "", "0.4", "3000000000"}) {
        WriteFile(file, QByteArray("[prefs]\nlog_time_period=") + period + '\n');
        EXPECT_EQ(Settings(file, strings).LogTimePeriod(), 30) << period;
    }
}

TEST_F(HandWrittenSettings, FilesThatAreNone)
{
    const Settings settings(file, strings);
    for (const QByteArray& contents :
         {QByteArray("[prefs]\nlog_view\n"), QByteArray("[prefs] ; x\n"), QByteArray("=1\n"),
          QByteArray("a=\xFF\n"), QByteArray("a=\0b\n", 5), QByteArray(2 * 1024 * 1024, 'x')}) {
        WriteFile(file, contents);
        EXPECT_TRUE(FailureOf([&] { settings.LogView(); }).contains(file)) << contents.left(20).toStdString();
    }
    EXPECT_TRUE(FailureOf([&] { Settings(folder.path(), strings).LogView(); }).contains(folder.path()));
    EXPECT_NE(FailureOf([&] { Settings(folder.path(), strings).SetLogView("hex"); }), "");
}

TEST_F(HandWrittenSettings, WithoutRightsTheReasonIsSaidAndTheFileStays)
{
    WriteFile(file, "[prefs]\nlog_view=text\n");
    QFile::setPermissions(folder.path(), QFile::Permissions(0x5555));
    QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadUser | QFile::ReadGroup | QFile::ReadOther);
    EXPECT_TRUE(AsNobody([&] {
        Settings settings(file, strings);
        const QString failure = FailureOf([&] { settings.SetLogView("hex"); });
        return failure.contains(file) && settings.LogView() == "text";
    }));
    EXPECT_EQ(ReadFile(file), "[prefs]\nlog_view=text\n");

    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_TRUE(
        AsNobody([&] { return FailureOf([&] { Settings(file, strings).LogView(); }).contains(file); }));
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace
