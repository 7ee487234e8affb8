#pragma once

#include <QString>

// The program's own log file, for whoever looks after the console: what happened to link, database, accounts
// and settings, what went wrong, and when. It is opened once by the application. Four older generations are
// kept, ".1" being the youngest, and none grows past a megabyte. A second console of the same user has files
// of its own, "-2". Writing never fails visibly: what cannot be written goes to standard error.
namespace ProgramLog {

inline constexpr int OlderFiles = 4;
inline constexpr qint64 LargestFile = qint64{1024} * 1024; // octets

// Folder of the file; without a call, nothing is written.
void Open(const QString& folder);
QString FileName();
// Neither texts of messages nor passwords belong here.
void Write(const QString& text);

} // namespace ProgramLog
