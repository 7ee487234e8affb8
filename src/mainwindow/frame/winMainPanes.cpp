// The tabs of the main window, and the commands that act on what is selected in them.

#include "mainwindow/frame/winMain.h"

#include "core/desktop/Prompt.h"
#include "core/eventlog/EventLog.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/session/UserProfile.h"
#include "mainwindow/bars/KeyedToolBar.h"
#include "mainwindow/bars/MainMenu.h"
#include "mainwindow/bars/StatusBar.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/frame/FrameKeys.h"
#include "mainwindow/frame/NumberingTables.h"
#include "mainwindow/frame/PaneSplitter.h"
#include "mainwindow/individuals/IndividualsModel.h"
#include "mainwindow/individuals/IndividualsPane.h"
#include "mainwindow/log/LogPane.h"
#include "mainwindow/scada/ScadaPane.h"
#include "mainwindow/send/SendPane.h"
#include "mainwindow/send/StatusList.h"
#include "mainwindow/strip/LinkStrip.h"
#include "mainwindow/talkgroups/GroupsPane.h"
#include "mainwindow/talkgroups/NodeKeys.h"
#include "mainwindow/talkgroups/TalkgroupModel.h"
#include "radio/facade/Map27Executive.h"

#include <QAction>
#include <QTabBar>

void winMain::BuildTabs()
{
    tsMain = new QTabBar(m_client);
    tsMain->setObjectName(QStringLiteral("tsMain"));
    tsMain->setDrawBase(true);
    tsMain->setExpanding(false);
    const auto addTab = [this](int textId, const char* key) {
        const int index = tsMain->addTab(Text(textId));
        tsMain->setTabData(index, QLatin1String(key));
    };
    addTab(MainText::TalkgroupsTab, "talkgroups");
    addTab(MainText::IndividualsTab, "individuals");
    addTab(MainText::ScadaTab, "scada");

    const Services& s = m_services;
    picGroups =
        new GroupsPane({s.strings, s.prompt, s.executive, s.settings, s.session}, m_session, m_client);
    picIndividuals = new IndividualsPane({s.strings, s.prompt, s.settings, s.session, m_session}, m_client);
    picScada = new ScadaPane({s.strings, s.prompt, s.settings, s.executive, m_session}, m_client);
    ShowTab(0);
}

void winMain::ConnectPanes()
{
    connect(tbMain, &KeyedToolBar::ButtonClicked, this, &winMain::RunToolButton);
    connect(m_strip, &LinkStrip::ContentChanged, this, &winMain::LayoutPanes);
    connect(tsMain, &QTabBar::currentChanged, this, &winMain::ShowTab);
    connect(tsMain, &QTabBar::currentChanged, this, &winMain::LayoutPanes);
    connect(picHPaneResize, &PaneSplitter::Dropped, this, &winMain::StoreLogWidth);
    ConnectDirectoryPanes();

    connect(picLog, &LogPane::AddressesChosen, picSend, &SendPane::SetAddress);
    connect(
        picLog, &LogPane::CallRequested, this, [this] { CallParty(picLog->SelectedTag().has_value()); });
    connect(picLog, &LogPane::MenuRequested, this,
            [this](const QPoint& place) { ShowMessagingMenu(picLog->SelectedTag().has_value(), place); });
    connect(picLog, &LogPane::DataViewChanged, this, &winMain::ShowLogDataViewCaption);

    connect(sbrStatus, &StatusBar::PanelDoubleClicked, this, &winMain::RunPanelCommand);
    connect(sbrStatus, &StatusBar::PanelMenuRequested, this, &winMain::ShowPanelMenu);

    auto* keys = new FrameKeys(*this);
    connect(keys, &FrameKeys::NextTab, this, &winMain::SelectNextTab);
    connect(keys, &FrameKeys::PreviousTab, this, &winMain::SelectPreviousTab);
    connect(keys, &FrameKeys::EncodingChosen, picSend, &SendPane::SelectEncoding);
}

