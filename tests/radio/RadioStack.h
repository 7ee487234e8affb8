#pragma once

#include "core/eventlog/EventLog.h"
#include "core/settings/Settings.h"
#include "core/texts/StringSourceImpl.h"
#include "radio/base/StatusTexts.h"
#include "radio/facade/FleetDataSource.h"
#include "radio/facade/Map27Executive.h"
#include "radio/line/SerialMap27Control.h"
#include "radio/window/frmMap27Agent.h"
#include "simulator/script/ScenarioReader.h"
#include "support/FakeBeeper.h"
#include "support/ScriptedPrompt.h"
#include "support/TestDatabase.h"
#include "support/VirtualRadio.h"

#include <QCoreApplication>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

// What the main window would show.
struct RecordingViews : ILogView, IStatusView, ITalkgroupView, IScadaView, IIndividualsView {
    void LogShowNewLine(const QDateTime&, EventType type, const QString& desc, const QString& from,
                        const QString& to) override
    {
        lines.append(QStringLiteral("%1|%2|%3|%4").arg(static_cast<int>(type)).arg(desc, from, to));
    }
    void SbrMessage(const QString& text) override { message = text; }
    void ShowAnswer(const QString& text) override { message = text; }
    void ShowOperatingConditions(bool inService, int field) override
    {
        condition = QStringLiteral("%1 %2").arg(inService ? "in" : "out").arg(field);
    }
    void ShowOwnAddress(const QString& callsign, const QString& ident) override { own = callsign + ident; }
    void ReloadDynamicGroups(const QString&) override { calls += QStringLiteral("reload "); }
    bool StoreRegroup() override
    {
        calls += QStringLiteral("store ");
        return true;
    }
    bool StoreUngroup() override { return false; }
    void ReflectRegroup() override { calls += QStringLiteral("reflect "); }
    void ReflectUngroup() override { calls += QStringLiteral("reflectungroup "); }
    void CancelRegroup() override { calls += QStringLiteral("cancel "); }
    void CancelUngroup() override {}
    void UpdateScadaSensors(const QString& bits, const ScadaSource&) override
    {
        scada += QStringLiteral("S") + bits;
    }
    void UpdateScadaControls(const QString& bits, const ScadaSource&) override
    {
        scada += QStringLiteral("C") + bits;
    }
    void ReflectScadaControl() override { scada += QStringLiteral("reflect "); }
    void CancelScadaControl() override { scada += QStringLiteral("cancel "); }
    void ReloadInds() override { ++reloads; }

    QStringList lines;
    QString message;
    QString condition;
    QString own;
    QString calls;
    QString scada;
    int reloads = 0;
};

// The whole radio side on a real database, with a simulated radio at the other end of the real wire, in
// virtual time.
class RadioStack {
public:
    RadioStack()
        : strings(m_source.CreateStringSource(QStringLiteral("CKYN"))),
          settings(m_folder.filePath(QStringLiteral("test.ini")), strings),
          session(database),
          statusTexts(strings),
          eventLog(session, strings),
          fleetData(session, strings),
          radio(clock, sim::LoadScenario(QStringLiteral(":/veltorkyn/scenarios/tour.json"))),
          control(new SerialMap27Control(strings, clock, radio.Ports())),
          executive(RadioServices{strings, prompt, settings, session, fleetData, statusTexts, eventLog, clock,
                                  beeper},
                    std::unique_ptr<Map27Control>(control))
    {
        FillDatabase();
        executive.SetViews({&views, &views, &views, &views, &views, nullptr});
    }

    void LogOn()
    {
        executive.Connect();
        ASSERT_TRUE(RunUntil([this] { return executive.MyAddress() == QLatin1String("200200121"); }));
        Run(1000);
    }

    void Run(int milliseconds)
    {
        for (int passed = 0; passed < milliseconds; passed += Tick)
            Step();
    }

