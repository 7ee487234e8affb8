#include "app/Application.h"

#include "app/ConsoleWindows.h"
#include "core/base/AppPaths.h"
#include "core/base/Clock.h"
#include "core/desktop/HeldKeys.h"
#include "core/desktop/ModalFocus.h"
#include "core/desktop/Prompt.h"
#include "core/eventlog/EventLog.h"
#include "core/logon/DbSessionImpl.h"
#include "core/logon/frmPassword.h"
#include "core/logon/frmSettings.h"
#include "core/session/UserProfile.h"
#include "core/settings/Settings.h"
#include "core/widgets/Beeper.h"
#include "mainwindow/frame/Services.h"
#include "mainwindow/frame/winMain.h"
#include "radio/base/StatusTexts.h"
#include "radio/facade/FleetDataSource.h"
#include "radio/facade/Map27Executive.h"
#include "radio/line/SerialMap27Control.h"
#include "radio/line/SystemSerialPorts.h"

#include <QApplication>

// In the order of their creation; released in reverse.
struct Application::Objects {
    SystemClock clock;
    HeldKeys heldKeys;
    ModalFocus modalFocus;
    Beeper beeper;
    SystemSerialPorts serialPorts;
    std::unique_ptr<Settings> settings;
    std::unique_ptr<StatusTexts> statusTexts;
    std::unique_ptr<Prompt> prompt;
    std::unique_ptr<DbSession> session;
    std::unique_ptr<EventLog> eventLog;
    std::unique_ptr<UserProfile> profile;
    std::unique_ptr<FleetDataSource> fleetData;
    std::unique_ptr<Map27Executive> executive;
    std::unique_ptr<frmSettings> settingsDialog;
    std::unique_ptr<frmPassword> passwordDialog;
    std::unique_ptr<ConsoleWindows> windows;
    std::unique_ptr<winMain> mainWindow;
};

Application::Application(const IStringSource& strings) : m_strings(strings) {}

Application::~Application()
{
    ShutdownApplication();
}

void Application::StartUp(const QString& settingsFile)
{
    m_objects = std::make_unique<Objects>();
    Objects& o = *m_objects;
    o.settings = std::make_unique<Settings>(settingsFile, m_strings);
    o.statusTexts = std::make_unique<StatusTexts>(m_strings);

    const QString title = QString::fromLatin1(AppPaths::Title);
    m_stage = QStringLiteral("Prompt");
    o.prompt = std::make_unique<Prompt>(m_strings, o.clock);
    m_stage = QStringLiteral("DbSession");
    o.session = std::make_unique<DbSession>(*o.settings, m_strings, o.clock);
    o.eventLog = std::make_unique<EventLog>(*o.session, m_strings, AppPaths::DataFolder());
    QObject::connect(&o.session->Changes(), &DatabaseChanges::Opened, o.eventLog.get(),
                     &EventLog::WriteWaiting);
    o.profile = std::make_unique<UserProfile>(*o.session, *o.prompt, m_strings);
    m_stage = QStringLiteral("FleetDataSource");
    o.fleetData = std::make_unique<FleetDataSource>(*o.session, m_strings);
    m_stage = QStringLiteral("Map27Executive");
    o.executive = std::make_unique<Map27Executive>(RadioServices{m_strings, *o.prompt, *o.settings,
                                                                 *o.session, *o.fleetData, *o.statusTexts,
                                                                 *o.eventLog, o.clock, o.beeper},
                                                   std::make_unique<SerialMap27Control>(m_strings, o.clock));
    m_stage.clear();

    o.executive->SetAppName(title);
    o.prompt->SetAppName(title);
    o.session->SetAppName(title);
    o.session->SetSettingsSection(QStringLiteral("DB"));

    o.settingsDialog = std::make_unique<frmSettings>(SettingsServices{
        *o.session, *o.executive, *o.settings, *o.prompt, o.beeper, m_strings, &o.serialPorts});
    o.passwordDialog = std::make_unique<frmPassword>(*o.session, *o.prompt, m_strings);
    ShowMainWindow();
}

void Application::ShowMainWindow()
{
    Objects& o = *m_objects;
    Services services{
        m_strings, *o.prompt, *o.session,     *o.fleetData, *o.executive,           *o.settings,
        o.clock,   o.beeper,  *o.statusTexts, *o.profile,   o.settingsDialog.get(), o.passwordDialog.get()};
    o.windows = std::make_unique<ConsoleWindows>(services);
    services.windows = o.windows.get();
    services.eventLog = o.eventLog.get();
    services.numberingView = &o.windows->NumberingView();
    o.mainWindow = std::make_unique<winMain>(services);
    // Not quit(), which first asks every window that is open whether it may be closed.
    QObject::connect(o.mainWindow.get(), &winMain::Unloaded, qApp, [] { QCoreApplication::exit(0); });
    o.mainWindow->show();
}

void Application::EndAtOnce()
{
    if (m_objects && m_objects->mainWindow)
        m_objects->mainWindow->EndAtOnce();
    else
        QCoreApplication::exit(0);
}

void Application::ShutdownApplication()
{
    if (!m_objects)
        return;
    Objects& o = *m_objects;
    o.windows.reset();
    o.passwordDialog.reset();
    o.settingsDialog.reset();
    if (o.executive)
        o.executive->Disconnect();
    o.mainWindow.reset();
    o.executive.reset();
    o.fleetData.reset();
    o.profile.reset();
    o.eventLog.reset();
    o.session.reset();
    o.prompt.reset();
    m_objects.reset();
}
