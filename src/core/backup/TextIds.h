#pragma once

// Catalogue ids of the daily backup.
namespace BackupText {

constexpr int Failed = 6510;
constexpr int NoFolder = 6511;
constexpr int Hangs = 6512;

} // namespace BackupText
