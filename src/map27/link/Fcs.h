#pragma once

#include "map27/codec/Octets.h"

namespace map27 {

// Frame check sequence of MAP27 v1.5, 4.3.1.2: x16+x15+x2+1, preset to all ones, complemented, bits
// reflected. The low octet of the value goes on the line first. Covers the unstuffed body and the DLE ETX of
// the stop flag.
class Fcs {
public:
    void Add(std::uint8_t octet);
    void Add(OctetSpan octets);
    std::uint16_t Value() const { return static_cast<std::uint16_t>(~m_register); }

    // True when everything added, including the two received FCS octets, is undamaged.
    bool ResidueIsGood() const { return m_register == 0xB001; }

private:
    std::uint16_t m_register = 0xFFFF;
};

} // namespace map27
