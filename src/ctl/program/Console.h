#pragma once

#include <QString>

// Standard output and standard error, a line at a time, in UTF-8.
namespace Console {

void Print(const QString& line);
void PrintError(const QString& line);

// Sends what was printed on its way. Raises Error when it cannot be written.
void Flush();

} // namespace Console
