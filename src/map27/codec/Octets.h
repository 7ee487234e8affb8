#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace map27 {

using Octets = std::vector<std::uint8_t>;
using OctetSpan = std::span<const std::uint8_t>;

// "80 02 00 1F" for traces and log files; separator 0 leaves the pairs together.
std::string ToHex(OctetSpan octets, char separator = ' ');

} // namespace map27
