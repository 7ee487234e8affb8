#pragma once

// Catalogue ids that this room's code loads. The forms hold those of their captions.
namespace CoreText {

constexpr int UserProfileRetry = 2061;
constexpr int CallsignRule = 2130;
constexpr int NameRule = 2138;
constexpr int PasswordsDiffer = 2230;
constexpr int PasswordChanged = 2231;
constexpr int SelectSerialPort = 2240;
constexpr int SelectFile = 2241;
constexpr int Baud1200 = 4165;
constexpr int Baud9600 = 4166;
constexpr int PortCom1 = 4167;
constexpr int PortCom2 = 4168;
constexpr int PortCom3 = 4169;
constexpr int PortCom4 = 4170;

constexpr int Yes = 5200;
constexpr int No = 5201;
constexpr int Ok = 5202;
constexpr int NoSuchText = 5203;

constexpr int SettingsNotReadable = 5205;
constexpr int SettingsNotWritable = 5206;
constexpr int SettingsBadLine = 5207;
constexpr int SettingsNotText = 5208;
constexpr int SettingNotANumber = 5209;
constexpr int SettingOutOfRange = 5210;
constexpr int SettingNotBoolean = 5211;

constexpr int NobodyLoggedOn = 5215;
constexpr int LogonCancelled = 5216;
constexpr int NoDatabaseFile = 5217;
constexpr int NoWorkgroupFile = 5218;
constexpr int NoFileChosen = 5219;
constexpr int SelectDatabaseCaption = 5220;
constexpr int SelectWorkgroupCaption = 5221;
constexpr int NewDatabaseCaption = 5222;
constexpr int DatabaseFiles = 5223;
constexpr int WorkgroupFiles = 5224;
constexpr int AllFiles = 5225;

constexpr int LogonCaption = 5230;
constexpr int UserNameMissing = 5236;
constexpr int LogonPause = 5237;

constexpr int DatabaseMissing = 5241;
constexpr int DatabaseNotChosen = 5242;
constexpr int CreateAndLogOn = 5251;
constexpr int OpenExisting = 5252;
constexpr int DatabasePathMissing = 5254;
constexpr int WorkgroupPathMissing = 5255;
constexpr int SameFile = 5256;
constexpr int AdministratorMissing = 5257;
constexpr int PasswordMissing = 5258;
constexpr int PasswordRepeatDiffers = 5259;
constexpr int FolderNotCreated = 5260;

constexpr int PortWithDevice = 5265;
constexpr int RecordsKept = 5285;
constexpr int OldPasswordWrong = 5885;
constexpr int RecordsInMemory = 5932;
constexpr int Migrating = 5921;
constexpr int EnteredNotRecorded = 5940;
constexpr int LeftNotRecorded = 5941;
constexpr int DissolvedNotRecorded = 5942;
constexpr int GroupChangedMeanwhile = 5943;
constexpr int NotInDirectory = 5944;
constexpr int MayNotRegroupNow = 5945;
constexpr int ServerChanged = 5970;
constexpr int OlderMissingFrom = 5971;
constexpr int OlderMissing = 5972;
constexpr int WaitCaption = 5957;
constexpr int WaitForAnswer = 5958;
constexpr int WaitForLock = 5959;
constexpr int WaitMayBeGivenUp = 5960;
constexpr int WaitMayNotBeGivenUp = 5961;
constexpr int GiveUpWaiting = 5962;
constexpr int RecordsLocked = 6182;
constexpr int TakenByAnother = 6300;
constexpr int SoundsCaption = 6340;
constexpr int SoundEmergency = 6341;
constexpr int SoundRinging = 6342;
constexpr int SoundRadioLost = 6343;
constexpr int SoundFailure = 6344;
constexpr int SoundStatus = 6345;
constexpr int SoundText = 6346;
constexpr int SoundTune = 6347;
constexpr int SoundTest = 6348;
constexpr int SoundsNote = 6349;
constexpr int SoundsNoOutput = 6350;
constexpr int SoundsSave = 6351;
constexpr int SoundsCancel = 6352;
constexpr int SoundOf = 6353;
constexpr int SoundTuneOf = 6354;
constexpr int SoundVolumeOf = 6355;
constexpr int SoundTestOf = 6356;
constexpr int TableFiles = 7218;
constexpr int SelectTableCaption = 7219;
constexpr int NewTableCaption = 7220;

} // namespace CoreText
