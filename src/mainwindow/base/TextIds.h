#pragma once

// Catalogue ids of the main window. Captions of menus and commands are in the action table beside their
// names.
namespace MainText {

constexpr int MultipleAddresses = 2001;
constexpr int AskedNetworkInfo = 2002;
constexpr int AskedNumbering = 2003;
constexpr int AskedOperatingCondition = 2028;
constexpr int ExitQuestion = 2020;
constexpr int StaticRoot = 2021;
constexpr int DynamicRoot = 2022;
constexpr int StaticGroupsUnread = 2023;
constexpr int DynamicGroupsUnread = 2024;
constexpr int NotADynamicGroup = 2025;
constexpr int GoToTalkgroups = 2026;
constexpr int LogoutQuestion = 2027;
constexpr int IndividualsUnread = 2029;
constexpr int NoDefaultGroup = 2038;
constexpr int LoggedOn = 2039;
constexpr int Minutes = 2048;
constexpr int Hours = 2049;
constexpr int Days = 2050;
constexpr int LoggedOff = 2051;
constexpr int Logon = 2052;
constexpr int Logout = 2053;
constexpr int LastUpdated = 2054;
constexpr int ShowAsText = 2055;
constexpr int ShowAsHex = 2056;

constexpr int VersionTip = 2013;
constexpr int OpConTip = 2014;
constexpr int FieldTip = 2015;
constexpr int CallsignTip = 2016;
constexpr int IdentTip = 2017;
constexpr int DateTip = 2018;
constexpr int TimeTip = 2019;

constexpr int WindowCaption = 4074;
constexpr int CallsignColumn = 4075;
constexpr int AddressColumn = 4076;
constexpr int NameColumn = 4077;
constexpr int AllOff = 4078;
constexpr int AllOn = 4079;
constexpr int QueryControls = 4080;
constexpr int QuerySensors = 4081;
constexpr int ScadaUnit = 4082;
constexpr int EmergencyTip = 4083;
constexpr int PriorityTip = 4084;
constexpr int DialogTip = 4085;
constexpr int SevenTip = 4086;
constexpr int EightTip = 4087;
constexpr int StatusTip = 4088;
constexpr int TextTip = 4089;
constexpr int CallTip = 4090;
constexpr int Search = 4091;
constexpr int Send = 4092;
constexpr int RefreshLogTip = 4093;
constexpr int ClearLogTip = 4094;
constexpr int LogFontTip = 4095;
constexpr int LogColumn = 4096;
constexpr int LogPeriod = 4097;
constexpr int SeeLast = 4098;
constexpr int TalkgroupsTab = 4099;
constexpr int IndividualsTab = 4100;
constexpr int ScadaTab = 4101;
constexpr int OptionsLabel = 4102;
constexpr int MessageLabel = 4103;
constexpr int ToLabel = 4104;

// Further texts.
constexpr int Simulation = 5400;
constexpr int EmergencyFrom = 5401;
constexpr int EmergencyFromAndMore = 5402;
constexpr int Dismiss = 5403;
constexpr int InService = 5410;
constexpr int OutOfService = 5411;
constexpr int ConditionUnknown = 5412;
constexpr int FieldStrength = 5413;
constexpr int MainToolBarName = 5420;
constexpr int MessageTypeName = 5421;
constexpr int EncodingName = 5422;
constexpr int CallOptionsName = 5423;
constexpr int LogToolBarName = 5424;
constexpr int LogTimeUnitName = 5425;
constexpr int SensorsName = 5427;
constexpr int ControlsName = 5428;
constexpr int AwaitsAnswer = 5430;
constexpr int OutcomeDone = 5431;
constexpr int OutcomeNotDone = 5432;
constexpr int DefaultGroup = 5433;
constexpr int StateOn = 5434;
constexpr int StateOff = 5435;
constexpr int StateUnknown = 5436;
constexpr int SensorState = 5437;
constexpr int ControlState = 5438;
constexpr int NoSuchPosition = 5441;
constexpr int DatabaseAway = 5480;
constexpr int RecordsWaiting = 5481;
constexpr int RecordNotStored = 5931;
constexpr int RecordsDelayed = 5933;
constexpr int NumberingDoubt = 5790;
constexpr int Covered = 5831;
constexpr int OldestShown = 5832;
constexpr int NewestShown = 5833;
constexpr int MoreThan = 5834;
constexpr int ShowNewest = 5835;
constexpr int RadiosCut = 5836;
constexpr int TalkgroupsCut = 5837;
constexpr int MissedCall = 5838;
constexpr int MissedCallsSince = 5839;
constexpr int MissedOthers = 5840;
constexpr int CallBack = 5841;
constexpr int ScadaReported = 5870;
constexpr int ScadaNotReported = 5871;
constexpr int ScadaNoUnit = 5872;
constexpr int MayNotRegroup = 5850;
constexpr int HangUpRadio = 6008;
constexpr int FailedAndMore = 6009;
constexpr int EndsAfterCall = 6180;
constexpr int RecordsLeft = 6181;

} // namespace MainText
