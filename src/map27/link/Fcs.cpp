#include "map27/link/Fcs.h"

#include <array>

namespace map27 {

namespace {

constexpr std::uint16_t ReflectedPolynomial = 0xA001;

constexpr std::array<std::uint16_t, 256> MakeTable()
{
    std::array<std::uint16_t, 256> table{};
    for (unsigned index = 0; index < table.size(); ++index) {
        unsigned value = index;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 1) != 0 ? (value >> 1) ^ ReflectedPolynomial : value >> 1;
        table[index] = static_cast<std::uint16_t>(value);
    }
    return table;
}

constexpr std::array<std::uint16_t, 256> Table = MakeTable();

} // namespace

void Fcs::Add(std::uint8_t octet)
{
    m_register = static_cast<std::uint16_t>((m_register >> 8) ^ Table[(m_register ^ octet) & 0xFF]);
}

void Fcs::Add(OctetSpan octets)
{
    for (const std::uint8_t octet : octets)
        Add(octet);
}

} // namespace map27
