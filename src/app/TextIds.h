#pragma once

// Catalogue ids of the application and of what the guided tour looks for.
namespace AppText {

constexpr int AlreadyRunning = 2057;
constexpr int StartFailed = 2058;

constexpr int NumberingNotConfigured = 204;
constexpr int NumberingQuestion = 1000;
constexpr int LogonAgain = 2000;
constexpr int LogoutQuestion = 2027;
constexpr int NoDefaultGroup = 2038;
constexpr int LoggedOn = 2039;
constexpr int LoggedOff = 2051;
constexpr int Voice = 2075;
constexpr int PstnCall = 2077;
constexpr int ModelMissing = 2120;
constexpr int ModelExtraLarge = 4021;
constexpr int FleetDeleteQuestion = 2170;
constexpr int FleetNameMissing = 2171;
constexpr int FleetTypeMissing = 2172;
constexpr int FleetPrefixInvalid = 2173;
constexpr int FleetNumberInvalid = 2174;
constexpr int FleetSizeInvalid = 2175;
constexpr int FleetDigitsMissing = 2176;
constexpr int FindOutSize = 2179;
constexpr int Answer = 2191;
constexpr int EmergencyIn = 2197;
constexpr int Hungup = 2199;
constexpr int ConnectedTalk = 2200;
constexpr int SendingWait = 2201;
constexpr int MessageNotSent = 2202;
constexpr int RegroupingWait = 2203;
constexpr int RegroupingFailed = 2204;
constexpr int NetworkInfo = 2205;
constexpr int CallingWait = 2207;
constexpr int Transmitting = 2209;
constexpr int IncomingCall = 2211;
constexpr int PasswordChanged = 2231;
constexpr int CallsignRule = 2130;
constexpr int AddressInRegroup = 2153;
constexpr int DutyCodesMustDiffer = 2250;
constexpr int DeleteStatusQuestion = 2251;
constexpr int UserUpdated = 2260;
constexpr int DeleteUserQuestion = 2261;
constexpr int UserDeleted = 2262;
constexpr int UserAdded = 2266;
constexpr int ResetPasswordQuestion = 2267;
constexpr int PasswordReset = 2268;
constexpr int UnlogQuestion = 2269;
constexpr int UserUnlogged = 2270;
constexpr int PasswordsDiffer = 5259;
constexpr int FleetsOverlap = 5042;
constexpr int FleetEndsTooHigh = 5043;
constexpr int WrongPassword = 5114;
constexpr int FleetNameTaken = 5700;
constexpr int LinkLost = 5303;

} // namespace AppText
