#pragma once

#include <QString>

// Writes a new file in UTF-8, for its owner alone, completely or not at all. Raises Error that names it, also
// when it exists already, with the words `exists` then. May be called on any thread.
void WriteNewFile(const QString& path, const QString& text,
                  const QString& exists = QStringLiteral("the file exists already, nothing was overwritten"));
