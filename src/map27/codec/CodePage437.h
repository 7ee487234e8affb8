#pragma once

#include <cstdint>
#include <optional>

namespace map27 {

// Code page 437. 00h to 7Fh are ASCII: control codes stand for themselves, not for the symbols that some
// screens show for them.
char32_t FromCodePage437(std::uint8_t octet);
std::optional<std::uint8_t> ToCodePage437(char32_t character);

} // namespace map27
