#pragma once

#include <QString>

// Where the program keeps what belongs to the user, and finds what comes with it. The user's folders need not
// exist; whoever writes there makes them for the user alone (dao::MakePrivateFolder).
namespace AppPaths {

inline constexpr auto Title = "VeltorKyn"; // of the application; names its folders too

QString DataFolder();          // databases and records that wait, "~/.local/share/VeltorKyn"
QString StateFolder();         // the program's log and the trace of the line, "~/.local/state/VeltorKyn"
QString DefaultSettingsFile(); // "~/.config/VeltorKyn/VeltorKyn.ini"

// A file that comes with the programs: beside them, as the build leaves it, or else where the package puts
// it, in "../share/veltorkyn". Needs a QCoreApplication; the file need not exist.
QString OwnFile(const QString& name);

} // namespace AppPaths
