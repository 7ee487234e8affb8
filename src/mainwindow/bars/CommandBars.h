#pragma once

#include "mainwindow/bars/MainMenu.h"

#include <QObject>
#include <functional>

class QWidget;
class UserProfile;
struct SessionState;
template <typename Key> class ToolBarOf;

// The menus and the toolbar of the main window: each command's function, and whether it is enabled and
// visible.
class CommandBars : public QObject {
    Q_OBJECT

public:
    // Becomes a child of the menu bar, but may be deleted before it. The toolbar becomes a child of `client`,
    // which also holds the buttons of the panes.
    CommandBars(QMenuBar& menuBar, QWidget& client, const IStringSource& strings, const SessionState& session,
                const UserProfile& profile);

    // What a command does, from the menu as well as from the toolbar.
    void On(MainCommand command, const std::function<void()>& run);
    // As if the item were chosen in the menu: nothing when it is disabled.
    void Trigger(MainCommand item) { m_menu.Action(item).trigger(); }

    MainMenu& Menu() { return m_menu; }
    QWidget& ToolBar() const;

    void PressSessionButton(bool pressed);
    // Of the item; the button's tip follows it.
    void SetSessionCaption(const QString& caption);
    void ShowFullScreen(bool on);

    // These also show the new states. AllowCommand takes "regroup", "ungroup" and "sendname" at once, as the
    // selection gives them.
    void AllowFullScreen(bool allowed);
    void AllowCommand(const RegroupingAllowed& allowed);
    void SetCommandStates();

private:
    void BuildToolBar();

    QWidget& m_client;
    const SessionState& m_session;
    const UserProfile& m_profile;
    MainMenu m_menu;
    ToolBarOf<MainCommand>* tbMain;
    std::map<MainCommand, std::function<void()>> m_runs;
    CommandContext m_allowed; // what window state and selection allow; the rest is filled in when it is used
};
