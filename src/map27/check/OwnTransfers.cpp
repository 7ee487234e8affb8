#include "map27/check/OwnTransfers.h"

#include "map27/link/Framing.h"
#include "map27/link/LinkPackets.h"

namespace map27 {

void OwnTransfers::Take(const Octets& frame, std::uint8_t number, TimePoint now)
{
    if (frame != m_last)
        m_unconfirmed = now;
    m_last = frame;
    m_next = static_cast<std::uint8_t>(number + 1);
}

std::optional<Milliseconds> OwnTransfers::TakeAcknowledgement(std::uint8_t number, TimePoint at)
{
    if (!m_unconfirmed || number != m_next)
        return std::nullopt;
    const Milliseconds took = at - *m_unconfirmed;
    m_unconfirmed.reset();
    return took;
}

Octets OwnTransfers::Next(const Octets& message) const
{
    Octets body{packet::LinkTransfer, m_next, 1, 0};
    body.insert(body.end(), message.begin(), message.end());
    return body;
}

Octets OwnTransfers::WithFlagFcs(const Octets& message) const
{
    const auto isFlag = [](unsigned octet) {
        return octet == Syn || octet == Dle || octet == Stx || octet == Etx;
    };
    Octets body = Next(message);
    body.insert(body.end(), {0, 0});
    for (unsigned value = 0; value < 0x10000; ++value) {
        body[body.size() - 2] = static_cast<std::uint8_t>(value >> 8);
        body.back() = static_cast<std::uint8_t>(value & 0xFF);
        const Octets frame = EncodeFrame(body);
        if (isFlag(frame[frame.size() - 2]) && isFlag(frame.back()))
            return {body.begin() + packet::HeaderOctets, body.end()};
    }
    return message;
}

} // namespace map27
