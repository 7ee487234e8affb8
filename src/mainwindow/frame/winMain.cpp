#include "mainwindow/frame/winMain.h"

#include "core/attention/AttentionAlarm.h"
#include "core/attention/AttentionBook.h"
#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/sounds/Sounds.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"
#include "dao/Workspace.h"
#include "mainwindow/bars/CommandBars.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/frame/DatabaseWatch.h"
#include "mainwindow/frame/FrameKeys.h"
#include "mainwindow/frame/FramePanes.h"
#include "mainwindow/frame/LogonView.h"
#include "mainwindow/frame/MainCommands.h"
#include "mainwindow/frame/PaneSplitter.h"
#include "mainwindow/frame/StartPanel.h"
#include "mainwindow/frame/Windows.h"
#include "mainwindow/individuals/IndividualsPane.h"
#include "mainwindow/keys/KeyBindings.h"
#include "mainwindow/log/LogPane.h"
#include "mainwindow/scada/ScadaPane.h"
#include "mainwindow/send/SendPane.h"
#include "mainwindow/strip/AttentionPanel.h"
#include "mainwindow/strip/LinkStrip.h"
#include "mainwindow/talkgroups/GroupsPane.h"
#include "radio/base/LinkStatus.h"
#include "radio/facade/Map27Executive.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>

// Outside any namespace, as Q_INIT_RESOURCE demands: the pictures are in a static library.
static void InitIconResource()
{
    Q_INIT_RESOURCE(veltorkyn_icons);
}

winMain::winMain(const Services& services)
    : m_services(services),
      m_logLines(services.statusTexts, services.strings),
      m_logReader(services.session, services.executive),
      m_placement(*this, services.settings)
{
    InitIconResource();
    setObjectName(QStringLiteral("winMain"));
    setProperty("textId", MainText::WindowCaption);
    setWindowIcon(LoadIcon(QStringLiteral("veltorkyn")));
    BuildFrame();
    LoadCaptions(*this, m_services.strings);
    ConnectFrame();
    Load();
    ConnectServices();
}

winMain::~winMain()
{
    if (!m_unloaded)
        LeaveExecutive();
}

void winMain::LeaveExecutive()
{
    m_services.executive.SetViews({});
    m_services.executive.AskBeforeStatus({});
}

void winMain::BuildFrame()
{
    auto* client = new QWidget(this); // everything below the menu bar
    m_keys = std::make_unique<KeyBindings>(m_services.settings, m_services.strings);
    setCentralWidget(client);
    m_bars =
        std::make_unique<CommandBars>(*menuBar(), *client, m_services.strings, m_session, m_services.profile);
    m_attention = new AttentionPanel(
        {m_services.strings, m_services.clock, m_services.attention, m_services.alarm}, client);
    m_strip = new LinkStrip(m_services.strings, m_services.clock, *m_attention, client);
    m_tabs = std::make_unique<MainTabs>(m_services, m_session, client);
    auto* splitter = new PaneSplitter(client);
    picLog = new LogPane({m_services.strings, m_services.settings, m_services.clock, m_logLines, m_logReader,
                          m_session, m_services.eventLog},
                         client);
    picSend = new SendPane({m_services.strings, m_services.prompt, m_services.beeper, m_services.executive,
                            m_session, m_services.session},
                           client);
    // Last, so that it stays in front of the panes in a window that is too low for everything.
    sbrStatus = new StatusBar(m_services.strings, m_services.clock, client);
    m_start = new StartPanel(m_services.strings, client);

    const auto attempt = [this](const std::function<void()>& step) { return Attempt(step); };
    m_panes = std::make_unique<FramePanes>(
        FramePanes::Parts{*this, m_placement, m_services.settings, *m_bars, *m_attention, *m_strip, *m_tabs,
                          *splitter, *picLog, *picSend, *sbrStatus, *m_start, attempt});
    m_commands = std::make_unique<MainCommands>(
        MainCommands::Parts{*this, m_services, m_session, *m_bars, *m_tabs, *picLog, *picSend, *sbrStatus,
                            *m_strip, *m_attention, *m_keys, attempt});
    m_watch = std::make_unique<DatabaseWatch>(m_services, m_session, *m_tabs, *picSend, *m_strip, attempt);
    m_logonView = std::make_unique<LogonView>(
        *m_bars, *m_tabs, *picLog, *sbrStatus, [this] { LoadStati(); }, [this] { LoadKeys(); });
    m_logon = std::make_unique<LogonCommand>(m_services, m_session, *m_logonView);
}

