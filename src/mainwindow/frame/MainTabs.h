#pragma once

#include "mainwindow/base/RegroupingAllowed.h"

#include <QObject>

class GroupsPane;
class IndividualsPane;
class QPoint;
class QRect;
class QTabBar;
class QWidget;
class ScadaPane;
struct IPrompt;
struct IStringSource;
struct Services;
struct SessionState;

// The tabs of the main window, their three panes, of which one is shown, and the commands that act on what is
// selected in it.
class MainTabs : public QObject {
    Q_OBJECT

public:
    // In the order of the tabs.
    enum class Tab { Talkgroups, Individuals, Scada };

    // The tabs and panes become children of `client`.
    MainTabs(const Services& services, const SessionState& session, QWidget* client);

    GroupsPane& Groups() { return *picGroups; }
    IndividualsPane& Individuals() { return *picIndividuals; }
    ScadaPane& Scada() { return *picScada; }

    Tab Selected() const;
    void Select(Tab tab);
    void SelectNext() { Step(1); }
    void SelectPrevious() { Step(-1); }

    // Lengths are device-independent pixels.
    int RowHeight() const;
    void Place(const QRect& row, const QRect& pane);
    // What the shown pane needs, but at least the given height.
    int LeastPaneHeight(int least) const;

    RegroupingAllowed Allowed() const;
    // Read the shown pane afresh; true when it has read addresses. An empty text finds all.
    bool Reload(const QString& lookfor = {});
    // Covers the lists of addresses, or shows them again.
    void Cover(bool on);

    // The regrouping commands. A box says what they need when it is missing.
    void Regroup();
    void Ungroup();
    void SendGroupName();
    // The radio or dynamic group that is selected; 0 for none.
    struct RegroupParty {
        qint32 addressId = 0;
        QString callsign{};
    };
    RegroupParty SelectedRegroupParty() const;
    // Raises Error when it cannot be stored.
    void SetDefaultGroup();

Q_SIGNALS:
    // Another tab was selected.
    void TabChanged();
    void AddressesChosen(const QString& addresses);
    // What the selection allows may have changed.
    void AllowedChanged();
    // toParty: the selection is one that can be called.
    void CallRequested(bool toParty);
    void MenuRequested(bool toParty, const QPoint& place);

private:
    void BuildTabs();
    void ConnectPanes();
    void Step(int by);
    void ShowTab(int index);

    const SessionState& m_session;
    const IStringSource& m_strings;
    IPrompt& m_prompt;
    QTabBar* tsMain;
    GroupsPane* picGroups;
    IndividualsPane* picIndividuals;
    ScadaPane* picScada;
};
