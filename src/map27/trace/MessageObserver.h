#pragma once

#include "map27/codec/Octets.h"
#include "map27/trace/Finding.h"

namespace map27 {

// What in one network message breaks MAP27 v1.5, section 5, or is worth a look.
Findings JudgeMessage(OctetSpan message, Direction direction);

} // namespace map27
