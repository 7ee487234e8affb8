#include "mainwindow/frame/MainTabs.h"

#include "core/desktop/Prompt.h"
#include "core/session/UserProfile.h"
#include "core/texts/StringSource.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/frame/Services.h"
#include "mainwindow/individuals/IndividualsModel.h"
#include "mainwindow/individuals/IndividualsPane.h"
#include "mainwindow/scada/ScadaPane.h"
#include "mainwindow/talkgroups/GroupsPane.h"
#include "mainwindow/talkgroups/NodeKeys.h"
#include "mainwindow/talkgroups/TalkgroupModel.h"

#include <QTabBar>
#include <algorithm>

namespace {

struct TabRow {
    int caption;
    const char* name; // by which the guide finds the page of a tab
};

// In the order of MainTabs::Tab.
constexpr TabRow Tabs[] = {
    {MainText::TalkgroupsTab, "talkgroups"},
    {MainText::IndividualsTab, "individuals"},
    {MainText::ScadaTab, "scada"},
};

} // namespace

MainTabs::MainTabs(const Services& services, const SessionState& session, QWidget* client)
    : m_session(session),
      m_strings(services.strings),
      m_prompt(services.prompt),
      tsMain(new QTabBar(client))
{
    BuildTabs();
    const Services& s = services;
    picGroups = new GroupsPane({s.strings, s.prompt, s.executive, s.settings, s.session, s.eventLog, s.clock},
                               session, client);
    picIndividuals = new IndividualsPane({s.strings, s.prompt, s.settings, s.session, session}, client);
    picScada =
        new ScadaPane({s.strings, s.prompt, s.settings, s.executive, session, s.session, s.clock}, client);
    picGroups->SetMayDrag(
        [&session, &profile = s.profile] { return session.MayRegroup(profile.AllowDynamicRegrouping()); });
    ShowTab(tsMain->currentIndex());
    ConnectPanes();
}

void MainTabs::BuildTabs()
{
    tsMain->setObjectName(QStringLiteral("tsMain"));
    tsMain->setDrawBase(true);
    tsMain->setExpanding(false);
    for (const TabRow& tab : Tabs)
        tsMain->setTabData(tsMain->addTab(m_strings.LoadString(tab.caption)), QLatin1String(tab.name));
}

void MainTabs::ConnectPanes()
{
    connect(
        tsMain, &QTabBar::currentChanged, this,
        [this](int index) {
            ShowTab(index);
            Q_EMIT TabChanged();
        });

    const auto groupChosen = [this] { return IsRegroupTarget(picGroups->SelectedNode()); };
    connect(picGroups, &GroupsPane::AddressChosen, this, &MainTabs::AddressesChosen);
    connect(picGroups, &GroupsPane::AllowedChanged, this, &MainTabs::AllowedChanged);
    connect(
        picGroups, &GroupsPane::CallRequested, this,
        [this, groupChosen] { Q_EMIT CallRequested(groupChosen()); });
    connect(
        picGroups, &GroupsPane::MenuRequested, this,
        [this, groupChosen](const QPoint& place) { Q_EMIT MenuRequested(groupChosen(), place); });

    const auto radioChosen = [this] { return picIndividuals->SelectedItem().isValid(); };
    connect(picIndividuals, &IndividualsPane::AddressesChosen, this, &MainTabs::AddressesChosen);
    connect(picIndividuals, &IndividualsPane::AllowedChanged, this, &MainTabs::AllowedChanged);
    connect(
        picIndividuals, &IndividualsPane::CallRequested, this,
        [this, radioChosen] { Q_EMIT CallRequested(radioChosen()); });
    connect(picIndividuals, &IndividualsPane::MenuRequested, this,
            [this, radioChosen](const QPoint& place) { Q_EMIT MenuRequested(radioChosen(), place); });
}

MainTabs::Tab MainTabs::Selected() const
{
    return static_cast<Tab>(tsMain->currentIndex());
}

void MainTabs::Select(Tab tab)
{
    tsMain->setCurrentIndex(static_cast<int>(tab));
}

void MainTabs::Step(int by)
{
    tsMain->setCurrentIndex((tsMain->currentIndex() + tsMain->count() + by) % tsMain->count());
}