void winMain::ConnectDirectoryPanes()
{
    picGroups->SetMayDrag([this] {
        return m_session.LoggedOn && (m_session.Administrator || m_services.profile.AllowDynamicRegrouping());
    });
    connect(picGroups, &GroupsPane::AddressChosen, picSend, &SendPane::SetAddress);
    connect(picGroups, &GroupsPane::AllowedChanged, this, &winMain::AllowBySelection);
    connect(
        picGroups, &GroupsPane::CallRequested, this,
        [this] { CallParty(IsRegroupTarget(picGroups->SelectedNode())); });
    connect(picGroups, &GroupsPane::MenuRequested, this, [this](const QPoint& place) {
        ShowMessagingMenu(IsRegroupTarget(picGroups->SelectedNode()), place);
    });

    connect(picIndividuals, &IndividualsPane::AddressesChosen, picSend, &SendPane::SetAddress);
    connect(picIndividuals, &IndividualsPane::AllowedChanged, this, &winMain::AllowBySelection);
    connect(
        picIndividuals, &IndividualsPane::CallRequested, this,
        [this] { CallParty(picIndividuals->SelectedItem().isValid()); });
    connect(picIndividuals, &IndividualsPane::MenuRequested, this, [this](const QPoint& place) {
        ShowMessagingMenu(picIndividuals->SelectedItem().isValid(), place);
    });

    connect(picSend, &SendPane::SearchRequested, this, &winMain::SearchAddress);
}

void winMain::ConnectRegroupingCommands()
{
    OnCommand(
        QStringLiteral("miDefDynamic"), [this] { SetDefaultGroup(); });
    OnCommand(
        QStringLiteral("miRegroup"), [this] { RunToolButton(QStringLiteral("regroup")); });
    OnCommand(
        QStringLiteral("miUngroup"), [this] { RunToolButton(QStringLiteral("ungroup")); });
    OnCommand(QStringLiteral("miSetGroupName"), [this] { RunToolButton(QStringLiteral("sendname")); });
}

QString winMain::SelectedTab() const
{
    return tsMain->tabData(tsMain->currentIndex()).toString();
}

void winMain::SelectTab(const QString& key)
{
    for (int index = 0; index < tsMain->count(); ++index)
        if (tsMain->tabData(index).toString() == key)
            tsMain->setCurrentIndex(index);
}

void winMain::SelectNextTab()
{
    tsMain->setCurrentIndex((tsMain->currentIndex() + 1) % tsMain->count());
}

void winMain::SelectPreviousTab()
{
    tsMain->setCurrentIndex((tsMain->currentIndex() + tsMain->count() - 1) % tsMain->count());
}

void winMain::ShowTab(int index)
{
    const QString key = tsMain->tabData(index).toString();
    picGroups->setVisible(key == QLatin1String("talkgroups"));
    picIndividuals->setVisible(key == QLatin1String("individuals"));
    picScada->setVisible(key == QLatin1String("scada"));
    if (m_session.LoggedOn) {
        AllowBySelection();
        picGroups->ShowSelection();
        picIndividuals->ShowSelection();
    }
}

void winMain::AllowBySelection()
{
    const QString tab = SelectedTab();
    RegroupingAllowed allowed;
    if (tab == QLatin1String("talkgroups"))
        allowed = picGroups->Allowed();
    else if (tab == QLatin1String("individuals"))
        allowed.regroup = picIndividuals->AllowsRegrouping();
    AllowCommand(QStringLiteral("regroup"), allowed.regroup);
    AllowCommand(QStringLiteral("sendname"), allowed.sendName);
    AllowCommand(QStringLiteral("ungroup"), allowed.ungroup);
}

void winMain::ReloadGrps(const QString& lookfor)
{
    picGroups->ReloadGrps(lookfor);
}

void winMain::ReloadInds(const QString& lookfor)
{
    picIndividuals->ReloadInds(lookfor);
}

// Of the shown directory pane; true when there is one.
bool winMain::ReloadTab(const QString& lookfor)
{
    const QString tab = SelectedTab();
    if (tab == QLatin1String("talkgroups"))
        ReloadGrps(lookfor);
    else if (tab == QLatin1String("individuals"))
        ReloadInds(lookfor);
    else
        return false;
    return true;
}

void winMain::SearchAddress(const QString& lookfor)
{
    if (m_session.LoggedOn && ReloadTab(lookfor))
        picSend->SetAddress({});
}

void winMain::RunRegroupingCommand(const QString& key)
{
    if (!m_session.LoggedOn)
        return;
    if (key == QLatin1String("refresh"))
        ReloadTab({});
    else if (key == QLatin1String("regroup"))
        RequestRegroup();
    else if (key == QLatin1String("ungroup"))
        picGroups->Commands().Ungroup(picGroups->SelectedNode());
    else if (key == QLatin1String("sendname"))
        picGroups->Commands().SendGroupName(picGroups->SelectedNode());
}

