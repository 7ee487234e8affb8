#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <string>

// The whole file. Raises Error that names it when it cannot be read or is larger than 16 MiB, which a device
// that never ends is, too.
QByteArray ReadInputFile(const QString& path);

// The next line of standard input without its end; none when there is no more. Raises Error when it is longer
// than anything a command takes.
std::optional<std::string> ReadInputLine();
