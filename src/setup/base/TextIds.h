#pragma once

// Catalogue ids of the assistant.
namespace SetUpText {

constexpr int Title = 6930;
constexpr int Back = 6931;
constexpr int Next = 6932;
constexpr int Finish = 6933;
constexpr int Cancel = 6934;
constexpr int Skip = 6935;

constexpr int LanguageTitle = 6936;
constexpr int LanguageAbout = 6937;
constexpr int LanguageOfSystem = 6938;
constexpr int Language = 6939;

constexpr int DatabaseTitle = 6940;
constexpr int DatabaseAbout = 6941;
constexpr int NewDatabase = 6942;
constexpr int ExistingDatabase = 6943;
constexpr int ServerDatabase = 6944;
constexpr int DatabaseFile = 6945;
constexpr int Choose = 6946;
constexpr int Server = 6947;
constexpr int ServerName = 6948;
constexpr int Certificate = 6949;
constexpr int CertificateAbout = 6950;
constexpr int TestServer = 6951;
constexpr int TestingServer = 6952;
constexpr int ServerAnswers = 6953;
constexpr int ServerSilent = 6954;
constexpr int StopTest = 6955;
constexpr int TestStopped = 6956;
constexpr int ServerMissing = 6957;
constexpr int ServerNameMissing = 6958;
constexpr int CertificateUnreadable = 6959;
constexpr int FileThere = 6960;
constexpr int NoFileThere = 6961;
constexpr int ChooseCertificate = 6962;
constexpr int ServerWrong = 6963;

constexpr int RadioTitle = 6965;
constexpr int RadioAbout = 6966;
constexpr int Port = 6967;
constexpr int Speed = 6968;
constexpr int TestRadio = 6969;
constexpr int LookAgain = 6970;
constexpr int TestingRadio = 6971;
constexpr int RadioAnswers = 6972;
constexpr int RadioSilent = 6973;
constexpr int NotPermitted = 6974;
constexpr int Copy = 6975;
constexpr int NoPorts = 6976;
constexpr int PortMissing = 6977;
constexpr int CommandName = 6978;

constexpr int NumberingTitle = 6980;
constexpr int NumberingAbout = 6981;
constexpr int Mpt1343 = 6982;
constexpr int Actionet = 6983;
constexpr int TakenFromRadio = 6984;
constexpr int NotFromRadio = 6985;
constexpr int Units = 6986;
constexpr int Groups = 6987;
constexpr int Prefix = 6988;
constexpr int FleetNumber = 6989;
constexpr int FleetSize = 6990;
constexpr int Example = 6991;
constexpr int NumberingElsewhere = 6992;
constexpr int ActionetLater = 6993;
constexpr int FieldOf = 6994;
constexpr int UnitsMissing = 6995;

constexpr int AdministratorTitle = 7000;
constexpr int AdministratorAbout = 7001;
constexpr int UserName = 7002;
constexpr int Password = 7003;
constexpr int Repeat = 7004;
constexpr int AccountsThere = 7005;
constexpr int SoundsTitle = 7006;
constexpr int SoundsAbout = 7007;
constexpr int Sounds = 7008;
constexpr int LastTitle = 7010;
constexpr int LastAbout = 7011;
constexpr int StartDemonstration = 7012;
constexpr int DemonstrationStarted = 7013;
constexpr int Working = 7014;
constexpr int NumberingNotStored = 7015;
constexpr int NoAdministrator = 7016;

} // namespace SetUpText
