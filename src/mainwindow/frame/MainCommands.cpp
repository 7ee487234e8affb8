#include "mainwindow/frame/MainCommands.h"

#include "core/desktop/Prompt.h"
#include "core/desktop/ShowModal.h"
#include "core/desktop/ShowWindow.h"
#include "core/logon/frmPassword.h"
#include "core/logon/frmSettings.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "mainwindow/bars/CommandBars.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/frame/CoverSetting.h"
#include "mainwindow/frame/MainTabs.h"
#include "mainwindow/frame/Services.h"
#include "mainwindow/frame/Windows.h"
#include "mainwindow/keys/KeyBindings.h"
#include "mainwindow/keys/frmKeys.h"
#include "mainwindow/log/LogPane.h"
#include "mainwindow/send/QuickMenus.h"
#include "mainwindow/send/SendPane.h"
#include "mainwindow/send/frmSentMessages.h"
#include "mainwindow/strip/AttentionPanel.h"
#include "mainwindow/strip/LinkStrip.h"
#include "radio/facade/Map27Executive.h"

#include <QAction>
#include <QMenu>
#include <QWindow>

MainCommands::MainCommands(const Parts& parts)
    : m_parts(parts),
      m_sent(
          std::make_unique<frmSentMessages>(parts.services.strings, parts.services.executive, parts.session)),
      m_keySheet(std::make_unique<frmKeys>(parts.services.strings, parts.services.prompt, parts.keys))
{
    ConnectDialogs();
    ConnectRadio();
    ConnectMessaging();
    ConnectRegrouping();
    ConnectCoverSetting();
    ConnectWindows();
    ConnectPanes();
    ConnectAttention();
}

MainCommands::~MainCommands() = default;

void MainCommands::ConnectDialogs()
{
    const Services& services = m_parts.services;
    const auto onDialog = [this](MainCommand command, QDialog* dialog) {
        if (dialog != nullptr)
            m_parts.bars.On(command,
                            [this, dialog] { ShowModal(*dialog, *m_parts.bars.ToolBar().window()); });
    };
    onDialog(MainCommand::Settings, services.settingsDialog);
    onDialog(MainCommand::Password, services.passwordDialog);
    if (services.passwordDialog != nullptr)
        connect(services.passwordDialog, &frmPassword::PasswordChanged, &m_parts.status,
                &StatusBar::SbrMessage);
}

void MainCommands::ReleaseDialogs()
{
    m_sent->hide();
    m_keySheet->hide();
    const Services& services = m_parts.services;
    for (QDialog* dialog : std::initializer_list<QDialog*>{services.settingsDialog, services.passwordDialog})
        if (dialog != nullptr)
            dialog->setParent(nullptr);
}

void MainCommands::ConnectRadio()
{
    Map27Executive& executive = m_parts.services.executive;
    CommandBars& bars = m_parts.bars;
    bars.On(
        MainCommand::OpCon,
        [this, &executive] {
            AskRadio(
                MainText::AskedOperatingCondition, [&executive] { executive.AskOperatingCondition(); });
        });
    bars.On(
        MainCommand::NetInfo,
        [this, &executive] {
            AskRadio(
                MainText::AskedNetworkInfo, [&executive] { executive.AskNetworkInfo(); });
        });
    bars.On(
        MainCommand::NumInfo,
        [this, &executive] {
            AskRadio(
                MainText::AskedNumbering, [&executive] { executive.AskNumbering(); });
        });
    bars.On(MainCommand::Disconnect, [this] { ResetRadioLink(); });
    connect(&m_parts.status, &StatusBar::PanelDoubleClicked, this, &MainCommands::RunPanelCommand);
    connect(&m_parts.status, &StatusBar::PanelMenuRequested, this, &MainCommands::ShowPanelMenu);
}

void MainCommands::ConnectMessaging()
{
    struct CallRow {
        MainCommand command;
        SendPane::CallOptions options;
    };
    constexpr CallRow Calls[] = {
        {MainCommand::SendCall, {.emergency = false, .priority = false, .dialog = true}},
        {MainCommand::SendEmergencyCall, {.emergency = true, .priority = false, .dialog = true}},
        {MainCommand::SendPriorityCall, {.emergency = false, .priority = true, .dialog = true}},
        {MainCommand::SendBroadcast, {.emergency = false, .priority = false, .dialog = false}},
        {MainCommand::SendEmergencyBroadcast, {.emergency = true, .priority = false, .dialog = false}},
        {MainCommand::SendPriorityBroadcast, {.emergency = false, .priority = true, .dialog = false}},
    };
    SendPane& send = m_parts.send;
    CommandBars& bars = m_parts.bars;
    for (const CallRow& call : Calls)
        bars.On(
            call.command, [&send, options = call.options] { send.PrepareCall(options); });
    bars.On(
        MainCommand::SendStatus, [&send] { send.SelectType(SendPane::MessageType::Status); });
    bars.On(
        MainCommand::SendText, [&send] { send.SelectType(SendPane::MessageType::Text); });
    bars.On(MainCommand::SentMessages, [this] {
        if (m_parts.session.LoggedOn)
            ShowBeside(*m_sent);
    });
    const Services& services = m_parts.services;
    const MainMenu& menu = bars.Menu();
    new QuickMenus( // the pane's
        QuickMenus::Parts{services.strings, services.prompt, services.settings, services.session,
                          m_parts.session, services.statusTexts, services.executive, send, m_parts.keys},
        menu.Action(MainCommand::Favourites), menu.Action(MainCommand::QuickTexts),
        menu.Action(MainCommand::LastParties));
}

