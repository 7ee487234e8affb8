#pragma once

#include "mainwindow/base/SessionState.h"
#include "mainwindow/frame/MainTabs.h"
#include "mainwindow/frame/Services.h"
#include "mainwindow/frame/WindowPlacement.h"
#include "mainwindow/log/LogLineFormatter.h"
#include "mainwindow/log/LogReader.h"

#include <QMainWindow>
#include <functional>
#include <memory>

class AttentionPanel;
class CommandBars;
class DatabaseWatch;
class FramePanes;
class KeyBindings;
class LinkStrip;
class LogPane;
class LogonCommand;
class LogonView;
class MainCommands;
class SendPane;
class StartPanel;
class StatusBar;
struct LinkStatus;

// The dispatcher's working surface. It creates, places and connects its panes and decides nothing that they
// can decide themselves. Its constructor builds and loads it and raises whatever makes the window impossible;
// settings that cannot be read take their defaults and are named in a box once the window is seen.
//
// Closing it ends the session and emits Unloaded once; after that it uses no service any more.
class winMain : public QMainWindow {
    Q_OBJECT

public:
    // Its panes become the views of the radio link.
    explicit winMain(const Services& services);
    ~winMain() override;

    bool LoggedOn() const { return m_session.LoggedOn; }

    // Read the status messages, the talkgroups and the individuals afresh. Do nothing while nobody is logged
    // on.
    void LoadStati();
    void ReloadGrps(const QString& lookfor = {});
    void ReloadInds(const QString& lookfor = {});

    void SetFullScreen(bool on);
    bool IsFullScreen() const { return m_placement.IsFullScreen(); }
    void SelectTab(MainTabs::Tab tab) { m_tabs->Select(tab); }

    // Closes the window without its question.
    void CloseUnasked();
    // The same for a system that is shutting down: whatever box or dialog is open, nothing is asked, and the
    // radio hangs up first. What cannot be stored is put right at this console's next logon.
    void EndAtOnce();
    // The first step of that, which waits for nothing.
    void HangUp();

Q_SIGNALS:
    // The window is gone and the session ended; the application shuts down.
    void Unloaded();

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void LeaveExecutive();
    void BuildFrame();
    void ConnectFrame();
    void ConnectServices();
    void Load();
    void RestoreWindowPlacement();
    void LogOnAtStart();
    void LoadKeys();
    void SetUp();

    void ConnectAttention();
    void ShowLink(const LinkStatus& status);

    bool AskExit();
    void Exit();
    void Unload();
    bool Attempt(const std::function<void()>& step, bool tell = true);
    QString Text(int id) const;

    Services m_services;
    SessionState m_session;
    LogLineFormatter m_logLines;
    LogReader m_logReader;
    WindowPlacement m_placement;
    AttentionPanel* m_attention = nullptr;
    LinkStrip* m_strip = nullptr;
    LogPane* picLog = nullptr;
    SendPane* picSend = nullptr;
    StatusBar* sbrStatus = nullptr;
    StartPanel* m_start = nullptr;
    std::unique_ptr<KeyBindings> m_keys;
    std::unique_ptr<CommandBars> m_bars;
    std::unique_ptr<MainTabs> m_tabs;
    std::unique_ptr<FramePanes> m_panes;
    std::unique_ptr<MainCommands> m_commands;
    std::unique_ptr<DatabaseWatch> m_watch;
    std::unique_ptr<LogonView> m_logonView;
    std::unique_ptr<LogonCommand> m_logon;

    bool m_radioWasReady = false;
    bool m_wasShown = false;
    bool m_logOnAtStart = false; // somebody has logged on here before
    QStringList m_startProblems; // named once the window is seen
    bool m_askingExit = false;
    bool m_exitDecided = false;
    bool m_unloaded = false;
};
