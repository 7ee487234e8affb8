#include "mainwindow/frame/winMain.h"

#include "core/base/Clock.h"
#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/logon/frmPassword.h"
#include "core/logon/frmSettings.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"
#include "mainwindow/bars/KeyedToolBar.h"
#include "mainwindow/bars/MainMenu.h"
#include "mainwindow/bars/StatusBar.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/frame/PaneLayout.h"
#include "mainwindow/frame/PaneSplitter.h"
#include "mainwindow/individuals/IndividualsPane.h"
#include "mainwindow/log/LogPane.h"
#include "mainwindow/scada/ScadaPane.h"
#include "mainwindow/send/SendPane.h"
#include "mainwindow/strip/LinkStrip.h"
#include "mainwindow/talkgroups/GroupsPane.h"
#include "radio/facade/Map27Executive.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QTabBar>
#include <QToolButton>

// Outside any namespace, as Q_INIT_RESOURCE demands: the pictures lie in a static library.
static void InitIconResource()
{
    Q_INIT_RESOURCE(veltorkyn_icons);
}

namespace {

constexpr auto MainBarPrefix = "tbMain_";
constexpr int LeastPaneLines = 3;

bool IsLastOfGroup(const QString& key)
{
    return key == QLatin1String("fullscreen") || key == QLatin1String("disconnect") ||
           key == QLatin1String("refresh") || key == QLatin1String("sendname");
}

} // namespace

winMain::winMain(const Services& services)
    : m_services(services),
      m_logLines(services.statusTexts, services.strings),
      m_logReader(services.session, services.executive),
      m_placement(*this, services.settings),
      m_logon(m_services, m_session, *this)
{
    InitIconResource();
    setObjectName(QStringLiteral("winMain"));
    setProperty("textId", MainText::WindowCaption);
    setWindowIcon(LoadIcon(QStringLiteral("veltorkyn")));
    m_menu = std::make_unique<MainMenu>(*menuBar(), m_services.strings);
    BuildFrame();
    LoadCaptions(*this, m_services.strings);
    ConnectMenus();
    ConnectPanes();
    Load();
    ConnectServices();
}

winMain::~winMain()
{
    if (!m_unloaded)
        m_services.executive.SetViews({});
}

void winMain::BuildFrame()
{
    m_client = new QWidget(this);
    setCentralWidget(m_client);
    BuildToolBar();
    m_strip = new LinkStrip(m_services.strings, m_services.clock, m_missedCalls, m_client);
    BuildTabs();
    picHPaneResize = new PaneSplitter(m_client);
    picLog = new LogPane(
        {m_services.strings, m_services.settings, m_services.clock, m_logLines, m_logReader, m_session},
        m_client);
    picSend = new SendPane(
        {m_services.strings, m_services.prompt, m_services.beeper, m_services.executive, m_session},
        m_client);
    // Last, so that it stays in front of the panes in a window that is too low for all.
    sbrStatus = new StatusBar(m_services.strings, m_services.clock, m_client);
    m_client->installEventFilter(this);
}

void winMain::BuildToolBar()
{
    tbMain = new KeyedToolBar(QStringLiteral("tbMain"), m_client);
    tbMain->setProperty("accessibleNameId", MainText::MainToolBarName);
    for (const CommandRow& row : ActionTable()) {
        const QString name = QLatin1String(row.name);
        if (row.kind == CommandRow::Kind::Button && name.startsWith(QLatin1String(MainBarPrefix))) {
            const QString key = name.mid(static_cast<qsizetype>(qstrlen(MainBarPrefix)));
            const bool stays = key == QLatin1String("fullscreen") || key == QLatin1String("session");
            tbMain->AddButton(key, stays ? KeyedToolBar::Style::Check : KeyedToolBar::Style::Plain,
                              row.toolTip);
            if (IsLastOfGroup(key))
                tbMain->AddGap();
        }
    }
    tbMain->AddStretch();
    tbMain->setContentsMargins(4, 2, 4, 2);
    SetSessionCaption(m_menu->Action(QStringLiteral("miLogOnLogOff")).text());
}

void winMain::ConnectServices()
{
    Map27Executive& executive = m_services.executive;
    RadioViews views;
    views.log = this;
    views.status = this;
    views.talkgroups = picGroups;
    views.scada = picScada;
    views.individuals = picIndividuals;
    views.numbering = m_services.numberingView;
    executive.SetViews(views);
    connect(&executive, &Map27Executive::LinkChanged, m_strip, &LinkStrip::ShowLink);
    connect(&executive, &Map27Executive::LinkChanged, this, [this](const LinkStatus& status) {
        if (status.state == LinkStatus::State::Lost)
            sbrStatus->ForgetOperatingConditions();
        if (status.state == LinkStatus::State::Lost || status.state == LinkStatus::State::Silent)
            sbrStatus->ForgetAnswer();
    });
    connect(&executive, &Map27Executive::EmergencyCallReceived, this, &winMain::ShowEmergency);
    connect(&executive, &Map27Executive::NumberingDoubted, m_strip, &LinkStrip::ShowDoubts);
    m_strip->ShowLink(executive.Link());
    ConnectMissedCalls();
    ConnectDatabase();
    if (m_services.passwordDialog != nullptr)
        connect(m_services.passwordDialog, &frmPassword::PasswordChanged, this, &winMain::SbrMessage);
}

