#pragma once

#include "map27/codec/Messages.h"
#include "simulator/base/Fleet.h"

namespace sim {

// What the console sent, as in "status 5 to Unit20 (0/2)", "text \"HELLO\" to ..." or "emergency call to
// Group90 (0/7000)". Empty for everything but statuses, texts, calls, diversions and modem data.
std::string DescribeRequest(const map27::ToRadio& message, const Fleet& fleet);

} // namespace sim