    bool RunUntil(const std::function<bool()>& condition, int milliseconds = 60000)
    {
        for (int passed = 0; passed < milliseconds && !condition(); passed += Tick)
            Step();
        return condition();
    }

    // Until no transaction is in progress and its box, if any, was shown.
    bool RunToEnd()
    {
        const bool ended = RunUntil([this] { return executive.TransactionKind() == TransactionKind::None; });
        Run(500);
        return ended;
    }

    // Records of the table event: "type|desc|from|to".
    QStringList Records()
    {
        QStringList records;
        const auto events = session.Database().OpenSnapshot(QStringLiteral(
            "select event_type, \"desc\", from_address, to_address from event order by time_stamp"));
        for (; !events->Eof(); events->MoveNext()) {
            QStringList fields;
            for (const char* name : {"event_type", "desc", "from_address", "to_address"})
                fields.append(events->Field(QString::fromLatin1(name)).toString());
            records.append(fields.join(QLatin1Char('|')));
        }
        return records;
    }

    map27::Address AddressOf(int ident) const { return {0, static_cast<std::uint16_t>(ident)}; }
    bool AgentShown() { return executive.AgentWindow().isVisible(); }
    template <typename Widget> Widget& Agent(const char* name)
    {
        return *executive.AgentWindow().findChild<Widget*>(QString::fromLatin1(name));
    }
    QString Button() { return Agent<QPushButton>("cmdAnswerHungup").text(); }
    QString Progress() { return Agent<QPlainTextEdit>("txtLog").toPlainText(); }
    void Click(const char* name) { QTest::mouseClick(&Agent<QPushButton>(name), Qt::LeftButton); }
    QString Text(int id) const { return strings.LoadString(id); }

private:
    static constexpr int Tick = 10; // ms

    void Step()
    {
        clock.Step(std::chrono::milliseconds(Tick));
        radio.Step();
        control->OnTime();
        QCoreApplication::processEvents();
    }

    void Add(const char* table, std::initializer_list<std::pair<const char*, QVariant>> fields)
    {
        const auto records = session.Database().OpenTable(QString::fromLatin1(table));
        records->AddNew();
        for (const auto& [name, value] : fields)
            records->SetField(QString::fromLatin1(name), value);
        records->Update();
    }

    void FillDatabase()
    {
        Add("fleet", {{"fleet_name", "units"},
                      {"fleet_type", 1},
                      {"digits", 2},
                      {"prefix", 0},
                      {"base_ident", 2},
                      {"max_ident", 71}});
        Add("kyn_registry", {{"Key", "on_off_duty"}, {"Value", "1"}});
        const auto directory = session.Database().OpenDynaset(QStringLiteral("browse_individuals"));
        for (const auto& [callsign, ident] :
             {std::pair("Dispatch", "200200121"), std::pair("Unit20", "200200120"),
              std::pair("Unit22", "200200122"), std::pair("Unit23", "200200123"),
              std::pair("Unit25", "200200125"), std::pair("Unit27", "200200127")}) {
            directory->AddNew();
            directory->SetField(QStringLiteral("callsign"), QString::fromLatin1(callsign));
            directory->SetField(QStringLiteral("IDENT"), QString::fromLatin1(ident));
            directory->SetField(QStringLiteral("Type"), 1);
            directory->SetField(QStringLiteral("Name"), QString::fromLatin1(callsign));
            directory->Update();
        }
        statusTexts.Set(5, QStringLiteral("Arrived"), QStringLiteral("Proceed"));
    }

    QTemporaryDir m_folder;
    CStringSourceImpl m_source{QStringList{}};

public:
    const IStringSource& strings;
    TestDatabase database;
    FakeClock clock;
    Settings settings;
    TestSession session;
    ScriptedPrompt prompt;
    FakeBeeper beeper;
    StatusTexts statusTexts;
    EventLog eventLog;
    FleetDataSource fleetData;
    RecordingViews views;
    VirtualRadio radio;
    SerialMap27Control* control; // owned by the facade
    Map27Executive executive;
};
