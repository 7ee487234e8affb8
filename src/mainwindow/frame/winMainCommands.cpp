// The commands of the main window and what logging on and off changes in it.

#include "mainwindow/frame/winMain.h"

#include "core/desktop/Prompt.h"
#include "core/desktop/ShowModal.h"
#include "core/logon/frmPassword.h"
#include "core/logon/frmSettings.h"
#include "core/session/UserProfile.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "mainwindow/bars/KeyedToolBar.h"
#include "mainwindow/bars/MainMenu.h"
#include "mainwindow/bars/StatusBar.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/frame/CoverSetting.h"
#include "mainwindow/frame/Windows.h"
#include "mainwindow/individuals/IndividualsPane.h"
#include "mainwindow/log/LogPane.h"
#include "mainwindow/scada/ScadaPane.h"
#include "mainwindow/send/SendPane.h"
#include "mainwindow/send/StatusList.h"
#include "mainwindow/strip/LinkStrip.h"
#include "mainwindow/talkgroups/GroupsPane.h"
#include "radio/base/StatusTexts.h"
#include "radio/facade/Map27Executive.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QToolButton>

void winMain::ConnectMenus()
{
    m_menu->Action(QStringLiteral("miFullscreen")).setCheckable(true);
    OnCommand(
        QStringLiteral("miLogOnLogOff"), [this] { m_logon.Run(); });
    OnCommand(
        QStringLiteral("miSettings"),
        [this] {
            if (m_services.settingsDialog != nullptr)
                ShowModal(*m_services.settingsDialog, *this);
        });
    OnCommand(
        QStringLiteral("miPassword"),
        [this] {
            if (m_services.passwordDialog != nullptr) {
                ShowModal(*m_services.passwordDialog, *this);
            }
        });
    OnCommand(
        QStringLiteral("mbExit"), [this] { Exit(); });
    OnCommand(
        QStringLiteral("miFullscreen"), [this] { SetFullScreen(!IsFullScreen()); });
    OnCommand(QStringLiteral("miLogDataView"), [this] { ToggleLogDataView(); });
    ConnectRadioCommands();
    ConnectMessagingCommands();
    ConnectRegroupingCommands();
    ConnectCoverSetting();
    ConnectWindows();
}

void winMain::OnCommand(const QString& name, const std::function<void()>& run)
{
    connect(
        &m_menu->Action(name), &QAction::triggered, this, [run] { run(); });
}

void winMain::ConnectRadioCommands()
{
    Map27Executive& executive = m_services.executive;
    OnCommand(
        QStringLiteral("miOpCon"),
        [this, &executive] {
            AskRadio(
                MainText::AskedOperatingCondition, [&executive] { executive.AskOperatingCondition(); });
        });
    OnCommand(
        QStringLiteral("miNetInfo"),
        [this, &executive] {
            AskRadio(
                MainText::AskedNetworkInfo, [&executive] { executive.AskNetworkInfo(); });
        });
    OnCommand(QStringLiteral("miNumInfo"), [this, &executive] {
        AskRadio(MainText::AskedNumbering, [&executive] { executive.AskNumbering(); });
    });
}

void winMain::ConnectMessagingCommands()
{
    struct CallRow {
        const char* name;
        SendPane::CallOptions options;
    };
    constexpr CallRow Calls[] = {
        {"miSendCall", {.emergency = false, .priority = false, .dialog = true}},
        {"miSendEmrgCall", {.emergency = true, .priority = false, .dialog = true}},
        {"miSendPriorCall", {.emergency = false, .priority = true, .dialog = true}},
        {"miSendBcast", {.emergency = false, .priority = false, .dialog = false}},
        {"miSendEmrgBcast", {.emergency = true, .priority = false, .dialog = false}},
        {"miSendPriorBcast", {.emergency = false, .priority = true, .dialog = false}},
    };
    for (const CallRow& call : Calls) {
        OnCommand(
            QLatin1String(call.name), [this, options = call.options] { picSend->PrepareCall(options); });
    }
    OnCommand(
        QStringLiteral("miSendStatus"), [this] { picSend->SelectType(SendPane::MessageType::Status); });
    OnCommand(QStringLiteral("miSendText"), [this] { picSend->SelectType(SendPane::MessageType::Text); });
}

