#pragma once

#include <QString>

// Whether the first character is a letter (any Unicode letter), or an ASCII digit.
bool IsLetter(const QString& text);
bool IsDigitText(const QString& text);

// A letter, then letters, digits, blanks and underscores; a callsign has at most 14 characters. The caller
// trims.
bool IsValidCallsign(const QString& text);
bool IsValidName(const QString& text);