void winMain::Load()
{
    SetCommandStates();
    Attempt([this] { m_logWidth = m_services.settings.LogWidth(); });
    Attempt([this] { picLog->SetLogDataView(m_services.settings.LogView()); });
    Attempt([this] { picLog->LoadLogPrefs(); });
    picIndividuals->SizeColumns();
    Attempt([this] { picScada->Load(); });
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
        m_startProblems.removeDuplicates(); // one fault of the file can hinder every reading
        m_services.prompt.ShowWarning(m_startProblems.join(QLatin1Char('\n')));
    }
    if (m_logOnAtStart && !m_session.LoggedOn)
        m_logon.Run();
}

// The first logon waits until the window stands, so that its dialog has something to stand on.
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
    if (sbrStatus != nullptr &&
        (event->type() == QEvent::WindowStateChange || event->type() == QEvent::FontChange))
        LayoutPanes();
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && m_session.LoggedOn)
        Attempt([this] { m_services.session.Changes().MayHaveChanged(); });
}

bool winMain::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_client && event->type() == QEvent::Resize)
        LayoutPanes();
    return QMainWindow::eventFilter(watched, event);
}

void winMain::LayoutPanes()
{
    EnableFullScreen(m_placement.IsNormal());

    const int barHeight = tbMain->sizeHint().height();
    const int stripHeight = m_strip->HeightAt(m_client->width());
    PaneSizes sizes;
    sizes.toolBarHeight = barHeight + stripHeight;
    sizes.statusBarHeight = sbrStatus->sizeHint().height();
    sizes.tabRowHeight = tsMain->sizeHint().height();
    sizes.splitterWidth = PaneSplitter::Width;
    sizes.sendPaneHeight = picSend->PaneHeight();
    sizes.logWidth = m_logWidth;
    // In a large font the strip could push the panes out of a small window: the window grows instead, as far
    // as the screen has room.
    const int room =
        screen()->availableGeometry().height() - (frameGeometry().height() - height()) - menuBar()->height();
    const int lowest = LowestClient(sizes, LeastPaneLines * fontMetrics().lineSpacing());
    m_client->setMinimumHeight(
        std::clamp(LowestClient(sizes, LeastPaneHeight()), lowest, std::max(lowest, room)));
    const QSize client = m_client->size();
    sizes.client = client;
    const PaneLayout layout = ArrangePanes(sizes);

    tbMain->setGeometry(0, 0, client.width(), barHeight);
    m_strip->setGeometry(0, barHeight, client.width(), stripHeight);
    tsMain->setGeometry(0, layout.tabStrip.top(), client.width(), sizes.tabRowHeight);
    picLog->setGeometry(layout.log);
    picHPaneResize->setGeometry(layout.splitter);
    picHPaneResize->SetRange(layout.tabStripClient);
    for (QWidget* pane : {static_cast<QWidget*>(picGroups), static_cast<QWidget*>(picIndividuals),
                          static_cast<QWidget*>(picScada)})
        pane->setGeometry(layout.tabPane);
    picSend->setGeometry(layout.send);
    sbrStatus->setGeometry(0, client.height() - sizes.statusBarHeight, client.width(), sizes.statusBarHeight);
}

int winMain::LeastPaneHeight() const
{
    int least = LeastPaneLines * fontMetrics().lineSpacing();
    for (const QWidget* pane :
         {static_cast<const QWidget*>(picGroups), static_cast<const QWidget*>(picIndividuals),
          static_cast<const QWidget*>(picScada)})
        if (!pane->isHidden())
            least = std::max(least, pane->minimumSizeHint().height());
    return least;
}

void winMain::StoreLogWidth()
{
    const int right = picLog->x() + picLog->width();
    m_logWidth = right - (picHPaneResize->x() + picHPaneResize->width());
    Attempt([this] { m_services.settings.SetLogWidth(m_logWidth); });
    LayoutPanes();
}

void winMain::SetFullScreen(bool on)
{
    m_placement.SetFullScreen(on);
    m_menu->Action(QStringLiteral("miFullscreen")).setChecked(on);
    tbMain->SetPressed(QStringLiteral("fullscreen"), on);
}

void winMain::EnableFullScreen(bool enabled)
{
    if (m_allowed.normalWindow != enabled) {
        m_allowed.normalWindow = enabled;
        SetCommandStates();
    }
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

void winMain::EndAtOnce()
{
    m_logon.HangUp();
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
    Attempt([this] { picScada->StoreUnit(); }, Quietly);
    Attempt([this] { m_placement.Save(); }, Quietly);
    if (m_session.LoggedOn) {
        m_logon.EndSession();
        m_session = {};
    }
    m_services.executive.SetViews({});
    m_services.executive.disconnect(this);
    m_services.executive.disconnect(m_strip);
    sbrStatus->StopClock();
    for (QDialog* dialog :
         {static_cast<QDialog*>(m_services.settingsDialog), static_cast<QDialog*>(m_services.passwordDialog)})
        if (dialog != nullptr)
            dialog->setParent(nullptr);
    Q_EMIT Unloaded();
}

// Runs a step whose failure must not stop the others; the operator is told in the status bar, the log file
// always. Whether it succeeded.
bool winMain::Attempt(const std::function<void()>& step, bool tell)
{
    try {
        step();
        return true;
    } catch (const std::exception& failure) {
        const QString description = DescribeError(failure, m_services.strings);
        ProgramLog::Write(description);
        if (tell && m_wasShown)
            SbrMessage(description);
        else if (tell)
            m_startProblems.append(description);
        return false;
    }
}

QString winMain::Text(int id) const
{
    return m_services.strings.LoadString(id);
}
