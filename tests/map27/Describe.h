#pragma once

#include "map27/codec/Messages.h"

#include <map>
#include <string>

// Every field of a message under the name that the golden file gives it.
using Fields = std::map<std::string, std::string>;
Fields Describe(const map27::ToRadio& message);
Fields Describe(const map27::FromRadio& message);
