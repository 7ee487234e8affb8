#pragma once

#include <QString>

// Standard output and standard error, a line at a time, in UTF-8.
namespace Console {

void Print(const QString& line);
void PrintError(const QString& line);

// Flushes what was printed. Raises Error when it cannot be written.
void Flush();

} // namespace Console
