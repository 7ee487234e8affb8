#pragma once

// Catalogue ids of the application.
namespace AppText {

constexpr int AlreadyRunning = 2057;
constexpr int StartFailed = 2058;
constexpr int DemonstrationAccounts = 7022;
constexpr int DemonstrationRadioMissing = 7023;
constexpr int DemonstrationNotStarted = 7024;

} // namespace AppText
