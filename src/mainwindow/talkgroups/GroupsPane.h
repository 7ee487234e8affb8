#pragma once

#include "mainwindow/talkgroups/NodeClass.h"
#include "mainwindow/talkgroups/RegroupCommands.h"
#include "mainwindow/talkgroups/TalkgroupLoader.h"
#include "radio/agent/Views.h"

#include <QTimer>
#include <QWidget>

class ListNotice;
class QLabel;
class TalkgroupModel;
class TalkgroupTree;
struct SessionState;

// "picGroups": the tree of static and dynamic talkgroups with the radios in them. Changes that come from the
// radio neither scroll it nor alter what the operator has selected.
class GroupsPane : public QWidget, public ITalkgroupView {
    Q_OBJECT

public:
    GroupsPane(const TalkgroupServices& services, const SessionState& session, QWidget* parent);

    // Captions of the roots.
    void LoadRootCaptions();
    // Reads the groups that match a search text; an empty one matches all. Does nothing while nobody is
    // logged on. Whether it has read; what was shown stays when the operator gives up.
    bool ReloadGrps(const QString& lookfor = {});
    // Rereads the same groups because another console changed them; selection and scroll position stay.
    // Raises Error and dao::Error; what could not be read then stays as it was.
    void ReloadQuietly() { Reload(true, m_lookfor, ReloadCause::OtherConsole); }
    // Asked before a member is dragged.
    void SetMayDrag(const std::function<bool()>& mayDrag);

    RegroupCommands& Commands() { return m_commands; }
    QModelIndex SelectedNode() const; // invalid when there is none
    RegroupingAllowed Allowed() const { return RegroupingAllowedFor(SelectedNode()); }
    void ShowSelection();
    // Covers the tree so that nobody can read it, or shows it again.
    void Cover(bool on);

    // From the radio; the reload follows from the event loop.
    void ReloadDynamicGroups(const QString& lookfor) override;
    bool StoreRegroup() override { return m_commands.StoreRegroup(); }
    bool StoreUngroup() override { return m_commands.StoreUngroup(); }
    void ReflectRegroup() override;
    void ReflectUngroup() override;
    void CancelRegroup() override { m_commands.CancelRegroup(); }
    void CancelUngroup() override { m_commands.CancelUngroup(); }

Q_SIGNALS:
    // The operator chose a node with a callsign; empty when the chosen node was deselected.
    void AddressChosen(const QString& callsign);
    // What the selection allows may have changed.
    void AllowedChanged();
    // Enter.
    void CallRequested();
    void MenuRequested(const QPoint& place);

private:
    void BuildTree();
    void TellSelection();
    void TellChosen();
    bool Reload(bool withStatic, const QString& lookfor, ReloadCause cause);
    void Load(bool withStatic, const QString& lookfor, ReloadCause cause);
    void UnfoldFilled(const std::function<bool(const QModelIndex&)>& wasFolded);
    void ScrollToLast();
    void SayCut();
    void KeepPlace(const std::function<void()>& change);

    TalkgroupServices m_services;
    const SessionState& m_session;
    TalkgroupModel* m_model;
    TalkgroupLoader m_loader;
    RegroupCommands m_commands;
    TalkgroupTree* tvGroups = nullptr;
    QLabel* m_cover;
    ListNotice* m_notice;            // that groups are left out past the limit
    bool m_changedByProgram = false; // the selection changes, but not by the operator
    QString m_lookfor;               // of the last reload of all groups
    bool m_reloading = false;        // it may wait, or a question about it may be open
    bool m_reloadMissed = false;     // the radio wanted one meanwhile
    QTimer m_markDue;                // of a regroup that is not on a disk yet
};
