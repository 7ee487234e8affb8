#pragma once

// Catalogue ids of this library's sentences, 5100..5199.
namespace DaoText {

constexpr int NoSuchFile = 5100;
constexpr int FileExists = 5101;
constexpr int CannotCreate = 5102;
constexpr int NotADatabase = 5103;
constexpr int NotReadable = 5104;
constexpr int ReadOnly = 5105;
constexpr int Newer = 5106;
constexpr int Locked = 5107;
constexpr int Damaged = 5108;
constexpr int DiskFull = 5109;
constexpr int Replaced = 5930;
constexpr int WorkgroupMissing = 5110;
constexpr int WorkgroupMismatch = 5111;
constexpr int FilesOnly = 5112;
constexpr int MigrationFailed = 5113;
constexpr int WrongPassword = 5114;
constexpr int BadPassword = 5115;
constexpr int BadUserName = 5116;
constexpr int NoSuchUser = 5117;
constexpr int NoSuchGroup = 5118;
constexpr int UserExists = 5119;
constexpr int GroupExists = 5120;
constexpr int AlreadyMember = 5121;
constexpr int NotAMember = 5122;
constexpr int LastAdministrator = 5123;
constexpr int NotPermitted = 5124;
constexpr int NoSuchQuery = 5125;
constexpr int NoSuchParameter = 5126;
constexpr int MissingParameter = 5127;
constexpr int NoSuchTable = 5128;
constexpr int NoSuchField = 5129;
constexpr int NoSuchIndex = 5130;
constexpr int BadSeek = 5131;
constexpr int BadCriterion = 5132;
constexpr int NoCurrentRecord = 5133;
constexpr int NotEditing = 5134;
constexpr int RecordGone = 5135;
constexpr int DuplicateKey = 5136;
constexpr int BadValue = 5137;
constexpr int InUse = 5138;
constexpr int Refused = 5139;
constexpr int NotUpdatable = 5140;
constexpr int InTransaction = 5141;
constexpr int NoTransaction = 5142;
constexpr int Closed = 5143;
constexpr int Engine = 5144;
constexpr int DuplicateCallsign = 5145;
constexpr int DuplicateIdent = 5146;
constexpr int WrongUse = 5147;

constexpr int CheckDamage = 5160;
constexpr int CheckReference = 5161;
constexpr int CheckTableMissing = 5162;
constexpr int CheckIndexMissing = 5163;
constexpr int CheckQueryMissing = 5164;
constexpr int CheckQueryFails = 5165;
constexpr int CheckOlder = 5166;
constexpr int CheckNoAdministrator = 5167;
constexpr int CheckNoProfile = 5168;
constexpr int CheckNoAccount = 5169;
constexpr int CheckAppendable = 5170;

constexpr int RecordChanged = 5171;

constexpr int BadServerAddress = 5180;
constexpr int ServerAway = 5181;
constexpr int ServerRefused = 5182;
constexpr int ServerTrusts = 5183;
constexpr int Older = 5184;
constexpr int CheckFunctionMissing = 5185;
constexpr int CheckRoleMissing = 5186;
constexpr int CheckMembership = 5187;
constexpr int CheckServerOlder = 5188;
constexpr int BadDatabaseName = 5189;
constexpr int DatabaseExists = 5190;

constexpr int NoSuchSystemGroup = 5854;
constexpr int FolderNotShared = 5855;
constexpr int CheckOpenToAll = 5856;
constexpr int CheckHalfShared = 5857;
constexpr int CheckNotCounted = 5858;
constexpr int FolderOutOfReach = 5859;
constexpr int CheckFieldMissing = 5920;
constexpr int GivenUp = 5955;
constexpr int Busy = 5956;
constexpr int ServerAwayChangeSent = 5963;
constexpr int NotOwner = 6500;

} // namespace DaoText