void MainTabs::ShowTab(int index)
{
    const Tab tab = static_cast<Tab>(index);
    picGroups->setVisible(tab == Tab::Talkgroups);
    picIndividuals->setVisible(tab == Tab::Individuals);
    picScada->setVisible(tab == Tab::Scada);
    if (m_session.LoggedOn) {
        Q_EMIT AllowedChanged();
        picGroups->ShowSelection();
        picIndividuals->ShowSelection();
    }
}

int MainTabs::RowHeight() const
{
    return tsMain->sizeHint().height();
}

void MainTabs::Place(const QRect& row, const QRect& pane)
{
    tsMain->setGeometry(row);
    picGroups->setGeometry(pane);
    picIndividuals->setGeometry(pane);
    picScada->setGeometry(pane);
}

int MainTabs::LeastPaneHeight(int least) const
{
    for (const QWidget* pane : std::initializer_list<const QWidget*>{picGroups, picIndividuals, picScada})
        if (!pane->isHidden())
            least = std::max(least, pane->minimumSizeHint().height());
    return least;
}

RegroupingAllowed MainTabs::Allowed() const
{
    switch (Selected()) {
    case Tab::Talkgroups:
        return picGroups->Allowed();
    case Tab::Individuals:
        return {.regroup = picIndividuals->AllowsRegrouping()};
    case Tab::Scada:
        break;
    }
    return {};
}

bool MainTabs::Reload(const QString& lookfor)
{
    switch (Selected()) {
    case Tab::Talkgroups:
        return picGroups->ReloadGrps(lookfor);
    case Tab::Individuals:
        return picIndividuals->ReloadInds(lookfor);
    case Tab::Scada:
        break;
    }
    return false;
}

void MainTabs::Cover(bool on)
{
    picGroups->Cover(on);
    picIndividuals->Cover(on);
}

void MainTabs::Regroup()
{
    RegroupCommands& commands = picGroups->Commands();
    if (commands.ShownDefaultGroup().isEmpty()) {
        m_prompt.ShowWarning(m_strings.LoadString(MainText::NoDefaultGroup));
        Select(Tab::Talkgroups);
        return;
    }
    const QModelIndex item = picIndividuals->SelectedItem();
    const QModelIndex node = picGroups->SelectedNode();
    if (Selected() == Tab::Individuals && item.isValid()) {
        commands.RegroupToDefault(item.data(IndividualsModel::TagRole).toString(),
                                  IndividualIdOf(item.data(IndividualsModel::KeyRole).toString()));
    } else if (Selected() == Tab::Talkgroups && IsDynamicMemberNode(node)) {
        commands.RegroupToDefault(node.data(TalkgroupModel::TagRole).toString(),
                                  PartsOfMemberKey(node.data(TalkgroupModel::KeyRole).toString()).memberId);
    }
}

void MainTabs::Ungroup()
{
    picGroups->Commands().Ungroup(picGroups->SelectedNode());
}

void MainTabs::SendGroupName()
{
    picGroups->Commands().SendGroupName(picGroups->SelectedNode());
}

MainTabs::RegroupParty MainTabs::SelectedRegroupParty() const
{
    const QModelIndex item = picIndividuals->SelectedItem();
    if (Selected() == Tab::Individuals && item.isValid())
        return {IndividualIdOf(item.data(IndividualsModel::KeyRole).toString()),
                item.data(IndividualsModel::TagRole).toString()};
    const QModelIndex node = picGroups->SelectedNode();
    if (Selected() != Tab::Talkgroups)
        return {};
    const QString key = node.data(TalkgroupModel::KeyRole).toString();
    const QString callsign = node.data(TalkgroupModel::TagRole).toString();
    if (IsDynamicMemberNode(node))
        return {PartsOfMemberKey(key).memberId, callsign};
    if (IsDynamicGroupNode(node))
        return {PartsOfGroupKey(key).groupId, callsign};
    return {};
}

void MainTabs::SetDefaultGroup()
{
    if (Selected() != Tab::Talkgroups) {
        m_prompt.ShowWarning(m_strings.LoadString(MainText::GoToTalkgroups));
        Select(Tab::Talkgroups);
    } else if (!IsDynamicGroupNode(picGroups->SelectedNode())) {
        m_prompt.ShowWarning(m_strings.LoadString(MainText::NotADynamicGroup));
    } else {
        picGroups->Commands().SetDefaultGroup(picGroups->SelectedNode());
    }
}
