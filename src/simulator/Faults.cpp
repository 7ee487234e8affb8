#include "simulator/Faults.h"

namespace sim {

const char* FaultText(Fault fault)
{
    switch (fault) {
    case Fault::None:
        break;
    case Fault::BitErrors:
        return "bit errors";
    case Fault::Dropped:
        return "dropped";
    case Fault::Silent:
        return "silent";
    }
    return "";
}

Fault Faults::Strike(map27::Octets& frame)
{
    if (m_silent)
        return Fault::Silent;
    if (m_random.Chance(m_settings.dropFrames))
        return Fault::Dropped;
    if (m_settings.bitErrors <= 0)
        return Fault::None;
    const map27::Octets before = frame;
    for (std::uint8_t& octet : frame) {
        for (unsigned bit = 1; bit < 0x100; bit <<= 1) {
            if (m_random.Chance(m_settings.bitErrors))
                octet = static_cast<std::uint8_t>(octet ^ bit);
        }
    }
    return frame == before ? Fault::None : Fault::BitErrors;
}

} // namespace sim
