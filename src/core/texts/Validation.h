#pragma once

#include <QString>

namespace dao {
struct AddressRecord;
}

// Whether the first character is a letter (any Unicode letter), or an ASCII digit.
bool IsLetter(const QString& text);
bool IsDigitText(const QString& text);

// A letter, then letters, digits, blanks and underscores; a callsign has at most 14 characters. The caller
// trims.
bool IsValidCallsign(const QString& text);
bool IsValidName(const QString& text);

// Catalogue id of the rule that callsign or name of a directory entry breaks; 0 when both may be stored.
int ProblemOfCallsign(const dao::AddressRecord& entry);
int ProblemOfName(const dao::AddressRecord& entry);
