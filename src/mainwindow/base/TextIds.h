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
constexpr int CallBack = 5841;
constexpr int ScadaReported = 5870;
constexpr int ScadaNotReported = 5871;
constexpr int ScadaNoUnit = 5872;
constexpr int MayNotRegroup = 5850;
constexpr int WaitingEmergency = 6301;
constexpr int WaitingMissedCall = 6302;
constexpr int WaitingCallBack = 6303;
constexpr int WaitingFailed = 6304;
constexpr int WaitingLine = 6305;
constexpr int WaitingLineTimes = 6306;
constexpr int WaitingTaken = 6307;
constexpr int WaitingTakenAway = 6308;
constexpr int WaitingInAll = 6309;
constexpr int CountEmergencies = 6310;
constexpr int CountMissedCalls = 6311;
constexpr int CountCallBacks = 6312;
constexpr int CountFailed = 6313;
constexpr int CountTaken = 6314;
constexpr int WaitingTake = 6315;
constexpr int WaitingSilence = 6316;
constexpr int WaitingSendAgain = 6317;
constexpr int WaitingDone = 6318;
constexpr int WaitingShowList = 6319;
constexpr int WaitingHideList = 6320;
constexpr int WaitingKindColumn = 6321;
constexpr int WaitingWhoColumn = 6322;
constexpr int WaitingWhatColumn = 6323;
constexpr int WaitingSinceColumn = 6324;
constexpr int WaitingTimesColumn = 6325;
constexpr int WaitingTakenColumn = 6326;
constexpr int WaitingList = 6327;
constexpr int NoSoundOutput = 6328;
constexpr int HangUpRadio = 6008;
constexpr int FailedAndMore = 6009;
constexpr int EndsAfterCall = 6180;
constexpr int RecordsLeft = 6181;

// The messages of this shift.
constexpr int StateSending = 6400;
constexpr int StateWaiting = 6401;
constexpr int StateDelivered = 6402;
constexpr int StateGivenToMany = 6403;
constexpr int StateFailed = 6404;
constexpr int StateUnconfirmed = 6405;
constexpr int StateGivenUp = 6406;
constexpr int SentTime = 6407;
constexpr int SentTo = 6408;
constexpr int SentWhat = 6409;
constexpr int SentState = 6410;
constexpr int SentWhy = 6411;
constexpr int SentCaption = 6412;
constexpr int SendAgain = 6413;
constexpr int CloseSent = 6414;
constexpr int RepeatAtScada = 6415;
constexpr int SentReason = 6416;
constexpr int SentLine = 6417;

// Quick hands.
constexpr int CharactersLeft = 6430;
constexpr int CharactersTooMany = 6431;
constexpr int CharacterUnsendable = 6432;
constexpr int PartiesName = 6433;
constexpr int PartyLine = 6434;

constexpr int KeepFavourite = 6460;
constexpr int KeepText = 6461;
constexpr int FreePlace = 6462;
constexpr int FavouriteStatus = 6463;
constexpr int FavouriteCall = 6464;
constexpr int NoFavourite = 6465;
constexpr int NoQuickText = 6466;
constexpr int NoEmergencyFavourite = 6467;
constexpr int NoSuchFavourite = 6740;

// Guards of outstations.
constexpr int MarkCritical = 6440;
constexpr int OldAfter = 6441;
constexpr int OldNever = 6442;
constexpr int OldMinutes = 6443;
constexpr int OldHours = 6444;
constexpr int SwitchCriticalOn = 6445;
constexpr int SwitchCriticalOff = 6446;
constexpr int AllCriticalOn = 6447;
constexpr int AllCriticalOff = 6448;
constexpr int OldValue = 6449;
constexpr int CriticalControl = 6450;

} // namespace MainText
