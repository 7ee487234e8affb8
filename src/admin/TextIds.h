#pragma once

// Catalogue ids that the administration windows load themselves. Those of captions are in the forms.
namespace AdminText {

// Address directory and editor
constexpr int DirectoryRetry = 2150;
constexpr int ConfirmEachQuestion = 2151;
constexpr int DeleteAddressQuestion = 2152;
constexpr int AddressInRegroup = 2153;
constexpr int AddIndividual = 2131;
constexpr int Add = 2132;
constexpr int AddTalkgroup = 2133;
constexpr int Update = 2134;
constexpr int EntryNotFound = 2135;
constexpr int EditIndividual = 2136;
constexpr int EditTalkgroup = 2137;
constexpr int FirstPosition = 4180; // the other positions follow
constexpr int EntryChangedMeanwhile = 5603;
constexpr int RegroupedMeanwhile = 5604;
constexpr int CharacterNotSendable = 5605;
constexpr int CallsignColumn = 4153;
constexpr int AddressColumn = 4154;

// About box
constexpr int AboutTitle = 2100;
constexpr int Version = 2101;
constexpr int Description = 2102;
constexpr int Licence = 2103;
constexpr int NoSystemInformation = 2104;
constexpr int SystemInformationFailed = 2105;
constexpr int Platform = 2106;

// Help
constexpr int HelpFile = 101;
constexpr int HelpCaption = 5620;
constexpr int HelpContents = 5621;
constexpr int HelpBack = 5622;
constexpr int HelpForward = 5623;
constexpr int HelpNotReadable = 5624;

// Status message editor
constexpr int DutyCodesMustDiffer = 2250;
constexpr int DeleteStatusQuestion = 2251;
constexpr int CodeColumn = 4067;
constexpr int IncomingColumn = 4068;
constexpr int OutgoingColumn = 4069;
constexpr int StatusChangedMeanwhile = 5606;

// User manager
constexpr int UsersGroup = 2256;
constexpr int UserUpdated = 2260;
constexpr int DeleteUserQuestion = 2261;
constexpr int UserDeleted = 2262;
constexpr int Yes = 2263;
constexpr int No = 2264;
constexpr int UsersFound = 2265;
constexpr int UserAdded = 2266;
constexpr int ResetPasswordQuestion = 2267;
constexpr int PasswordReset = 2268;
constexpr int UnlogQuestion = 2269;
constexpr int UserUnlogged = 2270;
constexpr int UserNameColumn = 4220;
constexpr int UserCallsignColumn = 4221;
constexpr int LoggedOnColumn = 4222;
constexpr int MemberOfColumn = 4223;
constexpr int RegroupingColumn = 4224;
constexpr int UserNameMissing = 5602;
constexpr int OwnPassword = 5600;
constexpr int GroupMissing = 5601;
constexpr int OwnAccount = 5851;

} // namespace AdminText
