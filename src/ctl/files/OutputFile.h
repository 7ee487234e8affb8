#pragma once

#include <QString>

// Writes a new file in UTF-8, for its owner alone, completely or not at all. Raises Error that names it, also
// when it exists already.
void WriteNewFile(const QString& path, const QString& text);
