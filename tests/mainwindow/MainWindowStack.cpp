#include "MainWindowStack.h"

#include "mainwindow/log/LogModel.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QTreeView>

namespace {

dao::OpenOptions OptionsAt(const FakeClock& clock)
{
    dao::OpenOptions options = TestDatabase::Options();
    options.now = [&clock] { return clock.Now(); };
    return options;
}

} // namespace

MainWindowStack::MainWindowStack()
    : strings(m_source.CreateStringSource(QStringLiteral("CKYN"))),
      settings(m_folder.filePath(QStringLiteral("test.ini")), strings),
      session(database, OptionsAt(clock)),
      statusTexts(strings),
      eventLog(session, strings, m_folder.path()),
      profile(session, prompt, strings),
      fleetData(session, strings),
      control(new FakeMap27Control),
      executive(
          RadioServices{strings, prompt, settings, session, fleetData, statusTexts, eventLog, clock, beeper},
          std::unique_ptr<Map27Control>(control)),
      settingsDialog(SettingsServices{session, executive, settings, prompt, beeper, strings}),
      passwordDialog(session, prompt, strings)
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    FillDatabase();
    session.Logoff();
    control->radioIdent = 3;
    control->unitBase = 2;
    control->unitMax = 71;
}

MainWindowStack::~MainWindowStack()
{
    CloseWindow();
}

winMain& MainWindowStack::Open()
{
    m_window = std::make_unique<winMain>(Services{strings, prompt, session, fleetData, executive, settings,
                                                  clock, beeper, statusTexts, profile, &settingsDialog,
                                                  &passwordDialog, &windows, nullptr, &eventLog});
    m_window->show();
    m_window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    return *m_window;
}

void MainWindowStack::CloseWindow()
{
    if (m_window) {
        m_window->CloseUnasked();
        m_window.reset();
    }
}

void MainWindowStack::LogOn()
{
    Trigger("miLogOnLogOff");
    ASSERT_TRUE(m_window->LoggedOn());
    Q_EMIT control->NumberingReceived();
    ASSERT_EQ(executive.MyCallsign(), QStringLiteral("Dispatch"));
    control->TakeOperations();
}

void MainWindowStack::LogOff()
{
    prompt.ExpectConfirmation(Text(2027), true);
    Trigger("miLogOnLogOff");
    prompt.Finish();
}

void MainWindowStack::Click(const char* name)
{
    auto& widget = Find<QWidget>(name);
    if (!widget.isVisible() || !widget.isEnabled())
        ADD_FAILURE() << name << " cannot be clicked";
    QTest::mouseClick(&widget, Qt::LeftButton);
}

QAction& MainWindowStack::Action(const char* name)
{
    return Find<QAction>(name);
}

void MainWindowStack::Trigger(const char* name)
{
    if (!Action(name).isEnabled())
        ADD_FAILURE() << name << " is disabled";
    Action(name).trigger();
}

QString MainWindowStack::Panel(const char* key)
{
    return Find<QWidget>("sbrStatus").findChild<QLabel*>(QLatin1String(key))->text();
}

QTreeView& MainWindowStack::Log()
{
    return Find<QTreeView>("lvLog");
}

QStringList MainWindowStack::LogTexts()
{
    QStringList texts;
    for (int row = 0; row < Log().model()->rowCount(); ++row)
        texts.append(Log().model()->index(row, 0).data().toString());
    return texts;
}

QStringList MainWindowStack::LogIcons()
{
    QStringList keys;
    for (int row = 0; row < Log().model()->rowCount(); ++row)
        keys.append(Log().model()->index(row, 0).data(LogModel::IconKeyRole).toString());
    return keys;
}

QComboBox& MainWindowStack::Address()
{
    return Find<QComboBox>("cmbAddress");
}

void MainWindowStack::AddRow(const char* table,
                             std::initializer_list<std::pair<const char*, QVariant>> fields)
{
    const auto records = session.Database().OpenTable(QLatin1String(table));
    records->AddNew();
    for (const auto& [name, value] : fields)
        records->SetField(QLatin1String(name), value);
    records->Update();
}

void MainWindowStack::AddEvent(const QDateTime& time, int type, const QString& desc, const QString& from,
                               const QString& to)
{
    const auto events = session.Database().OpenTable(QStringLiteral("event"), true);
    events->AddNew();
    events->SetField(QStringLiteral("time_stamp"), time);
    events->SetField(QStringLiteral("event_type"), type);
    events->SetField(QStringLiteral("desc"), desc);
    events->SetField(QStringLiteral("from_address"), from);
    events->SetField(QStringLiteral("to_address"), to);
    events->Update();
}

bool MainWindowStack::ProfileIsLoggedOn()
{
    const auto profiles = session.Database().OpenTable(QStringLiteral("user_profile"));
    profiles->SetIndex(QStringLiteral("i_user"));
    profiles->Seek(QString::fromLatin1(TestDatabase::userName));
    EXPECT_FALSE(profiles->NoMatch());
    return profiles->Field(QStringLiteral("logged_on")).toBool();
}

void MainWindowStack::FillDatabase()
{
    AddRow("fleet", {{"fleet_name", "units"},
                     {"fleet_type", 1},
                     {"digits", 2},
                     {"prefix", 0},
                     {"base_ident", 2},
                     {"max_ident", 71}});
    AddRow("status", {{"status_code", 5}, {"in_desc", "Arrived"}, {"out_desc", "Proceed"}});
    AddRow("status", {{"status_code", 7}, {"in_desc", "Busy"}, {"out_desc", "Wait"}});
    const auto directory = session.Database().OpenDynaset(QStringLiteral("browse_individuals"));
    for (const auto& [callsign, ident] :
         {std::pair("Dispatch", "200200121"), std::pair("Unit20", "200200120"),
          std::pair("Unit22", "200200122")}) {
        directory->AddNew();
        directory->SetField(QStringLiteral("callsign"), QLatin1String(callsign));
        directory->SetField(QStringLiteral("IDENT"), QLatin1String(ident));
        directory->SetField(QStringLiteral("Type"), 1);
        directory->SetField(QStringLiteral("Name"), QLatin1String(callsign));
        directory->Update();
    }
}