void winMain::ConnectWindows()
{
    struct WindowRow {
        const char* command;
        void (IWindows::*open)(winMain&);
    };
    constexpr WindowRow Rows[] = {
        {"miNumberingDiag", &IWindows::OpenNumberingDiagnostics},
        {"miUserManager", &IWindows::OpenUserManager},
        {"miNumbering", &IWindows::OpenNumbering},
        {"miSelectNumbering", &IWindows::OpenNumberingSelection},
        {"miAddressDir", &IWindows::OpenAddressDirectory},
        {"miEditStati", &IWindows::OpenStatusEditor},
        {"miHelpTopix", &IWindows::OpenHelp},
        {"miAbout", &IWindows::OpenAbout},
    };
    if (m_services.windows == nullptr)
        return;
    for (const WindowRow& row : Rows) {
        OnCommand(
            QLatin1String(row.command), [this, open = row.open] { (m_services.windows->*open)(*this); });
    }
}

void winMain::RunToolButton(const QString& key)
{
    if (key == QLatin1String("fullscreen"))
        SetFullScreen(tbMain->IsPressed(key));
    else if (key == QLatin1String("session"))
        m_logon.Run();
    else if (key == QLatin1String("disconnect"))
        ResetRadioLink();
    else if (key == QLatin1String("addressdir"))
        m_menu->Action(QStringLiteral("miAddressDir")).trigger();
    else
        RunRegroupingCommand(key);
}

void winMain::RunPanelCommand(const QString& panel)
{
    if (!m_session.LoggedOn)
        return;
    if (panel == QLatin1String("opcon") || panel == QLatin1String("field")) {
        m_menu->Action(QStringLiteral("miOpCon")).trigger();
    } else if (panel == QLatin1String("callsign") || panel == QLatin1String("ident")) {
        m_menu->Action(QStringLiteral("miNumInfo")).trigger();
        m_menu->Action(QStringLiteral("miNumberingDiag")).trigger();
    } else if (panel == QLatin1String("version")) {
        m_menu->Action(QStringLiteral("miAbout")).trigger();
    }
}

void winMain::ShowPanelMenu(const QString& panel, const QPoint& place)
{
    static const QStringList RadioPanels = {QStringLiteral("opcon"), QStringLiteral("field"),
                                            QStringLiteral("callsign"), QStringLiteral("ident")};
    if (panel == QLatin1String("version"))
        m_menu->PopUp(QStringLiteral("mbHelp"), place);
    else if (m_session.LoggedOn && RadioPanels.contains(panel))
        m_menu->PopUp(QStringLiteral("mbRadio"), place);
}

void winMain::AskRadio(int message, const std::function<void()>& ask)
{
    if (m_session.LoggedOn) {
        SbrMessage(Text(message));
        try {
            ask();
        } catch (const std::exception& failure) {
            m_services.executive.TellFailure(failure);
        }
    }
}

void winMain::ResetRadioLink()
{
    try {
        m_services.executive.ResetTran();
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
    }
}

void winMain::ToggleLogDataView()
{
    Attempt([this] {
        const QString view = m_services.settings.LogView();
        if (view == QLatin1String("text"))
            picLog->SetLogDataView(QStringLiteral("hex"));
        else if (view == QLatin1String("hex"))
            picLog->SetLogDataView(QStringLiteral("text"));
    });
}

void winMain::ShowLogDataViewCaption(const QString& view)
{
    QAction& item = m_menu->Action(QStringLiteral("miLogDataView"));
    if (view == QLatin1String("hex"))
        item.setText(Text(MainText::ShowAsText));
    else if (view == QLatin1String("text"))
        item.setText(Text(MainText::ShowAsHex));
}

void winMain::ShowEmergency(const QString& party, const QDateTime& time)
{
    m_strip->ShowEmergency(party, time);
    QApplication::alert(this);
}

void winMain::ConnectMissedCalls()
{
    connect(&m_services.executive, &Map27Executive::CallMissed, this,
            [this](const QString& party, const QDateTime& since) {
                m_missedCalls.Add(party, since);
                m_strip->ShowMissedCalls();
            });
    connect(m_strip, &LinkStrip::CallBackRequested, this, [this](const QString& party) {
        picSend->SetAddress(party);
        CallParty(true);
    });
}

