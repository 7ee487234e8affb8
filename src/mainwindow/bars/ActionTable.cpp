#include "mainwindow/bars/ActionTable.h"

#include "mainwindow/bars/CommandTextIds.h"

namespace {

using enum CommandRow::Kind;
using namespace CommandText;

constexpr CommandRow Rows[] = {
    {Menu, MainCommand::SystemMenu, "mbSystem", SystemMenu, 0, When::Always, When::Always},
    {Item, MainCommand::LogOnLogOff, "miLogOnLogOff", LogOnLogOff, 0, When::Always, When::Always},
    {Item, MainCommand::Settings, "miSettings", SettingsItem, 0, When::Always, When::Always},
    {Item, MainCommand::Password, "miPassword", Password, 0, When::LoggedOn, When::Always},
    {Item, MainCommand::Exit, "mbExit", Exit, 0, When::Always, When::Always},

    {Menu, MainCommand::RadioMenu, "mbRadio", RadioMenu, 0, When::LoggedOn, When::LoggedOn},
    {Item, MainCommand::NumInfo, "miNumInfo", NumInfo, 0, When::Always, When::Always},
    {Item, MainCommand::OpCon, "miOpCon", OpCon, 0, When::Always, When::Always},
    {Item, MainCommand::NetInfo, "miNetInfo", NetInfo, 0, When::Always, When::Always},
    {Separator, MainCommand::None, "", RadioSeparator, 0, When::Always, When::Always},
    {Item, MainCommand::NumberingDiag, "miNumberingDiag", NumberingDiag, 0, When::Always, When::Always},

    {Menu, MainCommand::MessagingMenu, "mbMessaging", MessagingMenu, 0, When::LoggedOn, When::LoggedOn},
    {Item, MainCommand::SendCall, "miSendCall", SendCall, 0, When::Always, When::Always},
    {Item, MainCommand::SendEmergencyCall, "miSendEmrgCall", SendEmergencyCall, 0, When::Always,
     When::Always},
    {Item, MainCommand::SendPriorityCall, "miSendPriorCall", SendPriorityCall, 0, When::Always, When::Always},
    {Separator, MainCommand::None, "", CallSeparator, 0, When::Always, When::Always},
    {Item, MainCommand::SendBroadcast, "miSendBcast", SendBroadcast, 0, When::Always, When::Always},
    {Item, MainCommand::SendEmergencyBroadcast, "miSendEmrgBcast", SendEmergencyBroadcast, 0, When::Always,
     When::Always},
    {Item, MainCommand::SendPriorityBroadcast, "miSendPriorBcast", SendPriorityBroadcast, 0, When::Always,
     When::Always},
    {Separator, MainCommand::None, "", BroadcastSeparator, 0, When::Always, When::Always},
    {Item, MainCommand::SendStatus, "miSendStatus", SendStatus, 0, When::Always, When::Always},
    {Item, MainCommand::SendText, "miSendText", SendText, 0, When::Always, When::Always},
    {Separator, MainCommand::None, "", SentSeparator, 0, When::Always, When::Always},
    {Item, MainCommand::SentMessages, "miSentMessages", SentMessages, 0, When::LoggedOn, When::Always},
    {Item, MainCommand::Favourites, "miFavourites", Favourites, 0, When::LoggedOn, When::Always},
    {Item, MainCommand::QuickTexts, "miQuickTexts", QuickTexts, 0, When::LoggedOn, When::Always},
    {Item, MainCommand::LastParties, "miLastParties", LastParties, 0, When::LoggedOn, When::Always},

    {Menu, MainCommand::RegroupingMenu, "mbDynReg", RegroupingMenu, 0, When::LoggedOn, When::LoggedOn},
    {Item, MainCommand::DefaultDynamic, "miDefDynamic", DefaultDynamic, 0, When::Always, When::Always},
    {Item, MainCommand::Regroup, "miRegroup", RegroupItem, 0, When::Regroup, When::Always},
    {Item, MainCommand::Ungroup, "miUngroup", UngroupItem, 0, When::Ungroup, When::Always},
    {Item, MainCommand::SendName, "miSetGroupName", SetGroupName, 0, When::SendName, When::Always},
    {Separator, MainCommand::None, "", RegroupSeparator, 0, When::Always, When::Always},
    {Item, MainCommand::RegroupHistory, "miRegroupHistory", RegroupHistory, 0, When::LoggedOn, When::Always},

    {Menu, MainCommand::AdminMenu, "mbAdmin", AdminMenu, 0, When::Administrator, When::Administrator},
    {Item, MainCommand::UserManager, "miUserManager", UserManager, 0, When::Always, When::Always},
    {Separator, MainCommand::None, "", UserSeparator, 0, When::Always, When::Always},
    {Item, MainCommand::Numbering, "miNumbering", Numbering, 0, When::Always, When::Always},
    {Item, MainCommand::SelectNumbering, "miSelectNumbering", SelectNumbering, 0, When::Always, When::Always},
    {Separator, MainCommand::None, "", NumberingSeparator, 0, When::Always, When::Always},
    {Item, MainCommand::AddressDir, "miAddressDir", AddressDir, 0, When::Always, When::Always},
    {Item, MainCommand::EditStati, "miEditStati", EditStati, 0, When::Always, When::Always},
    {Separator, MainCommand::None, "", CoverSeparator, 0, When::Always, When::Always},
    {Item, MainCommand::CoverLists, "miCoverLists", CoverLists, 0, When::Always, When::Always},

    {Menu, MainCommand::ViewMenu, "mbView", ViewMenu, 0, When::Always, When::Always},
    {Item, MainCommand::FullScreen, "miFullscreen", FullScreen, 0, When::NormalWindow, When::Always},
    {Item, MainCommand::LogDataView, "miLogDataView", LogDataView, 0, When::LoggedOn, When::LoggedOn},
    {Separator, MainCommand::None, "", LogSeparator, 0, When::Always, When::Always},
    {Item, MainCommand::LogWindow, "miLogWindow", LogWindow, 0, When::LoggedOn, When::Always},
    {Item, MainCommand::ShiftReport, "miShiftReport", ShiftReport, 0, When::LoggedOn, When::Always},
    {Item, MainCommand::WhoIsWhere, "miWhoIsWhere", WhoIsWhere, 0, When::LoggedOn, When::Always},

    {Menu, MainCommand::HelpMenu, "mbHelp", HelpMenu, 0, When::Always, When::Always},
    {Item, MainCommand::HelpTopics, "miHelpTopix", HelpTopics, 0, When::Always, When::Always},
    {Separator, MainCommand::None, "", HelpSeparator, 0, When::Always, When::Always},
    {Item, MainCommand::About, "miAbout", About, 0, When::Always, When::Always},
    {Separator, MainCommand::None, "", HelpSeparator, 0, When::Always, When::Always},
    {Item, MainCommand::Keys, "miKeys", Keys, 0, When::Always, When::Always},
    {Item, MainCommand::Diagnostics, "miDiagnostics", Diagnostics, 0, When::Always, When::Always},
    {Item, MainCommand::SetUp, "miSetUp", SetUp, 0, When::LoggedOff, When::Always},

    {ToolButton, MainCommand::FullScreen, "tbMain_fullscreen", 0, FullScreenTip, When::NormalWindow,
     When::Always},
    {ToolButton, MainCommand::LogOnLogOff, "tbMain_session", 0, 0, When::Always,
     When::Always}, // its tip is the caption of miLogOnLogOff
    {ToolButton, MainCommand::Disconnect, "tbMain_disconnect", 0, DisconnectTip, When::LoggedOn,
     When::Always},
    {ToolButton, MainCommand::Refresh, "tbMain_refresh", 0, RefreshTip, When::LoggedOn, When::Always},
    {ToolButton, MainCommand::Regroup, "tbMain_regroup", 0, RegroupTip, When::Regroup, When::Always},
    {ToolButton, MainCommand::Ungroup, "tbMain_ungroup", 0, UngroupTip, When::Ungroup, When::Always},
    {ToolButton, MainCommand::SendName, "tbMain_sendname", 0, SendNameTip, When::SendName, When::Always},
    {ToolButton, MainCommand::AddressDir, "tbMain_addressdir", 0, AddressDirTip, When::Administrator,
     When::Administrator},
    {PaneButton, MainCommand::None, "tbRefreshLog_refresh", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdSend", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdQrySensors", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdQryControls", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdALLON", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdALLOFF", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdSearchAddress", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdCallBack", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdTake", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdSilence", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdSendAgain", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdAttentionDone", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdDismissFailed", 0, 0, When::LoggedOn, When::Always},
    {PaneButton, MainCommand::None, "cmdHangUpRadio", 0, 0, When::LoggedOn, When::Always},
};

bool Holds(When when, const CommandContext& context)
{
    switch (when) {
    case When::Always:
        return true;
    case When::LoggedOn:
        return context.loggedOn;
    case When::LoggedOff:
        return !context.loggedOn;
    case When::Administrator:
        return context.loggedOn && context.administrator;
    case When::Regroup:
        return context.mayRegroup && context.selection.regroup;
    case When::Ungroup:
        return context.mayRegroup && context.selection.ungroup;
    case When::SendName:
        return context.mayRegroup && context.selection.sendName;
    case When::NormalWindow:
        return context.normalWindow;
    }
    return false;
}

} // namespace

std::span<const CommandRow> ActionTable()
{
    return Rows;
}

CommandState StateOf(const CommandRow& row, const CommandContext& context)
{
    return {Holds(row.enabled, context), Holds(row.visible, context)};
}
