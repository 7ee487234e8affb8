#pragma once

// Catalogue ids that the administration windows load themselves. Those of captions stand in the forms.
namespace AdminText {

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
constexpr int CallsignRule = 2130;
constexpr int UserNameMissing = 5602;
constexpr int PasswordMissing = 5258;
constexpr int PasswordsDiffer = 5259;
constexpr int OwnPassword = 5600;
constexpr int GroupMissing = 5601;

} // namespace AdminText