void winMain::RequestRegroup()
{
    RegroupCommands& commands = picGroups->Commands();
    if (commands.ShownDefaultGroup().isEmpty()) {
        m_services.prompt.ShowWarning(Text(MainText::NoDefaultGroup));
        SelectTab(QStringLiteral("talkgroups"));
        return;
    }
    const QString tab = SelectedTab();
    const QModelIndex item = picIndividuals->SelectedItem();
    const QModelIndex node = picGroups->SelectedNode();
    if (tab == QLatin1String("individuals") && item.isValid()) {
        commands.RegroupToDefault(item.data(IndividualsModel::TagRole).toString(),
                                  IndividualIdOf(item.data(IndividualsModel::KeyRole).toString()));
    } else if (tab == QLatin1String("talkgroups") && IsDynamicMemberNode(node)) {
        commands.RegroupToDefault(node.data(TalkgroupModel::TagRole).toString(),
                                  PartsOfMemberKey(node.data(TalkgroupModel::KeyRole).toString()).memberId);
    }
}

void winMain::SetDefaultGroup()
{
    if (SelectedTab() != QLatin1String("talkgroups")) {
        m_services.prompt.ShowWarning(Text(MainText::GoToTalkgroups));
        SelectTab(QStringLiteral("talkgroups"));
    } else if (!IsDynamicGroupNode(picGroups->SelectedNode())) {
        m_services.prompt.ShowWarning(Text(MainText::NotADynamicGroup));
    } else {
        Attempt([this] { picGroups->Commands().SetDefaultGroup(picGroups->SelectedNode()); });
    }
}

void winMain::CallParty(bool chosen)
{
    if (!m_session.LoggedOn || !chosen)
        return;
    m_menu->Action(QStringLiteral("miSendCall")).trigger();
    if (!picSend->Address().trimmed().isEmpty())
        picSend->Send();
}

void winMain::ShowMessagingMenu(bool chosen, const QPoint& place)
{
    if (m_session.LoggedOn && chosen)
        m_menu->PopUp(QStringLiteral("mbMessaging"), place, QStringLiteral("miSendCall"));
}

void winMain::ConnectDatabase()
{
    DatabaseChanges& changes = m_services.session.Changes();
    connect(&changes, &DatabaseChanges::Changed, this, &winMain::ReloadChanged);
    const auto show = [this, &changes] {
        const EventLog* log = m_services.eventLog;
        m_strip->ShowDatabase(changes.IsAway(), log != nullptr ? log->Waiting() : 0);
    };
    connect(&changes, &DatabaseChanges::AwayChanged, this, show);
    if (m_services.eventLog != nullptr)
        connect(m_services.eventLog, &EventLog::WaitingChanged, this, show);
}

// What another console has changed; an empty name: nobody knows what. The operator's selection and what is
// being typed stay. What could not be read is due again when the window is activated.
void winMain::ReloadChanged(const QString& table)
{
    if (!m_session.LoggedOn)
        return;
    const auto changed = [&](const char* name) { return table.isEmpty() || table == QLatin1String(name); };
    bool read = true;
    if (changed("address") || changed("dynamic_regroup"))
        read = Attempt([this] { picGroups->ReloadQuietly(); });
    if (changed("address") || changed("kyn_registry")) // which says whether the duty state counts
        read = Attempt([this] { picIndividuals->ReloadQuietly(); }) && read;
    if (changed("status")) {
        read = Attempt([this] {
                   picSend->ReplaceStati(ReadStati(m_services.session, m_services.statusTexts));
               }) &&
               read;
    }
    if (!read)
        m_services.session.Changes().KeepUnread(table);
    if (changed("fleet") || changed("kyn_registry"))
        ReloadNumbering();
}

// Reading it afresh drops the numbering in use when it fails, so it is read only when it has changed.
void winMain::ReloadNumbering()
{
    try {
        const QString tables = ReadNumberingTables(m_services.session);
        if (tables != m_numberingTables) {
            m_services.executive.LoadFleetData();
            m_numberingTables = tables;
        }
    } catch (const std::exception&) {
        // Not to be read, or nothing that numbers: what was in use stays, or the radio link tells what is
        // wrong.
    }
}