void MainCommands::ConnectRegrouping()
{
    MainTabs& tabs = m_parts.tabs;
    m_parts.bars.On(
        MainCommand::DefaultDynamic, [this, &tabs] { m_parts.attempt([&tabs] { tabs.SetDefaultGroup(); }); });
    WhenLoggedOn(
        MainCommand::Refresh, [&tabs] { tabs.Reload(); });
    WhenLoggedOn(
        MainCommand::Regroup, [&tabs] { tabs.Regroup(); });
    WhenLoggedOn(
        MainCommand::Ungroup, [&tabs] { tabs.Ungroup(); });
    WhenLoggedOn(MainCommand::SendName, [&tabs] { tabs.SendGroupName(); });
    WhenLoggedOn(MainCommand::RegroupHistory, [this, &tabs] {
        const MainTabs::RegroupParty party = tabs.SelectedRegroupParty();
        if (IWindows* windows = m_parts.services.windows)
            windows->OpenRegroupHistory(party.addressId, party.callsign);
    });
}

void MainCommands::WhenLoggedOn(MainCommand command, const std::function<void()>& run)
{
    m_parts.bars.On(
        command,
        [this, run] {
            if (m_parts.session.LoggedOn)
                run();
        });
}

// The setting may have been changed at another console: the mark is read each time the menu opens.
void MainCommands::ConnectCoverSetting()
{
    IDbSession& database = m_parts.services.session;
    MainMenu& menu = m_parts.bars.Menu();
    QAction& item = menu.Action(MainCommand::CoverLists);
    item.setCheckable(true);
    connect(
        &menu.Menu(MainCommand::AdminMenu), &QMenu::aboutToShow, this,
        [this, &item, &database] {
            item.setChecked(m_parts.session.LoggedOn && CoversAfterLogoff(database));
        });
    m_parts.bars.On(MainCommand::CoverLists, [this, &item, &database] {
        const bool on = item.isChecked();
        try {
            SetCoversAfterLogoff(database, on);
        } catch (const std::exception& failure) {
            item.setChecked(!on);
            m_parts.services.prompt.ShowError(DescribeError(failure, m_parts.services.strings));
        }
    });
}

void MainCommands::ConnectWindows()
{
    struct WindowRow {
        MainCommand command;
        void (IWindows::*open)(winMain&);
    };
    constexpr WindowRow Rows[] = {
        {MainCommand::NumberingDiag, &IWindows::OpenNumberingDiagnostics},
        {MainCommand::UserManager, &IWindows::OpenUserManager},
        {MainCommand::Numbering, &IWindows::OpenNumbering},
        {MainCommand::SelectNumbering, &IWindows::OpenNumberingSelection},
        {MainCommand::AddressDir, &IWindows::OpenAddressDirectory},
        {MainCommand::EditStati, &IWindows::OpenStatusEditor},
        {MainCommand::LogWindow, &IWindows::OpenLogbook},
        {MainCommand::ShiftReport, &IWindows::OpenShiftReport},
        {MainCommand::WhoIsWhere, &IWindows::OpenWhoIsWhere},
        {MainCommand::HelpTopics, &IWindows::OpenHelp},
        {MainCommand::About, &IWindows::OpenAbout},
        {MainCommand::Diagnostics, &IWindows::OpenDiagnostics},
    };
    const MainMenu& menu = m_parts.bars.Menu();
    m_parts.keys.Follow(menu.Action(MainCommand::LogWindow), KeyCommand::LogWindow);
    m_parts.keys.Follow(menu.Action(MainCommand::SentMessages), KeyCommand::SentMessages);
    m_parts.bars.On(MainCommand::Keys, [this] { ShowBeside(*m_keySheet); });
    IWindows* windows = m_parts.services.windows;
    if (windows == nullptr)
        return;
    for (const WindowRow& row : Rows)
        m_parts.bars.On(row.command, [this, windows, open = row.open] { (windows->*open)(m_parts.window); });
}