void winMain::ConnectFrame()
{
    m_bars->On(
        MainCommand::LogOnLogOff, [this] { m_logon->Run(); });
    m_bars->On(
        MainCommand::FullScreen, [this] { SetFullScreen(!IsFullScreen()); });
    m_bars->On(
        MainCommand::SetUp, [this] { SetUp(); });
    connect(m_start, &StartPanel::LogonWanted, this, [this] { m_logon->Run(); });
    connect(m_start, &StartPanel::SetUpWanted, this, &winMain::SetUp);
    connect(&m_services.session.Changes(), &DatabaseChanges::Opened, m_start, &QWidget::hide);
    m_bars->On(MainCommand::Exit, [this] { Exit(); });

    auto* keys = new FrameKeys(*this, *m_keys);
    connect(keys, &FrameKeys::NextTab, m_tabs.get(), &MainTabs::SelectNext);
    connect(keys, &FrameKeys::PreviousTab, m_tabs.get(), &MainTabs::SelectPrevious);
    connect(keys, &FrameKeys::EncodingChosen, picSend, &SendPane::SelectEncoding);
    connect(keys, &FrameKeys::AttentionRequested, m_attention, &AttentionPanel::ToggleList);
}

void winMain::ConnectServices()
{
    Map27Executive& executive = m_services.executive;
    RadioViews views;
    views.log = picLog;
    views.status = sbrStatus;
    views.talkgroups = &m_tabs->Groups();
    views.scada = &m_tabs->Scada();
    views.individuals = &m_tabs->Individuals();
    views.numbering = m_services.numberingView;
    executive.SetViews(views);
    executive.AskBeforeStatus(
        [this](const QString& party, int status) { return m_tabs->Scada().MayBeSent(party, status); });
    connect(&executive, &Map27Executive::LinkChanged, this, &winMain::ShowLink);
    connect(&executive, &Map27Executive::NumberingDoubted, m_strip, &LinkStrip::ShowDoubts);
    connect(&executive, &Map27Executive::Failed, m_strip, &LinkStrip::ShowFailure);
    connect(&executive, &Map27Executive::CallNoticed, m_strip, &LinkStrip::ShowCallNotice);
    connect(&executive, &Map27Executive::RadioInUse, m_strip, &LinkStrip::ShowRadioInUse);
    m_strip->ShowLink(executive.Link());
    ConnectAttention();
}

void winMain::ConnectAttention()
{
    AttentionBook& book = m_services.attention;
    connect(&book, &AttentionBook::Appeared, this, [this](const dao::AttentionRecord& entry) {
        if (entry.kind == dao::AttentionRecord::Kind::Emergency)
            QApplication::alert(this);
    });
    connect(&book, &AttentionBook::Overruled, m_strip, &LinkStrip::ShowFailure);
    connect(&m_services.session.Changes(), &DatabaseChanges::Opened, this, [this] {
        m_strip->ShowSilent(m_services.sounds.HasOutput() ? QString() : Text(MainText::NoSoundOutput));
    });
}

void winMain::ShowLink(const LinkStatus& status)
{
    using State = LinkStatus::State;
    m_strip->ShowLink(status);
    if (status.state == State::Lost)
        sbrStatus->ForgetOperatingConditions();
    if (status.state == State::Lost || status.state == State::Silent)
        sbrStatus->ForgetAnswer();
    if (status.state == State::Lost && m_radioWasReady)
        m_services.sounds.Tell(SoundKind::RadioLost);
    m_radioWasReady = status.state == State::Ready || (m_radioWasReady && status.state == State::Silent);
}

void winMain::Load()
{
    m_bars->SetCommandStates();
    m_panes->LoadLogWidth();
    Attempt([this] { picLog->LoadLogDataView(); });
    Attempt([this] { picLog->LoadLogPrefs(); });
    m_tabs->Individuals().SizeColumns();
    Attempt([this] { m_tabs->Scada().Load(); });
    Attempt([this] { m_logOnAtStart = m_services.settings.GetLogonCount() != 0; });
    picSend->SelectType(SendPane::MessageType::Status);
    RestoreWindowPlacement();
}

