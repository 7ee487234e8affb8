#pragma once

// Catalogue ids of the daily backup.
namespace BackupText {

constexpr int Failed = 6510;
constexpr int NoFolder = 6511;
constexpr int Hangs = 6512;
// The window
constexpr int Caption = 6851;
constexpr int Folder = 6852;
constexpr int Pick = 6853;
constexpr int PickCaption = 6854;
constexpr int Newest = 6855;
constexpr int Days = 6856;
constexpr int Note = 6857;
constexpr int Save = 6858;
constexpr int Cancel = 6859;
constexpr int NotAbsolute = 6860;

} // namespace BackupText
