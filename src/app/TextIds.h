#pragma once

// Catalogue ids of the application.
namespace AppText {

constexpr int AlreadyRunning = 2057;
constexpr int StartFailed = 2058;

} // namespace AppText
