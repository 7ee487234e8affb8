#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <string>

// The whole file. Raises Error that names it when it cannot be read or is larger than 16 MiB, as a
// device that never ends would be.
QByteArray ReadInputFile(const QString& path);

// The next line of standard input without its end; nothing at the end of the input. Raises Error when it is
// longer than anything a command takes.
std::optional<std::string> ReadInputLine();
