#include "map27/link/Framing.h"

#include "map27/link/Fcs.h"

#include <utility>

namespace map27 {

Octets EncodeFrame(OctetSpan body)
{
    Octets frame;
    frame.reserve(body.size() + 12);
    frame.insert(frame.end(), {Syn, Dle, Stx});
    Fcs fcs;
    for (const std::uint8_t octet : body) {
        if (octet == Dle)
            frame.push_back(Dle);
        frame.push_back(octet);
        fcs.Add(octet);
    }
    frame.insert(frame.end(), {Dle, Etx});
    fcs.Add(Dle);
    fcs.Add(Etx);
    frame.push_back(static_cast<std::uint8_t>(fcs.Value() & 0xFF));
    frame.push_back(static_cast<std::uint8_t>(fcs.Value() >> 8));
    return frame;
}

std::vector<Octets> FrameDecoder::Feed(OctetSpan octets)
{
    std::vector<Octets> bodies;
    for (const std::uint8_t octet : octets)
        if (auto body = Feed(octet))
            bodies.push_back(std::move(*body));
    return bodies;
}

std::optional<Octets> FrameDecoder::Feed(std::uint8_t octet)
{
    switch (m_state) {
    case State::Hunt:
    case State::AfterSyn:
    case State::AfterSynDle:
        Hunt(octet);
        break;
    case State::Body:
        if (octet == Dle)
            m_state = State::BodyDle;
        else
            Append(octet);
        break;
    case State::BodyDle:
        AfterDleInBody(octet);
        break;
    case State::Fcs1:
        m_firstFcsOctet = octet;
        m_state = State::Fcs2;
        break;
    case State::Fcs2:
        return Check(octet);
    }
    return std::nullopt;
}

void FrameDecoder::Reset()
{
    m_state = State::Hunt;
    m_body.clear();
}

void FrameDecoder::Hunt(std::uint8_t octet)
{
    if (m_state == State::AfterSynDle && octet == Stx) {
        m_state = State::Body;
        m_body.clear();
    } else if (m_state == State::AfterSyn && octet == Dle) {
        m_state = State::AfterSynDle;
    } else {
        // What only looked like a start is noise; a SYN may begin the real one.
        const std::uint64_t given = m_state == State::AfterSynDle ? 2 : m_state == State::AfterSyn ? 1 : 0;
        m_counters.noiseOctets += given + (octet == Syn ? 0 : 1);
        m_state = octet == Syn ? State::AfterSyn : State::Hunt;
    }
}

void FrameDecoder::Append(std::uint8_t octet)
{
    m_state = State::Body;
    if (m_body.size() < m_longestBody) {
        m_body.push_back(octet);
        return;
    }
    ++m_counters.overlong;
    Reset();
}

void FrameDecoder::AfterDleInBody(std::uint8_t octet)
{
    if (octet == Dle) {
        Append(Dle);
    } else if (octet == Etx) {
        m_state = State::Fcs1;
    } else if (octet == Stx) {
        ++m_counters.restarts;
        m_body.clear();
        m_state = State::Body;
    } else {
        ++m_counters.brokenEscapes;
        Reset();
        if (octet == Syn)
            m_state = State::AfterSyn;
    }
}

std::optional<Octets> FrameDecoder::Check(std::uint8_t secondFcsOctet)
{
    Fcs fcs;
    fcs.Add(m_body);
    fcs.Add(Dle);
    fcs.Add(Etx);
    fcs.Add(m_firstFcsOctet);
    fcs.Add(secondFcsOctet);
    m_state = State::Hunt;
    if (fcs.ResidueIsGood()) {
        ++m_counters.frames;
        return std::exchange(m_body, {});
    }
    ++m_counters.wrongFcs;
    m_body.clear();
    // When octets were lost, these two may already belong to the next frame.
    if (secondFcsOctet == Syn)
        m_state = State::AfterSyn;
    else if (m_firstFcsOctet == Syn && secondFcsOctet == Dle)
        m_state = State::AfterSynDle;
    return std::nullopt;
}

} // namespace map27
