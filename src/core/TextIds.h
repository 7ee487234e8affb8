#pragma once

// Catalogue ids that this library's code loads. Those of captions stand in the forms.
namespace core {

constexpr int textUserProfileRetry = 2061;
constexpr int textCallsignRule = 2130;
constexpr int textNameRule = 2138;
constexpr int textPasswordsDiffer = 2230;
constexpr int textPasswordChanged = 2231;
constexpr int textSelectSerialPort = 2240;
constexpr int textSelectFile = 2241;
constexpr int textBaud1200 = 4165;
constexpr int textBaud9600 = 4166;
constexpr int textPortCom1 = 4167;
constexpr int textPortCom2 = 4168;
constexpr int textPortCom3 = 4169;
constexpr int textPortCom4 = 4170;

constexpr int textYes = 5200;
constexpr int textNo = 5201;
constexpr int textOk = 5202;
constexpr int textNoSuchText = 5203;

constexpr int textSettingsNotReadable = 5205;
constexpr int textSettingsNotWritable = 5206;
constexpr int textSettingsBadLine = 5207;
constexpr int textSettingsNotText = 5208;
constexpr int textSettingNotANumber = 5209;
constexpr int textSettingOutOfRange = 5210;
constexpr int textSettingNotBoolean = 5211;

constexpr int textNobodyLoggedOn = 5215;
constexpr int textLogonCancelled = 5216;
constexpr int textNoDatabaseFile = 5217;
constexpr int textNoWorkgroupFile = 5218;
constexpr int textNoFileChosen = 5219;
constexpr int textSelectDatabaseCaption = 5220;
constexpr int textSelectWorkgroupCaption = 5221;
constexpr int textNewDatabaseCaption = 5222;
constexpr int textDatabaseFiles = 5223;
constexpr int textWorkgroupFiles = 5224;
constexpr int textAllFiles = 5225;

constexpr int textLogonCaption = 5230;
constexpr int textUserNameMissing = 5236;
constexpr int textLogonPause = 5237;

constexpr int textDatabaseMissing = 5241;
constexpr int textDatabaseNotChosen = 5242;
constexpr int textCreateAndLogOn = 5251;
constexpr int textOpenExisting = 5252;
constexpr int textDatabasePathMissing = 5254;
constexpr int textWorkgroupPathMissing = 5255;
constexpr int textSameFile = 5256;
constexpr int textAdministratorMissing = 5257;
constexpr int textPasswordMissing = 5258;
constexpr int textPasswordRepeatDiffers = 5259;
constexpr int textFolderNotCreated = 5260;

constexpr int textPortWithDevice = 5265;
constexpr int textRecordsKept = 5285;
constexpr int textOldPasswordWrong = 5885;

} // namespace core
