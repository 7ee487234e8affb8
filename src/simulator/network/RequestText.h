#pragma once

#include "map27/codec/Messages.h"
#include "simulator/base/Fleet.h"

namespace sim {

// "status 5 to Unit20 (0/2)", "text \"HELLO\" to ...", "emergency call to Group90 (0/7000)" of what the
// console sent; empty for everything that is
// no status, text, call, diversion or modem data.
std::string DescribeRequest(const map27::ToRadio& message, const Fleet& fleet);

} // namespace sim
