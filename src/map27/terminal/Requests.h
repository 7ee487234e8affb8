#pragma once

#include "map27/terminal/TerminalEvents.h"

namespace map27 {

enum class Gateway { Pstn = 1, Pabx = 2 };

// What a person asks for, as the message that asks the radio for it, or why it cannot be one. What stands in
// the way at the moment is the terminal's to say.
using Request = std::variant<ToRadio, Refusal>;

Request StatusRequest(Address to, unsigned status);
Request TextRequest(Address to, std::string_view utf8, TextCoding coding);
// An SST with coding 8, at most 22 octets.
Request BinaryRequest(Address to, OctetSpan octets);

struct CallWishes {
    bool emergency;
    bool priority; // does not apply to an emergency call
    bool dialog;   // false: a one-way call, the called units may not answer
};
Request CallRequest(Address to, CallWishes wishes);
// `gateway`: a number of Gateway.
Request GatewayCallRequest(int gateway, std::string_view digits, CallWishes wishes);

} // namespace map27
