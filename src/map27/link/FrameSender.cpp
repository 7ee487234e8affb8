#include "map27/link/FrameSender.h"

#include "map27/link/Framing.h"

#include <algorithm>

namespace map27 {

void FrameSender::Send(const Octets& body, TimePoint now)
{
    ++m_count;
    m_frames.push_back(EncodeFrame(body));
    m_freeAt = std::max(m_freeAt, now) + LineTime(m_frames.back().size());
}

Milliseconds FrameSender::LineTime(std::size_t octets) const
{
    if (m_bitRate == 0)
        return Milliseconds(0);
    constexpr std::size_t bitsPerOctet = 10;
    return Milliseconds(octets * bitsPerOctet * 1000 / m_bitRate);
}

} // namespace map27