void winMain::RestoreWindowPlacement()
{
    Settings::Placement placement;
    Attempt([&] { placement = m_placement.Stored(); });
    m_placement.RestoreRectangle(placement);
    SetFullScreen(placement.fullScreen);
    m_placement.RestoreState(placement);
}

void winMain::LogOnAtStart()
{
    if (!m_startProblems.isEmpty()) {
        m_startProblems.removeDuplicates(); // one fault in the file can spoil every reading
        m_services.prompt.ShowWarning(m_startProblems.join(QLatin1Char('\n')));
    }
    if (m_logOnAtStart && !m_session.LoggedOn)
        m_logon->Run();
}

void winMain::SetUp()
{
    if (m_services.windows != nullptr && !m_session.LoggedOn && m_services.windows->OpenSetUp(*this))
        m_logon->Run();
}

// What an operator's file says of keys and cannot be used is told; the keys hold as the console comes.
void winMain::LoadKeys()
{
    QStringList problems;
    Attempt([&] {
        problems = m_keys->Load(m_session.LoggedOn ? m_services.session.Workspace().UserName() : QString());
    });
    if (!problems.isEmpty())
        m_services.prompt.ShowWarning(problems.join(QLatin1Char('\n')));
}

// The first logon waits until the window is in place, so that its dialog appears in front of it.
void winMain::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (!m_wasShown) {
        m_wasShown = true;
        QMetaObject::invokeMethod(this, &winMain::LogOnAtStart, Qt::QueuedConnection);
    }
}

void winMain::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && m_session.LoggedOn)
        Attempt([this] { m_watch->LookNow(); });
}

void winMain::SetFullScreen(bool on)
{
    m_placement.SetFullScreen(on);
    m_bars->ShowFullScreen(on);
}

void winMain::closeEvent(QCloseEvent* event)
{
    const bool ask = m_session.LoggedOn && !m_exitDecided && !m_unloaded;
    if (ask && !AskExit()) {
        event->ignore();
        return;
    }
    event->accept();
    Unload();
}

bool winMain::AskExit()
{
    if (m_askingExit)
        return false;
    m_askingExit = true;
    const bool yes = m_services.prompt.AskConfirmation(Text(MainText::ExitQuestion));
    m_askingExit = false;
    return yes;
}

void winMain::Exit()
{
    if (!m_session.LoggedOn || AskExit())
        CloseUnasked();
}

void winMain::CloseUnasked()
{
    m_exitDecided = true;
    close();
}

void winMain::HangUp()
{
    m_logon->HangUp();
}

void winMain::EndAtOnce()
{
    HangUp();
    CloseUnasked();
    Unload(); // even if a dialog of its own kept the window from being closed
}

void winMain::Unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    constexpr bool Quietly = false;
    Attempt([this] { picLog->SaveLogPeriod(); }, Quietly);
    Attempt([this] { m_tabs->Scada().StoreUnit(); }, Quietly);
    Attempt([this] { m_placement.Save(); }, Quietly);
    if (m_session.LoggedOn) {
        m_logon->EndSession();
        m_session = {};
    }
    LeaveExecutive();
    m_services.executive.disconnect(this);
    m_services.executive.disconnect(m_strip);
    m_services.attention.disconnect(this);
    m_services.attention.disconnect(m_attention);
    m_services.alarm.disconnect(m_attention);
    sbrStatus->StopClock();
    m_commands->ReleaseDialogs();
    Q_EMIT Unloaded();
}

// Runs a step whose failure must not stop the others; the log file always records it, and the operator is
// told in the status bar. Returns whether it succeeded.
bool winMain::Attempt(const std::function<void()>& step, bool tell)
{
    try {
        step();
        return true;
    } catch (const std::exception& failure) {
        const QString description = DescribeError(failure, m_services.strings);
        ProgramLog::Write(description);
        if (tell && m_wasShown)
            sbrStatus->SbrMessage(description);
        else if (tell)
            m_startProblems.append(description);
        return false;
    }
}

QString winMain::Text(int id) const
{
    return m_services.strings.LoadString(id);
}

void winMain::LoadStati()
{
    constexpr bool Quietly = false;
    if (m_session.LoggedOn)
        Attempt([this] { m_watch->LoadStati(); }, Quietly);
}

void winMain::ReloadGrps(const QString& lookfor)
{
    m_tabs->Groups().ReloadGrps(lookfor);
}

void winMain::ReloadInds(const QString& lookfor)
{
    m_tabs->Individuals().ReloadInds(lookfor);
}
