#pragma once

#include <cstddef>
#include <cstdint>

// Link packets, MAP27 v1.5, 4.3.2: four header octets, the first of which is the type.
namespace map27::packet {

constexpr std::uint8_t LinkRequest = 0x01;         // LR: N1, k, version
constexpr std::uint8_t LinkAcknowledgement = 0x02; // LA: N(R), N(k), 0
constexpr std::uint8_t LinkTransfer = 0x04;        // LT: N(S), acknowledge at once, 0; then the message

constexpr std::size_t HeaderOctets = 4;
constexpr std::size_t FrameOverhead = 7; // flags and FCS
constexpr std::size_t AcknowledgementOctets = HeaderOctets + FrameOverhead;

// From one sequence number to another; they wrap around.
constexpr std::uint8_t Distance(std::uint8_t from, std::uint8_t to)
{
    return static_cast<std::uint8_t>(to - from);
}

} // namespace map27::packet
