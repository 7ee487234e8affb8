#pragma once

#include "mainwindow/bars/ActionTable.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/frame/LogonCommand.h"
#include "mainwindow/frame/Services.h"
#include "mainwindow/frame/WindowPlacement.h"
#include "mainwindow/log/LogLineFormatter.h"
#include "mainwindow/log/LogReader.h"
#include "mainwindow/strip/MissedCalls.h"
#include "radio/agent/Views.h"

#include <QMainWindow>
#include <functional>
#include <memory>

class GroupsPane;
class IndividualsPane;
class KeyedToolBar;
class LinkStrip;
class LogPane;
class MainMenu;
class PaneSplitter;
class QTabBar;
class ScadaPane;
class SendPane;
class StatusBar;

// The dispatcher's working surface. It creates, places and connects its panes and decides nothing that they
// can decide themselves. Built and loaded by its constructor, which raises what makes the window impossible;
// settings that cannot be read are told in a box once it is seen, and their defaults taken.
//
// Closing it ends the session and emits Unloaded once; after that it uses no service any more.
class winMain : public QMainWindow, public ILogView, public IStatusView, private ILogonView {
    Q_OBJECT

public:
    // Becomes the log and status view of the radio link.
    explicit winMain(const Services& services);
    ~winMain() override;

    bool LoggedOn() const { return m_session.LoggedOn; }

    void LogShowNewLine(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                        const QString& to) override;
    void CheckDayChange(const QDateTime& time);
    void SbrMessage(const QString& text) override;
    void ShowAnswer(const QString& text) override;
    void ShowOperatingConditions(bool inService, int fieldStrength) override;
    void ShowOwnAddress(const QString& callsign, const QString& ident) override;

    // Read the status messages, the talkgroups and the individuals afresh. Do nothing while nobody is logged
    // on.
    void LoadStati();
    void ReloadGrps(const QString& lookfor = {});
    void ReloadInds(const QString& lookfor = {});
    // command: "regroup", "ungroup" or "sendname"; any other changes nothing.
    void AllowCommand(const QString& command, bool allow);

    void SetFullScreen(bool on);
    bool IsFullScreen() const { return m_placement.IsFullScreen(); }
    void SelectTab(const QString& key);
    void SelectNextTab();
    void SelectPreviousTab();

    // Closes the window without its question.
    void CloseUnasked();
    // The same for a system that is shutting down: whatever box or dialog stands open, nothing is asked, and
    // the radio hangs up first. What cannot be stored is put right at this console's next logon.
    void EndAtOnce();

Q_SIGNALS:
    // The window is gone and the session ended; the application shuts down.
    void Unloaded();

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildFrame();
    void BuildToolBar();
    void BuildTabs();
    void ConnectMenus();
    void ConnectPanes();
    void ConnectDirectoryPanes();
    void ConnectServices();
    void ConnectDatabase();
    void ReloadChanged(const QString& table);
    void ReloadNumbering();
    void Load();
    void RestoreWindowPlacement();
    void LogOnAtStart();
    void OnCommand(const QString& name, const std::function<void()>& run);
    void ConnectRadioCommands();
    void ConnectMessagingCommands();
    void ConnectRegroupingCommands();
    void ConnectWindows();

    void LayoutPanes();
    int LeastPaneHeight() const;
    void EnableFullScreen(bool enabled);
    void StoreLogWidth();
    void ShowTab(int index);
    QString SelectedTab() const;

    void RunToolButton(const QString& key);
    void RunPanelCommand(const QString& panel);
    void ShowPanelMenu(const QString& panel, const QPoint& place);
    void AskRadio(int message, const std::function<void()>& ask);
    void ResetRadioLink();
    void ToggleLogDataView();
    void ShowLogDataViewCaption(const QString& view);
    void CallParty(bool chosen);
    void ShowMessagingMenu(bool chosen, const QPoint& place);
    void AllowBySelection();
    bool ReloadTab(const QString& lookfor);
    void SearchAddress(const QString& lookfor);
    void RunRegroupingCommand(const QString& key);
    void RequestRegroup();
    void SetDefaultGroup();
    void ShowEmergency(const QString& party, const QDateTime& time);
    void ConnectMissedCalls();
    void ConnectCoverSetting();

    bool AskExit();
    void Exit();
    void Unload();
    bool Attempt(const std::function<void()>& step, bool tell = true);
    QString Text(int id) const;

    // ILogonView
    void PressSessionButton(bool pressed) override;
    void SetSessionCaption(const QString& caption) override;
    void SetNumberingCaption(const QString& caption) override;
    void LoadTalkgroupCaptions() override;
    void LoadLists() override;
    void SbrMessageFirst(const QString& text) override;
    void ForbidRegrouping() override;
    void ForgetRadio() override;
    void CoverLists(bool on) override;
    void SetCommandStates() override;

    Services m_services;
    SessionState m_session;
    CommandContext m_allowed; // what window state and selection allow; the rest is filled in when it is used
    MissedCalls m_missedCalls;
    LogLineFormatter m_logLines;
    LogReader m_logReader;
    WindowPlacement m_placement;
    LogonCommand m_logon;
    std::unique_ptr<MainMenu> m_menu;
    QString m_numberingTables; // as they were when the numbering was read last

    QWidget* m_client = nullptr; // everything below the menu bar
    KeyedToolBar* tbMain = nullptr;
    LinkStrip* m_strip = nullptr;
    QTabBar* tsMain = nullptr;
    GroupsPane* picGroups = nullptr;
    IndividualsPane* picIndividuals = nullptr;
    ScadaPane* picScada = nullptr;
    PaneSplitter* picHPaneResize = nullptr;
    LogPane* picLog = nullptr;
    SendPane* picSend = nullptr;
    StatusBar* sbrStatus = nullptr;

    double m_logWidth = 190;
    bool m_wasShown = false;
    bool m_logOnAtStart = false; // somebody has logged on here before
    QStringList m_startProblems; // told once the window is seen
    bool m_askingExit = false;
    bool m_exitDecided = false;
    bool m_unloaded = false;
};
