#pragma once

#include "mainwindow/bars/ActionTable.h"
#include "mainwindow/bars/StatusBar.h"
#include "mainwindow/log/LogLineFormatter.h"

#include <QObject>
#include <functional>
#include <memory>

class AttentionPanel;
class CommandBars;
class KeyBindings;
class LinkStrip;
class LogPane;
class MainTabs;
class QDialog;
class SendPane;
class frmKeys;
class frmSentMessages;
class winMain;
struct Services;
struct SessionState;

// What the commands of menus, toolbar and status bar do, and what the panes ask of each other. Logging on and
// off, full screen and exit stay with the frame.
class MainCommands : public QObject {
    Q_OBJECT

public:
    // All must outlive the commands.
    struct Parts {
        winMain& window; // only handed on to the windows of other rooms
        const Services& services;
        const SessionState& session;
        CommandBars& bars;
        MainTabs& tabs;
        LogPane& log;
        SendPane& send;
        StatusBar& status;
        LinkStrip& strip;
        AttentionPanel& attention;
        KeyBindings& keys;
        // Runs a step that may raise, and tells the operator what went wrong; returns whether it succeeded.
        std::function<bool(const std::function<void()>& step)> attempt;
    };

    explicit MainCommands(const Parts& parts);
    ~MainCommands() override;

    // Closes the windows that are ours, and makes the settings and password dialogs children of the main
    // window no longer.
    void ReleaseDialogs();

private:
    void ConnectDialogs();
    void ConnectRadio();
    void ConnectMessaging();
    void ConnectRegrouping();
    void ConnectCoverSetting();
    void ConnectWindows();
    void ConnectPanes();
    void ConnectAttention();

    void WhenLoggedOn(MainCommand command, const std::function<void()>& run);
    void AskRadio(int message, const std::function<void()>& ask);
    void ShowBeside(QDialog& window);
    void ResetRadioLink();
    void RunPanelCommand(StatusBar::Part panel);
    void ShowPanelMenu(StatusBar::Part panel, const QPoint& place);
    void ShowDataViewCaption(LogDataView view);
    void CallParty(bool chosen);
    void ShowMessagingMenu(bool chosen, const QPoint& place);
    void SearchAddress(const QString& lookfor);
    QString Text(int id) const;

    Parts m_parts;
    std::unique_ptr<frmSentMessages> m_sent;
    std::unique_ptr<frmKeys> m_keySheet;
};
