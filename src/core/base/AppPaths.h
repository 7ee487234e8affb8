#pragma once

#include <QString>

// Where the program keeps what belongs to the user. The folders need not exist; whoever
// writes there makes them for the user alone (dao::MakePrivateFolder).
namespace AppPaths {

inline constexpr auto Title = "VeltorKyn"; // of the application; names its folders too

QString DataFolder();          // databases and the log file, "~/.local/share/VeltorKyn"
QString DefaultSettingsFile(); // "~/.config/VeltorKyn/VeltorKyn.ini"

} // namespace AppPaths