void MainCommands::ConnectPanes()
{
    LogPane& log = m_parts.log;
    connect(&log, &LogPane::AddressesChosen, &m_parts.send, &SendPane::SetAddress);
    connect(
        &log, &LogPane::CallRequested, this, [this, &log] { CallParty(log.SelectedTag().has_value()); });
    connect(&log, &LogPane::MenuRequested, this,
            [this, &log](const QPoint& place) { ShowMessagingMenu(log.SelectedTag().has_value(), place); });
    connect(&log, &LogPane::DataViewChanged, this, &MainCommands::ShowDataViewCaption);
    m_parts.bars.On(MainCommand::LogDataView,
                    [this, &log] { m_parts.attempt([&log] { log.ToggleLogDataView(); }); });

    MainTabs& tabs = m_parts.tabs;
    connect(&tabs, &MainTabs::AddressesChosen, &m_parts.send, &SendPane::SetAddress);
    connect(&tabs, &MainTabs::AllowedChanged, this,
            [this, &tabs] { m_parts.bars.AllowCommand(tabs.Allowed()); });
    connect(&tabs, &MainTabs::CallRequested, this, &MainCommands::CallParty);
    connect(&tabs, &MainTabs::MenuRequested, this, &MainCommands::ShowMessagingMenu);

    connect(&m_parts.send, &SendPane::SearchRequested, this, &MainCommands::SearchAddress);
    connect(&m_parts.strip, &LinkStrip::HangUpRequested, &m_parts.services.executive,
            &Map27Executive::HangUpRadio);
}

void MainCommands::ConnectAttention()
{
    using Again = dao::AttentionRecord::Again;
    connect(&m_parts.attention, &AttentionPanel::CallBackRequested, this, [this](const QString& party) {
        if (m_parts.session.LoggedOn) // what is being written in the send pane stays
            m_parts.services.executive.StartCall(party, false, false, true);
    });
    connect(&m_parts.attention, &AttentionPanel::SendAgainRequested, this,
            [this](const dao::AttentionRecord& entry) {
                Map27Executive& executive = m_parts.services.executive;
                if (!m_parts.session.LoggedOn)
                    return;
                if (entry.again == Again::Status)
                    executive.SendStatus(entry.callBack, entry.message.toInt());
                else
                    executive.SendTextAgain(entry.callBack, entry.message,
                                            entry.again == Again::TextInEightBits);
            });
}

void MainCommands::AskRadio(int message, const std::function<void()>& ask)
{
    if (!m_parts.session.LoggedOn)
        return;
    m_parts.status.SbrMessage(Text(message));
    try {
        ask();
    } catch (const std::exception& failure) {
        m_parts.services.executive.TellFailure(failure);
    }
}

void MainCommands::ShowBeside(QDialog& window)
{
    window.winId(); // creates the native window, which can then be given a parent
    window.windowHandle()->setTransientParent(m_parts.bars.ToolBar().window()->windowHandle());
    BringToScreen(window, Activation::Take);
}

void MainCommands::ResetRadioLink()
{
    const Services& services = m_parts.services;
    try {
        services.executive.ResetTran();
    } catch (const std::exception& failure) {
        services.prompt.ShowWarning(DescribeError(failure, services.strings));
    }
}

void MainCommands::RunPanelCommand(StatusBar::Part panel)
{
    if (!m_parts.session.LoggedOn)
        return;
    switch (panel) {
    case StatusBar::Part::OperatingCondition:
    case StatusBar::Part::FieldStrength:
        m_parts.bars.Trigger(MainCommand::OpCon);
        break;
    case StatusBar::Part::Callsign:
    case StatusBar::Part::Ident:
        m_parts.bars.Trigger(MainCommand::NumInfo);
        m_parts.bars.Trigger(MainCommand::NumberingDiag);
        break;
    case StatusBar::Part::Version:
        m_parts.bars.Trigger(MainCommand::About);
        break;
    case StatusBar::Part::Main:
    case StatusBar::Part::Date:
    case StatusBar::Part::Time:
        break;
    }
}

void MainCommands::ShowPanelMenu(StatusBar::Part panel, const QPoint& place)
{
    switch (panel) {
    case StatusBar::Part::Version:
        m_parts.bars.Menu().PopUp(MainCommand::HelpMenu, place);
        break;
    case StatusBar::Part::OperatingCondition:
    case StatusBar::Part::FieldStrength:
    case StatusBar::Part::Callsign:
    case StatusBar::Part::Ident:
        if (m_parts.session.LoggedOn)
            m_parts.bars.Menu().PopUp(MainCommand::RadioMenu, place);
        break;
    case StatusBar::Part::Main:
    case StatusBar::Part::Date:
    case StatusBar::Part::Time:
        break;
    }
}

void MainCommands::ShowDataViewCaption(LogDataView view)
{
    const int caption = view == LogDataView::Hex ? MainText::ShowAsText : MainText::ShowAsHex;
    m_parts.bars.Menu().Action(MainCommand::LogDataView).setText(Text(caption));
}

void MainCommands::CallParty(bool chosen)
{
    if (!m_parts.session.LoggedOn || !chosen)
        return;
    m_parts.bars.Trigger(MainCommand::SendCall);
    if (!m_parts.send.Address().trimmed().isEmpty())
        m_parts.send.Send();
}

void MainCommands::ShowMessagingMenu(bool chosen, const QPoint& place)
{
    if (m_parts.session.LoggedOn && chosen)
        m_parts.bars.Menu().PopUp(MainCommand::MessagingMenu, place, MainCommand::SendCall);
}

void MainCommands::SearchAddress(const QString& lookfor)
{
    if (m_parts.session.LoggedOn && m_parts.tabs.Reload(lookfor))
        m_parts.send.SetAddress({});
}

QString MainCommands::Text(int id) const
{
    return m_parts.services.strings.LoadString(id);
}
