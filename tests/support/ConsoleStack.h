#pragma once

#include "app/Console.h"
#include "core/eventlog/EventLog.h"
#include "core/logon/frmPassword.h"
#include "core/logon/frmSettings.h"
#include "core/session/UserProfile.h"
#include "core/settings/Settings.h"
#include "core/texts/StringSourceImpl.h"
#include "radio/base/StatusTexts.h"
#include "radio/facade/FleetDataSource.h"
#include "radio/facade/Map27Executive.h"
#include "radio/line/Map27Control.h"
#include "support/FakeBeeper.h"
#include "support/FakeClock.h"
#include "support/QtPrinters.h"
#include "support/ScriptedPrompt.h"
#include "support/TestDatabase.h"

#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

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

// The console as the program has it, on a real database, with the clock, the boxes, the beeper and the radio
// of a test. The plan has units 200200120 to 200200189; the own radio, of which the directory tells as of the
// others that are added, is 200200121, "Dispatch".
class ConsoleStack {
public:
    using ControlMaker = std::function<std::unique_ptr<Map27Control>(const IStringSource&)>;

    ConsoleStack(FakeClock& time, const ControlMaker& makeControl,
                 const dao::OpenOptions& options = TestDatabase::Options())
        : session(database, options),
          console({strings, settings, time, prompt, beeper, session, session, nullptr, folder.path()},
                  makeControl(strings), m_stage)
    {
        AddRow("fleet", {{"fleet_name", "units"},
                         {"fleet_type", 1},
                         {"digits", 2},
                         {"prefix", 0},
                         {"base_ident", 2},
                         {"max_ident", 71}});
    }

    QString Text(int id) const { return strings.LoadString(id); }

    void AddRow(const char* table, std::initializer_list<std::pair<const char*, QVariant>> fields)
    {
        const auto rows = session.Database().OpenTable(table);
        rows->AddNew();
        for (const auto& [name, value] : fields)
            rows->SetField(name, value);
        rows->Update();
        session.Changes().TellOwn(table);
    }
    // "Dispatch" and units, 20 as "Unit20".
    void AddIndividuals(std::initializer_list<int> numbers)
    {
        const auto directory = session.Database().OpenDynaset("browse_individuals");
        const auto add = [&](const QString& callsign, int number) {
            directory->AddNew();
            directory->SetField("callsign", callsign);
            directory->SetField("IDENT", "2002001" + QString::number(number));
            directory->SetField("Type", 1);
            directory->SetField("Name", callsign);
            directory->Update();
        };
        add("Dispatch", 21);
        for (const int number : numbers)
            add("Unit" + QString::number(number), number);
        session.Changes().TellOwn("address");
    }
    // The directory's entry of a callsign.
    std::unique_ptr<dao::Recordset> EntryOf(const QString& callsign)
    {
        auto directory = session.Database().OpenTable("address");
        directory->SetIndex("i_callsign");
        directory->Seek(callsign);
        EXPECT_FALSE(directory->NoMatch()) << callsign.toStdString();
        return directory;
    }

    QTemporaryDir folder;

private:
    CStringSourceImpl m_source{QStringList{}};
    QString m_stage;

public:
    const IStringSource& strings = m_source.CreateStringSource("CKYN");
    TestDatabase database;
    Settings settings{folder.filePath("test.ini"), strings};
    FaultySession session;
    ScriptedPrompt prompt;
    FakeBeeper beeper;
    Console console;
    StatusTexts& statusTexts = *console.statusTexts;
    EventLog& eventLog = *console.eventLog;
    UserProfile& profile = *console.profile;
    FleetDataSource& fleetData = *console.fleetData;
    Map27Executive& executive = *console.executive;
};
