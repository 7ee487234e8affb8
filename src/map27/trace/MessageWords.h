#pragma once

#include "map27/codec/Address.h"
#include "map27/codec/Direction.h"

#include <string>
#include <string_view>

namespace map27 {

// A network message in English words, for reports: "SEND STATUS to 2/31: 5". Texts stand as they are.
std::string MessageWords(OctetSpan message, Direction direction);

// "2/31", "PSTN 01223", "nobody".
std::string PartyWords(const Party& party);
// UTF-8 with control characters as "<1B>": what came over the air must not steer a terminal.
std::string WithoutControls(std::string_view text);

// What bits of facilities a, or of the codings octet, stand for: "voice, status".
std::string FacilityWords(std::uint8_t facilitiesA);
std::string CodingWords(std::uint8_t codings);
// "7-bit characters"; of a reserved one its number.
std::string CodingName(unsigned coding);
// "5 min", "no limit"
std::string CallTimeWords(std::uint8_t maxCallTimeCode);
// "numbering"; of an unknown one "question 85h"
std::string QuestionWords(std::uint8_t reason);

} // namespace map27
