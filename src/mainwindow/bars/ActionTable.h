#pragma once

#include <QHash>
#include <QString>
#include <span>

// What a command needs to be enabled or visible.
enum class When {
    Always,
    LoggedOn,
    Administrator, // implies logged on
    Regroup,       // logged on, permitted to regroup, and the selection allows the command
    Ungroup,
    SendName,
    NormalWindow, // neither minimised nor maximised
};

// One command of the window: a menu, an item or a separator of the menu before it, or a button.
struct CommandRow {
    enum class Kind { Menu, Item, Separator, Button };

    Kind kind;
    const char* name; // objectName; empty for a separator
    int caption;      // catalogue id; 0 for a button with a picture
    int toolTip;      // catalogue id; 0 none
    When enabled;
    When visible;
};

// All commands, menus in the order of the menu bar, each followed by its items.
std::span<const CommandRow> ActionTable();

// What the enabling of commands depends on.
struct CommandContext {
    bool loggedOn = false;
    bool administrator = false;
    bool allowDynamicRegrouping = false; // right of the operator's profile
    bool normalWindow = true;
    // What the selection of the shown pane allows.
    bool regroup = false;
    bool ungroup = false;
    bool sendName = false;
};

struct CommandState {
    bool enabled = false;
    bool visible = false;

    bool operator==(const CommandState&) const = default;
};

// State of every command of the action table, by name.
QHash<QString, CommandState> CommandStates(const CommandContext& context);
