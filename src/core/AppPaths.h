#pragma once

#include <QString>

// Where the program keeps what belongs to the user. The folders need not exist.
namespace AppPaths {

inline constexpr auto title = "VeltorKyn"; // of the application; names its folders too

QString DataFolder();          // databases and the log file, "~/.local/share/VeltorKyn"
QString DefaultSettingsFile(); // "~/.config/VeltorKyn/VeltorKyn.ini"

} // namespace AppPaths