// The setting may have been changed at another console: the mark is read each time the menu opens.
void winMain::ConnectCoverSetting()
{
    QAction& item = m_menu->Action(QStringLiteral("miCoverLists"));
    item.setCheckable(true);
    connect(
        &m_menu->Menu(QStringLiteral("mbAdmin")), &QMenu::aboutToShow, this,
        [this, &item] { item.setChecked(m_session.LoggedOn && CoversAfterLogoff(m_services.session)); });
    connect(&item, &QAction::triggered, this, [this, &item](bool on) {
        try {
            SetCoversAfterLogoff(m_services.session, on);
        } catch (const std::exception& failure) {
            item.setChecked(!on);
            m_services.prompt.ShowError(DescribeError(failure, m_services.strings));
        }
    });
}

void winMain::LogShowNewLine(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                             const QString& to)
{
    picLog->LogShowNewLine(time, type, desc, from, to);
}

void winMain::CheckDayChange(const QDateTime& time)
{
    picLog->CheckDayChange(time);
}

void winMain::SbrMessage(const QString& text)
{
    sbrStatus->SbrMessage(text);
}

void winMain::SbrMessageFirst(const QString& text)
{
    sbrStatus->SbrMessageFirst(text);
}

void winMain::ShowAnswer(const QString& text)
{
    sbrStatus->ShowAnswer(text);
}

void winMain::ForgetRadio()
{
    sbrStatus->ForgetOperatingConditions();
    sbrStatus->ForgetOwnAddress();
}

void winMain::CoverLists(bool on)
{
    picLog->Cover(on);
    picGroups->Cover(on);
    picIndividuals->Cover(on);
}

void winMain::ShowOperatingConditions(bool inService, int fieldStrength)
{
    sbrStatus->ShowOperatingConditions(inService, fieldStrength);
}

void winMain::ShowOwnAddress(const QString& callsign, const QString& ident)
{
    sbrStatus->ShowOwnAddress(callsign, ident);
}

void winMain::LoadStati()
{
    if (!m_session.LoggedOn)
        return;
    m_services.statusTexts.Clear();
    picSend->SetStati({});
    constexpr bool Quietly = false;
    Attempt([this] { picSend->SetStati(ReadStati(m_services.session, m_services.statusTexts)); }, Quietly);
}

void winMain::AllowCommand(const QString& command, bool allow)
{
    if (command == QLatin1String("regroup"))
        m_allowed.regroup = allow;
    else if (command == QLatin1String("ungroup"))
        m_allowed.ungroup = allow;
    else if (command == QLatin1String("sendname"))
        m_allowed.sendName = allow;
    SetCommandStates();
}

void winMain::PressSessionButton(bool pressed)
{
    tbMain->SetPressed(QStringLiteral("session"), pressed);
}

void winMain::SetSessionCaption(const QString& caption)
{
    m_menu->Action(QStringLiteral("miLogOnLogOff")).setText(caption);
    QToolButton* button = tbMain->Button(QStringLiteral("session"));
    const QString tip = QString(caption).remove(QLatin1Char('&'));
    button->setToolTip(tip);
    button->setAccessibleName(tip);
}

void winMain::SetNumberingCaption(const QString& caption)
{
    m_menu->Action(QStringLiteral("miNumbering")).setText(caption);
}

void winMain::LoadTalkgroupCaptions()
{
    picGroups->LoadRootCaptions();
}

void winMain::LoadLists()
{
    Attempt([this] { LoadStati(); });
    picGroups->Commands().ForgetOutcome();
    ReloadGrps();
    ReloadInds();
    picScada->ShowUnit();
}

void winMain::ForbidRegrouping()
{
    m_allowed.regroup = false;
    m_allowed.ungroup = false;
    m_allowed.sendName = false;
    SetCommandStates();
}

void winMain::SetCommandStates()
{
    CommandContext context = m_allowed;
    context.loggedOn = m_session.LoggedOn;
    context.administrator = m_session.Administrator;
    context.allowDynamicRegrouping = m_services.profile.AllowDynamicRegrouping();
    const auto states = CommandStates(context);
    for (auto state = states.begin(); state != states.end(); ++state) {
        if (m_menu->Contains(state.key())) {
            m_menu->SetState(state.key(), state->enabled, state->visible);
        } else if (auto* button = findChild<QAbstractButton*>(state.key())) {
            button->setEnabled(state->enabled);
            button->setVisible(state->visible);
        }
    }
}
