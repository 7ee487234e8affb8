#pragma once

// Catalogue ids of the diagnostics and the support report.
namespace HealthText {

constexpr int Caption = 6865;
constexpr int Item = 6866;
constexpr int Value = 6867;
constexpr int SaveReport = 6868;
constexpr int WithTexts = 6869;
constexpr int Copy = 6870;
constexpr int Close = 6871;
constexpr int Saved = 6872;
constexpr int NotSaved = 6873;
constexpr int Saving = 6874;
constexpr int ReportFilter = 6875;

constexpr int Radio = 6880;
constexpr int Link = 6881;
constexpr int Since = 6882;
constexpr int Frames = 6883;
constexpr int FramesOf = 6884;
constexpr int Damaged = 6885;
constexpr int DamagedOf = 6886;
constexpr int LastHeard = 6887;
constexpr int Port = 6888;
constexpr int PortOf = 6889;
constexpr int Adapter = 6890;
constexpr int NoAdapter = 6891;
constexpr int Closed = 6892;
constexpr int Connecting = 6893;
constexpr int Ready = 6894;
constexpr int Silent = 6895;
constexpr int Lost = 6896;

constexpr int Database = 6897;
constexpr int Engine = 6898;
constexpr int Files = 6899;
constexpr int Server = 6900;
constexpr int Target = 6901;
constexpr int Size = 6902;
constexpr int LastBackup = 6903;
constexpr int NoBackup = 6904;
constexpr int BackupIn = 6905;
constexpr int NoBackupFolder = 6906;
constexpr int Waiting = 6907;
constexpr int MayBackUp = 6908;
constexpr int Yes = 6909;
constexpr int No = 6910;
constexpr int Operator = 6911;
constexpr int Nobody = 6912;

constexpr int Computer = 6913;
constexpr int DatabaseDisk = 6914;
constexpr int StateDisk = 6915;
constexpr int FreeOf = 6916;
constexpr int Sound = 6917;
constexpr int NoSound = 6918;
constexpr int Versions = 6919;
constexpr int Unknown = 6920;
constexpr int NoAnswer = 6921;
constexpr int Never = 6922;

} // namespace HealthText
