#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace map27 {

constexpr char32_t ReplacementCharacter = 0xFFFD;

// Takes one character off the front of text. Empty, and text unchanged, when it does not begin with
// well-formed UTF-8 (overlong forms, surrogates and values above 10FFFFh are none). text must not be empty.
std::optional<char32_t> TakeUtf8(std::string_view& text);

void AppendUtf8(std::string& text, char32_t character);

} // namespace map27
