#pragma once

#include "RadioEnd.h"
#include "radio/line/SerialMap27Control.h"
#include "radio/window/frmMap27Agent.h"
#include "support/ConsoleStack.h"

#include <QCoreApplication>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

// What the main window would show.
struct RecordingViews : ILogView, IStatusView, ITalkgroupView, IScadaView, IIndividualsView {
    void LogShowNewLine(const QDateTime&, EventType type, const QString& desc, const QString& from,
                        const QString& to, const QString&, const QString&) override
    {
        lines.append(QStringLiteral("%1|%2|%3|%4").arg(static_cast<int>(type)).arg(desc, from, to));
    }
    void SbrMessage(const QString& text) override { message = text; }
    void ShowAnswer(const QString& text) override { message = text; }
    void ShowOutcome(const QString& text) override { message = text; }
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

// The console on a real database, with a simulated radio at the other end of the real wire, in virtual time.
class RadioStack : public RadioEnd, public ConsoleStack {
public:
    RadioStack()
        : ConsoleStack(clock, [this](const IStringSource& texts) {
              return std::make_unique<SerialMap27Control>(
                  texts, clock, SerialMap27Control::Place::UsersThread, radio.Ports());
          })
    {
        AddRow("kyn_registry", {{"Key", "on_off_duty"}, {"Value", "1"}});
        AddIndividuals({20, 22, 23, 25, 27});
        statusTexts.Set(5, "Arrived", "Proceed");
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

private:
    static constexpr int Tick = 10; // ms

    void Step()
    {
        clock.Step(std::chrono::milliseconds(Tick));
        radio.Step();
        control->OnTime();
        QCoreApplication::processEvents();
    }

public:
    RecordingViews views;
    SerialMap27Control* control = dynamic_cast<SerialMap27Control*>(&executive.Map27Control());
};

// Connected; the radio has said who it is.
struct ConnectedStack : RadioStack {
    ConnectedStack() { LogOn(); }
};
