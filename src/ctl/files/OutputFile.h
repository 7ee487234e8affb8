#pragma once

#include <QString>

// Writes a file that must not be there yet, in UTF-8, for its owner alone; either all of it is there
// afterwards or nothing. Raises Error that names it.
void WriteNewFile(const QString& path, const QString& text);
