#include "mainwindow/bars/ActionTable.h"

#include "mainwindow/bars/CommandTextIds.h"

namespace {

using enum CommandRow::Kind;
using namespace CommandText;

constexpr CommandRow Rows[] = {
    {Menu, "mbSystem", SystemMenu, 0, When::Always, When::Always},
    {Item, "miLogOnLogOff", LogOnLogOff, 0, When::Always, When::Always},
    {Item, "miSettings", SettingsItem, 0, When::Always, When::Always},
    {Item, "miPassword", Password, 0, When::LoggedOn, When::Always},
    {Item, "mbExit", Exit, 0, When::Always, When::Always},

    {Menu, "mbRadio", RadioMenu, 0, When::LoggedOn, When::LoggedOn},
    {Item, "miNumInfo", NumInfo, 0, When::Always, When::Always},
    {Item, "miOpCon", OpCon, 0, When::Always, When::Always},
    {Item, "miNetInfo", NetInfo, 0, When::Always, When::Always},
    {Separator, "", RadioSeparator, 0, When::Always, When::Always},
    {Item, "miNumberingDiag", NumberingDiag, 0, When::Always, When::Always},

    {Menu, "mbMessaging", MessagingMenu, 0, When::LoggedOn, When::LoggedOn},
    {Item, "miSendCall", SendCall, 0, When::Always, When::Always},
    {Item, "miSendEmrgCall", SendEmergencyCall, 0, When::Always, When::Always},
    {Item, "miSendPriorCall", SendPriorityCall, 0, When::Always, When::Always},
    {Separator, "", CallSeparator, 0, When::Always, When::Always},
    {Item, "miSendBcast", SendBroadcast, 0, When::Always, When::Always},
    {Item, "miSendEmrgBcast", SendEmergencyBroadcast, 0, When::Always, When::Always},
    {Item, "miSendPriorBcast", SendPriorityBroadcast, 0, When::Always, When::Always},
    {Separator, "", BroadcastSeparator, 0, When::Always, When::Always},
    {Item, "miSendStatus", SendStatus, 0, When::Always, When::Always},
    {Item, "miSendText", SendText, 0, When::Always, When::Always},

    {Menu, "mbDynReg", RegroupingMenu, 0, When::LoggedOn, When::LoggedOn},
    {Item, "miDefDynamic", DefaultDynamic, 0, When::Always, When::Always},
    {Item, "miRegroup", RegroupItem, 0, When::Regroup, When::Always},
    {Item, "miUngroup", UngroupItem, 0, When::Ungroup, When::Always},
    {Item, "miSetGroupName", SetGroupName, 0, When::SendName, When::Always},

    {Menu, "mbAdmin", AdminMenu, 0, When::Administrator, When::Administrator},
    {Item, "miUserManager", UserManager, 0, When::Always, When::Always},
    {Separator, "", UserSeparator, 0, When::Always, When::Always},
    {Item, "miNumbering", Numbering, 0, When::Always, When::Always},
    {Item, "miSelectNumbering", SelectNumbering, 0, When::Always, When::Always},
    {Separator, "", NumberingSeparator, 0, When::Always, When::Always},
    {Item, "miAddressDir", AddressDir, 0, When::Always, When::Always},
    {Item, "miEditStati", EditStati, 0, When::Always, When::Always},
    {Separator, "", CoverSeparator, 0, When::Always, When::Always},
    {Item, "miCoverLists", CoverLists, 0, When::Always, When::Always},

    {Menu, "mbView", ViewMenu, 0, When::Always, When::Always},
    {Item, "miFullscreen", FullScreen, 0, When::NormalWindow, When::Always},
    {Item, "miLogDataView", LogDataView, 0, When::LoggedOn, When::LoggedOn},

    {Menu, "mbHelp", HelpMenu, 0, When::Always, When::Always},
    {Item, "miHelpTopix", HelpTopics, 0, When::Always, When::Always},
    {Separator, "", HelpSeparator, 0, When::Always, When::Always},
    {Item, "miAbout", About, 0, When::Always, When::Always},

    {Button, "tbMain_fullscreen", 0, FullScreenTip, When::NormalWindow, When::Always},
    {Button, "tbMain_session", 0, 0, When::Always, When::Always}, // its tip is the caption of miLogOnLogOff
    {Button, "tbMain_disconnect", 0, DisconnectTip, When::LoggedOn, When::Always},
    {Button, "tbMain_refresh", 0, RefreshTip, When::LoggedOn, When::Always},
    {Button, "tbMain_regroup", 0, RegroupTip, When::Regroup, When::Always},
    {Button, "tbMain_ungroup", 0, UngroupTip, When::Ungroup, When::Always},
    {Button, "tbMain_sendname", 0, SendNameTip, When::SendName, When::Always},
    {Button, "tbMain_addressdir", 0, AddressDirTip, When::Administrator, When::Administrator},
    {Button, "tbRefreshLog_refresh", 0, 0, When::LoggedOn, When::Always},
    {Button, "cmdSend", 0, 0, When::LoggedOn, When::Always},
    {Button, "cmdQrySensors", 0, 0, When::LoggedOn, When::Always},
    {Button, "cmdQryControls", 0, 0, When::LoggedOn, When::Always},
    {Button, "cmdALLON", 0, 0, When::LoggedOn, When::Always},
    {Button, "cmdALLOFF", 0, 0, When::LoggedOn, When::Always},
    {Button, "cmdSearchAddress", 0, 0, When::LoggedOn, When::Always},
    {Button, "cmdCallBack", 0, 0, When::LoggedOn, When::Always},
    {Button, "cmdDismissMissed", 0, 0, When::LoggedOn, When::Always},
    {Button, "cmdDismissEmergency", 0, 0, When::LoggedOn, When::Always},
};

bool Holds(When when, const CommandContext& context)
{
    const bool mayRegroup = context.loggedOn && (context.administrator || context.allowDynamicRegrouping);
    switch (when) {
    case When::Always:
        return true;
    case When::LoggedOn:
        return context.loggedOn;
    case When::Administrator:
        return context.loggedOn && context.administrator;
    case When::Regroup:
        return mayRegroup && context.regroup;
    case When::Ungroup:
        return mayRegroup && context.ungroup;
    case When::SendName:
        return mayRegroup && context.sendName;
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

QHash<QString, CommandState> CommandStates(const CommandContext& context)
{
    QHash<QString, CommandState> states;
    for (const CommandRow& row : Rows) {
        if (row.kind != CommandRow::Kind::Separator) {
            states.insert(QLatin1String(row.name),
                          {Holds(row.enabled, context), Holds(row.visible, context)});
        }
    }
    return states;
}
