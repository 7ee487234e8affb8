#include "MainWindowStack.h"

#include "mainwindow/frame/Services.h"
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

MainWindowStack::MainWindowStack() : QuietRadioStack(OptionsAt(clock))
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    AddRow("status", {{"status_code", 5}, {"in_desc", "Arrived"}, {"out_desc", "Proceed"}});
    AddRow("status", {{"status_code", 7}, {"in_desc", "Busy"}, {"out_desc", "Wait"}});
    AddIndividuals({20, 22});
    session.Logoff();
}

MainWindowStack::~MainWindowStack()
{
    CloseWindow();
}

winMain& MainWindowStack::Open()
{
    Services services = console.MainWindowServices();
    services.windows = &windows;
    m_window = std::make_unique<winMain>(services);
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

void MainWindowStack::AddEvent(const QDateTime& time, int type, const QString& desc, const QString& from,
                               const QString& to)
{
    AddRow("event", {{"time_stamp", time},
                     {"event_type", type},
                     {"desc", desc},
                     {"from_address", from},
                     {"to_address", to}});
}

bool MainWindowStack::ProfileIsLoggedOn()
{
    const auto profiles = session.Database().OpenTable(QStringLiteral("user_profile"));
    profiles->SetIndex(QStringLiteral("i_user"));
    profiles->Seek(QString::fromLatin1(TestDatabase::userName));
    EXPECT_FALSE(profiles->NoMatch());
    return profiles->Field(QStringLiteral("logged_on")).toBool();
}
