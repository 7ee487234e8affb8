#pragma once

#include "core/eventlog/EventLog.h"
#include "core/logon/frmPassword.h"
#include "core/logon/frmSettings.h"
#include "core/session/UserProfile.h"
#include "core/settings/Settings.h"
#include "core/texts/StringSourceImpl.h"
#include "mainwindow/frame/winMain.h"
#include "radio/base/StatusTexts.h"
#include "radio/facade/FleetDataSource.h"
#include "radio/facade/Map27Executive.h"
#include "support/FakeBeeper.h"
#include "support/FakeClock.h"
#include "support/FakeMap27Control.h"
#include "support/QtPrinters.h"
#include "support/RecordingWindows.h"
#include "support/ScriptedPrompt.h"
#include "support/TestDatabase.h"

#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

class QAction;
class QComboBox;
class QTreeView;

// A session whose steps can be made to fail.
class FaultySession : public TestSession {
public:
    using TestSession::TestSession;

    std::function<void()> onLogon; // before it; what it raises Logon raises
    std::function<void()> onIsMemberOf;

    void Logon(bool askUser, bool openDatabase) override
    {
        if (onLogon)
            onLogon();
        TestSession::Logon(askUser, openDatabase);
    }
    bool IsMemberOf(const QString& group) override
    {
        if (onIsMemberOf)
            onIsMemberOf();
        return TestSession::IsMemberOf(group);
    }
};

// The real main window on a real database, with a radio that answers only what the test says. Own radio: unit
// 21, callsign "Dispatch"; "Unit20" and "Unit22" are in the directory; statuses 5 and 7 have texts.
class MainWindowStack {
public:
    MainWindowStack();
    ~MainWindowStack();

    // Makes and shows the window, logged off.
    winMain& Open();
    // Closes the window without a question and forgets it; the next Open starts afresh on the same settings.
    void CloseWindow();
    // The radio reports its numbering after the logon.
    void LogOn();
    void LogOff();

    winMain& Window() { return *m_window; }
    template <typename Widget> Widget& Find(const char* name)
    {
        auto* widget = m_window->findChild<Widget*>(QLatin1String(name));
        if (widget == nullptr)
            throw std::runtime_error(std::string("no control ") + name);
        return *widget;
    }
    void Click(const char* name);
    QAction& Action(const char* name);
    void Trigger(const char* name);
    QString Text(int id) const { return strings.LoadString(id); }

    // Panel of the status bar.
    QString Panel(const char* key);
    QTreeView& Log();
    QStringList LogTexts();
    QStringList LogIcons();
    QComboBox& Address();

    void AddRow(const char* table, std::initializer_list<std::pair<const char*, QVariant>> fields);
    void AddEvent(const QDateTime& time, int type, const QString& desc, const QString& from,
                  const QString& to);
    bool ProfileIsLoggedOn();

private:
    void FillDatabase();

    QTemporaryDir m_folder;
    CStringSourceImpl m_source{QStringList{}};

public:
    const IStringSource& strings;
    TestDatabase database;
    FakeClock clock;
    Settings settings;
    FaultySession session;
    ScriptedPrompt prompt;
    FakeBeeper beeper;
    StatusTexts statusTexts;
    EventLog eventLog;
    UserProfile profile;
    FleetDataSource fleetData;
    FakeMap27Control* control; // owned by the facade
    Map27Executive executive;
    frmSettings settingsDialog;
    frmPassword passwordDialog;
    RecordingWindows windows;

private:
    std::unique_ptr<winMain> m_window;
};
