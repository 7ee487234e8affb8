#pragma once

// Catalogue ids of menus, menu items and tool buttons. A caption "-" makes a separator.
namespace CommandText {

constexpr int SystemMenu = 4105;
constexpr int LogOnLogOff = 4106;
constexpr int SettingsItem = 4107;
constexpr int Password = 4108;
constexpr int Exit = 4109;
constexpr int RadioMenu = 4110;
constexpr int NumInfo = 4111;
constexpr int OpCon = 4112;
constexpr int NetInfo = 4113;
constexpr int RadioSeparator = 4114;
constexpr int NumberingDiag = 4115;
constexpr int MessagingMenu = 4116;
constexpr int SendCall = 4117;
constexpr int SendEmergencyCall = 4118;
constexpr int SendPriorityCall = 4119;
constexpr int CallSeparator = 4120;
constexpr int SendBroadcast = 4121;
constexpr int SendEmergencyBroadcast = 4122;
constexpr int SendPriorityBroadcast = 4123;
constexpr int BroadcastSeparator = 4124;
constexpr int SendStatus = 4125;
constexpr int SendText = 4126;
constexpr int RegroupingMenu = 4127;
constexpr int DefaultDynamic = 4128;
constexpr int RegroupItem = 4129;
constexpr int UngroupItem = 4130;
constexpr int SetGroupName = 4131;
constexpr int SentSeparator = 6418;
constexpr int SentMessages = 6419;
constexpr int Favourites = 6468;
constexpr int QuickTexts = 6469;
constexpr int LastParties = 6470;
constexpr int AdminMenu = 4132;
constexpr int UserManager = 4133;
constexpr int UserSeparator = 4134;
constexpr int Numbering = 4135;
constexpr int SelectNumbering = 4136;
constexpr int NumberingSeparator = 4137;
constexpr int AddressDir = 4138;
constexpr int EditStati = 4139;
constexpr int CoverSeparator = 5842;
constexpr int CoverLists = 5830;
constexpr int ViewMenu = 4140;
constexpr int FullScreen = 4141;
constexpr int LogDataView = 4142;
constexpr int LogSeparator = 6221;
constexpr int LogWindow = 6220;
constexpr int ShiftReport = 6650;
constexpr int WhoIsWhere = 6689;
constexpr int RegroupHistory = 6800;
constexpr int RegroupSeparator = 6801;
constexpr int HelpMenu = 4143;
constexpr int HelpTopics = 4144;
constexpr int HelpSeparator = 4145;
constexpr int About = 4146;
constexpr int Diagnostics = 6864;
constexpr int Keys = 6600;

constexpr int FullScreenTip = 2006;
constexpr int DisconnectTip = 2007;
constexpr int RefreshTip = 2008;
constexpr int RegroupTip = 2009;
constexpr int UngroupTip = 2010;
constexpr int SendNameTip = 2011;
constexpr int AddressDirTip = 2012;
constexpr int SetUp = 7021;

} // namespace CommandText
