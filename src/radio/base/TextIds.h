#pragma once

// Catalogue ids of the radio room.
namespace RadioText {

constexpr int NumberingUnexpectedEnd = 200;
constexpr int AnnNotConfigured = 202;
constexpr int FleetPlanNotConfigured = 203;
constexpr int NoAddressConversion = 205;

constexpr int StatusIn = 2059;
constexpr int StatusOut = 2060;
constexpr int DefaultAppName = 2062;
constexpr int DefaultPort = 2064;
constexpr int NotReadyForRegrouping = 2065;
constexpr int SendingRegroup = 2066;
constexpr int SendingGroupName = 2067;
constexpr int NotReadyForStatus = 2068;
constexpr int SendingStatus = 2069;
constexpr int NotReadyForText = 2070;
constexpr int SendingText = 2071;
constexpr int NotReadyForCall = 2072;
constexpr int OutgoingEmergencyCall = 2073;
constexpr int OutgoingCall = 2074;
constexpr int Voice = 2075;
constexpr int EmergencyOut = 2076;
constexpr int PstnCall = 2077;
constexpr int PabxCall = 2078;

constexpr int Cancel = 2190;
constexpr int Answer = 2191;
constexpr int Cleared = 2192;
constexpr int EmergencyIn = 2197;
constexpr int Hungup = 2199;
constexpr int ConnectedTalk = 2200;
constexpr int SendingWait = 2201;
constexpr int MessageNotSent = 2202;
constexpr int RegroupingWait = 2203;
constexpr int RegroupingFailed = 2204;
constexpr int NetworkInfo = 2205;
constexpr int Ready = 2206;
constexpr int CallingWait = 2207;
constexpr int CallFailed = 2208;
constexpr int Transmitting = 2209;
constexpr int TransmitReleased = 2210;
constexpr int IncomingCall = 2211;
constexpr int IncomingPstnCall = 2212;
constexpr int IncomingPabxCall = 2213;
constexpr int IncomingSysWideCall = 2214;

// Texts of our own.
constexpr int LinkConnecting = 5300;
constexpr int LinkLostSilent = 5301;
constexpr int LinkLostRestarted = 5302;
constexpr int LinkLostPort = 5303;
constexpr int LinkLostRetries = 5304;
constexpr int LinkOwes = 5306;
constexpr int LinkForeign = 5307;
constexpr int LinkNoise = 5308;
constexpr int LinkDamaged = 5309;
constexpr int PortAbsent = 5310;
constexpr int PortBusy = 5311;
constexpr int PortNotPermitted = 5312;
constexpr int PortHostUnknown = 5313;
constexpr int PortHostRefused = 5314;
constexpr int PortBadAddress = 5315;
constexpr int PortNoSerial = 5316;
constexpr int PortOther = 5317;
constexpr int PortHostSilent = 5318;
constexpr int PortBusyBy = 5319;
constexpr int LinkNotReady = 5320;
constexpr int RadioBusy = 5321;
constexpr int AddressNotSendable = 5322;
constexpr int StatusOutOfRange = 5323;
constexpr int TextEmpty = 5324;
constexpr int TextTooLong = 5325;
constexpr int TextCharacter = 5326;
constexpr int PhoneDigits = 5327;
constexpr int NoCall = 5328;
constexpr int NotConnected = 5329;
constexpr int NameTooLong = 5330;
constexpr int LinkEcho = 5331;
constexpr int AddressUnknown = 5332;
constexpr int PortLockLeft = 5873;
constexpr int OpeningGivenUp = 5900;
constexpr int KeyTip = 5810;
constexpr int CallKeys = 5811;

} // namespace RadioText
