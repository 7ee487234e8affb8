#pragma once

#include "addressing/RadioAddress.h"

#include <string>
#include <string_view>

// What all numberings have in common: clean-up of a typed text, and the raw form.

// Dialled for everybody in the system; accepted under every numbering, never printed.
inline constexpr std::string_view EverybodyDial = "*1981";

RadioAddress SubscriberAddress(int prefix, int ident);
RadioAddress GatewayAddress(int prefix, int ident, std::string digits);

// The text without blanks, tabs, hyphens and one closing '#' (the send key). Throws when nothing is left.
std::string CleanDialText(std::string_view dial);

// The text without the slashes between digits, as in 201/2510/32.
std::string WithoutInnerSlashes(const std::string& cleaned);

bool IsRawForm(std::string_view cleaned);

// Raw form: '/', prefix (3 digits), ident (4 digits), and for a telephone number '*' and its digits.
RadioAddress ParseRaw(std::string_view cleaned);
std::string FormatRaw(const RadioAddress& address);
