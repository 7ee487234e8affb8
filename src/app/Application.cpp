#include "app/Application.h"

#include "app/Console.h"
#include "app/ConsoleWindows.h"
#include "app/Demonstration.h"
#include "core/base/AppPaths.h"
#include "core/base/Clock.h"
#include "core/base/ProgramLog.h"
#include "core/desktop/HeldKeys.h"
#include "core/desktop/ModalFocus.h"
#include "core/desktop/Prompt.h"
#include "core/desktop/ShowModal.h"
#include "core/desktop/Waiting.h"
#include "core/desktop/WindowRole.h"
#include "core/logon/DbSessionImpl.h"
#include "core/session/DatabaseChanges.h"
#include "core/settings/Settings.h"
#include "core/sounds/Beeper.h"
#include "mainwindow/frame/Services.h"
#include "mainwindow/frame/winMain.h"
#include "radio/facade/Map27Executive.h"
#include "radio/line/SerialMap27Control.h"
#include "radio/line/SystemSerialPorts.h"
#include "radio/trace/TracedPort.h"
#include "radio/trace/WireTrace.h"
#include "setup/frmSetUp.h"

#include <QApplication>
#include <QFileInfo>

// In the order of their creation; released in reverse.
struct Application::Objects {
    SystemClock clock;
    HeldKeys heldKeys;
    std::unique_ptr<Waiting> waiting;
    ModalFocus modalFocus;
    Beeper beeper;
    SystemSerialPorts serialPorts;
    std::unique_ptr<Settings> settings;
    std::unique_ptr<Prompt> prompt;
    std::unique_ptr<DbSession> session;
    std::unique_ptr<WireTrace> wireTrace; // the line's, too
    std::unique_ptr<Console> console;
    std::unique_ptr<ConsoleWindows> windows;
    std::unique_ptr<winMain> mainWindow;
};

// The ports of this computer and network, each frame of which is traced.
static SerialMap27Control::PortFactory TracedPorts(WireTrace& trace, const Clock& clock)
{
    return [&trace, &clock](const QString& name, int bitsPerSecond) {
        return std::make_unique<TracedPort>(MakeRadioPort(name, bitsPerSecond), name, bitsPerSecond, trace,
                                            clock);
    };
}

Application::Application(const IStringSource& strings) : m_strings(strings) {}

Application::~Application()
{
    ShutdownApplication();
}

void Application::StartUp(const QString& settingsFile)
{
    TellWindowRoles();
    m_objects = std::make_unique<Objects>();
    Objects& o = *m_objects;
    o.settings = std::make_unique<Settings>(settingsFile, m_strings);
    o.waiting = std::make_unique<Waiting>(m_strings, o.clock);
    m_stage = QStringLiteral("Prompt");
    o.prompt = std::make_unique<Prompt>(m_strings, o.clock);
    m_stage = QStringLiteral("DbSession");
    o.session = std::make_unique<DbSession>(*o.settings, m_strings, o.clock);
    QObject::connect(o.waiting.get(), &Waiting::WaitingChanged, &o.session->Changes(),
                     &DatabaseChanges::SetBusy);
    QObject::connect(&o.session->Changes(), &DatabaseChanges::Telling, o.waiting.get(), &Waiting::SetUnasked);
    // Beside the program's log.
    o.wireTrace =
        std::make_unique<WireTrace>(QFileInfo(ProgramLog::FileName()).path(), o.clock, Lane::Kind::OwnThread);
    auto control = std::make_unique<SerialMap27Control>(
        m_strings, o.clock, SerialMap27Control::Place::OwnThread, TracedPorts(*o.wireTrace, o.clock));
    control->SetWaitSign([&o](const QString& port, std::function<void()> giveUp) {
        return o.waiting->ShowFor(port, std::move(giveUp));
    });
    o.console = std::make_unique<Console>(ConsoleBase{m_strings, *o.settings, o.clock, *o.prompt, o.beeper,
                                                      *o.session, *o.session, &o.serialPorts,
                                                      AppPaths::DataFolder(), Lane::Kind::OwnThread},
                                          std::move(control), m_stage);

    const QString title = QString::fromLatin1(AppPaths::Title);
    o.console->executive->SetAppName(title);
    o.prompt->SetAppName(title);
    o.session->SetAppName(title);
    o.session->SetSettingsSection(QStringLiteral("DB"));
    ShowMainWindow();
}

void Application::ShowMainWindow()
{
    Objects& o = *m_objects;
    Services services = o.console->MainWindowServices();
    o.windows = std::make_unique<ConsoleWindows>(services);
    services.windows = o.windows.get();
    o.windows->SetAssistant([this](QWidget* owner) { return SetUp(owner); });
    o.session->SetAssistant([this] { SetUp(m_objects->mainWindow.get()); });
    services.numberingView = &o.windows->NumberingView();
    o.mainWindow = std::make_unique<winMain>(services);
    // Not quit(), which first asks every window that is open whether it may be closed.
    QObject::connect(o.mainWindow.get(), &winMain::Unloaded, qApp, [] { QCoreApplication::exit(0); });
    o.mainWindow->show();
}

bool Application::SetUp(QWidget* owner)
{
    Objects& o = *m_objects;
    const auto makeControl = [this, &o]() -> std::unique_ptr<Map27Control> {
        auto control = std::make_unique<SerialMap27Control>(
            m_strings, o.clock, SerialMap27Control::Place::OwnThread, TracedPorts(*o.wireTrace, o.clock));
        control->SetWaitSign([&o](const QString& port, std::function<void()> giveUp) {
            return o.waiting->ShowFor(port, std::move(giveUp));
        });
        return control;
    };
    frmSetUp assistant(
        {.strings = m_strings,
         .settings = *o.settings,
         .logon = *o.session,
         .prompt = *o.prompt,
         .beeper = o.beeper,
         .serial = *o.console->executive,
         .ports = &o.serialPorts,
         .makeControl = makeControl,
         .startDemonstration = [this] { return Demonstration::StartBeside(m_strings); },
         .logOnNextAs = [&o](const QString& user,
                             const QString& password) { o.session->LogOnNextAs(user, password); },
         .options = {}});
    return ShowModal(assistant, *owner) == QDialog::Accepted && assistant.HasDatabase();
}

void Application::EndAtOnce()
{
    if (!m_objects || !m_objects->mainWindow) {
        QCoreApplication::exit(0);
        return;
    }
    m_objects->mainWindow->HangUp();
    m_objects->waiting->EndSoon([this] { m_objects->mainWindow->EndAtOnce(); });
}

void Application::ShutdownApplication()
{
    if (!m_objects)
        return;
    Objects& o = *m_objects;
    o.windows.reset();
    if (o.console)
        o.console->CloseDialogs();
    o.mainWindow.reset();
    m_objects.reset();
}
