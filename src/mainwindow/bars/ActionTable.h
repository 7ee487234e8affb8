#pragma once

#include "mainwindow/base/RegroupingAllowed.h"

#include <span>

// What a command needs to be enabled or visible.
enum class When {
    Always,
    LoggedOn,
    LoggedOff,
    Administrator, // implies logged on
    Regroup,       // logged on, permitted to regroup, and the selection allows the command
    Ungroup,
    SendName,
    NormalWindow, // neither minimised nor maximised
};

// The menus, and what can be chosen in them or in the toolbar. Some commands are only in one of the two.
enum class MainCommand {
    None,

    SystemMenu,
    LogOnLogOff,
    Settings,
    Password,
    Exit,

    RadioMenu,
    NumInfo,
    OpCon,
    NetInfo,
    NumberingDiag,

    MessagingMenu,
    SendCall,
    SendEmergencyCall,
    SendPriorityCall,
    SendBroadcast,
    SendEmergencyBroadcast,
    SendPriorityBroadcast,
    SendStatus,
    SendText,
    SentMessages,
    Favourites,
    QuickTexts,
    LastParties,

    RegroupingMenu,
    DefaultDynamic,
    Regroup,
    Ungroup,
    SendName,
    RegroupHistory,

    AdminMenu,
    UserManager,
    Numbering,
    SelectNumbering,
    AddressDir,
    EditStati,
    CoverLists,

    ViewMenu,
    FullScreen,
    LogDataView,
    LogWindow,
    ShiftReport,
    WhoIsWhere,

    HelpMenu,
    HelpTopics,
    About,
    Keys,
    Diagnostics,
    SetUp,

    Disconnect,
    Refresh,
};

// One command of the window: a menu, an item or a separator of the menu before it, a button of the toolbar,
// or one of a pane.
struct CommandRow {
    enum class Kind { Menu, Item, Separator, ToolButton, PaneButton };

    Kind kind;
    MainCommand command; // None for a separator and for a button of a pane, which runs its own command
    const char* name;    // objectName; empty for a separator
    int caption;         // catalogue id; 0 for a button with a picture
    int toolTip;         // catalogue id; 0 none
    When enabled;
    When visible;
};

// All commands, menus in the order of the menu bar, each followed by its items.
std::span<const CommandRow> ActionTable();

// What decides whether commands are enabled and visible.
struct CommandContext {
    bool loggedOn = false;
    bool administrator = false;
    bool mayRegroup = false;
    bool normalWindow = true;
    RegroupingAllowed selection; // of the pane shown
};

struct CommandState {
    bool enabled = false;
    bool visible = false;
};

CommandState StateOf(const CommandRow& row, const CommandContext& context);
