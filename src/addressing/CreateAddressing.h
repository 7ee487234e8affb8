#pragma once

#include "addressing/MptAddressing.h"

#include <memory>
#include <string_view>

// A converter for the numbering, "MPT1343" or "ACTIONET"; null for a code that is not known.
std::unique_ptr<MptAddressing> CreateAddressing(std::string_view numberingCode);
