#pragma once

#include <QString>

// The program's own log file, for whoever looks after the console: what went wrong and when. It is opened
// once by the application, keeps one older generation and never grows past a few megabytes. Writing never
// fails visibly.
namespace ProgramLog {

// Folder of the file; without a call, nothing is written.
void Open(const QString& folder);
QString FileName();
void Write(const QString& text);

} // namespace ProgramLog
