#pragma once

#include "map27/trace/TraceEntry.h"

namespace map27 {

// What of a message or a trace can be given to others: addresses, statuses and causes stay, and what somebody
// has written or another protocol carries is zeros, as long as it was. A message that is not understood
// keeps its type only.
Octets WithoutText(Octets message, Direction direction);
// A frame that was right stays right, with a check sequence of its own. One that was damaged, and what came
// between frames, may be part of a text: of those only flags and length stay.
TraceEntry WithoutText(TraceEntry entry);

} // namespace map27
