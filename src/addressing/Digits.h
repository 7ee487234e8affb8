#pragma once

#include <string_view>

// Most digits of a telephone number behind a gateway, without the access digit 0 (MPT1327, extended
// addressing).
inline constexpr int MaxTelephoneDigits = 31;

bool IsDigit(char c);

// Throws unless every character is a digit.
void RequireNothingButDigits(std::string_view text);

// Likewise for a dialled text: a call modifier (* or #) as the first offender has an error of its own.
void RequireDigits(std::string_view text);

// Throws unless `digits`, already known to be digits, can be a telephone number without access digit.
void RequireTelephoneLength(std::string_view digits);

// A number of at most nine decimal digits.
int ParseDigits(std::string_view digits);
