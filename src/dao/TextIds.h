#pragma once

// Catalogue ids of this library's sentences, 5100..5199.
namespace dao {

constexpr int textNoSuchFile = 5100;
constexpr int textFileExists = 5101;
constexpr int textCannotCreate = 5102;
constexpr int textNotADatabase = 5103;
constexpr int textNotReadable = 5104;
constexpr int textReadOnly = 5105;
constexpr int textNewer = 5106;
constexpr int textLocked = 5107;
constexpr int textDamaged = 5108;
constexpr int textDiskFull = 5109;
constexpr int textWorkgroupMissing = 5110;
constexpr int textWorkgroupMismatch = 5111;
constexpr int textFilesOnly = 5112;
constexpr int textMigrationFailed = 5113;
constexpr int textWrongPassword = 5114;
constexpr int textBadPassword = 5115;
constexpr int textBadUserName = 5116;
constexpr int textNoSuchUser = 5117;
constexpr int textNoSuchGroup = 5118;
constexpr int textUserExists = 5119;
constexpr int textGroupExists = 5120;
constexpr int textAlreadyMember = 5121;
constexpr int textNotAMember = 5122;
constexpr int textLastAdministrator = 5123;
constexpr int textNotPermitted = 5124;
constexpr int textNoSuchQuery = 5125;
constexpr int textNoSuchParameter = 5126;
constexpr int textMissingParameter = 5127;
constexpr int textNoSuchTable = 5128;
constexpr int textNoSuchField = 5129;
constexpr int textNoSuchIndex = 5130;
constexpr int textBadSeek = 5131;
constexpr int textBadCriterion = 5132;
constexpr int textNoCurrentRecord = 5133;
constexpr int textNotEditing = 5134;
constexpr int textRecordGone = 5135;
constexpr int textDuplicateKey = 5136;
constexpr int textBadValue = 5137;
constexpr int textInUse = 5138;
constexpr int textRefused = 5139;
constexpr int textNotUpdatable = 5140;
constexpr int textInTransaction = 5141;
constexpr int textNoTransaction = 5142;
constexpr int textClosed = 5143;
constexpr int textEngine = 5144;
constexpr int textDuplicateCallsign = 5145;
constexpr int textDuplicateIdent = 5146;
constexpr int textWrongUse = 5147;

constexpr int textCheckDamage = 5160;
constexpr int textCheckReference = 5161;
constexpr int textCheckTableMissing = 5162;
constexpr int textCheckIndexMissing = 5163;
constexpr int textCheckQueryMissing = 5164;
constexpr int textCheckQueryFails = 5165;
constexpr int textCheckOlder = 5166;
constexpr int textCheckNoAdministrator = 5167;
constexpr int textCheckNoProfile = 5168;
constexpr int textCheckNoAccount = 5169;
constexpr int textCheckAppendable = 5170;

constexpr int textRecordChanged = 5171;

constexpr int textBadServerAddress = 5180;
constexpr int textServerAway = 5181;
constexpr int textServerRefused = 5182;
constexpr int textServerTrusts = 5183;
constexpr int textOlder = 5184;
constexpr int textCheckFunctionMissing = 5185;
constexpr int textCheckRoleMissing = 5186;
constexpr int textCheckMembership = 5187;
constexpr int textCheckServerOlder = 5188;
constexpr int textBadDatabaseName = 5189;
constexpr int textDatabaseExists = 5190;

constexpr int textNoSuchSystemGroup = 5854;
constexpr int textFolderNotShared = 5855;
constexpr int textCheckOpenToAll = 5856;
constexpr int textCheckHalfShared = 5857;
constexpr int textCheckNotCounted = 5858;
constexpr int textFolderOutOfReach = 5859;

} // namespace dao
