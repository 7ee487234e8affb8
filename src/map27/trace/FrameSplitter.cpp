#include "map27/trace/FrameSplitter.h"

#include "map27/link/Framing.h"

#include <utility>

namespace map27 {

std::vector<LinePiece> FrameSplitter::Feed(OctetSpan octets)
{
    std::vector<LinePiece> pieces;
    for (const std::uint8_t octet : octets)
        Feed(octet, pieces);
    if (m_state == State::Between)
        Finish(false, pieces);
    return pieces;
}

void FrameSplitter::Clear()
{
    m_held.clear();
    m_state = State::Between;
}

void FrameSplitter::Feed(std::uint8_t octet, std::vector<LinePiece>& pieces)
{
    // What is held when a start flag begins does not belong to the next frame.
    const bool mayStart =
        m_state == State::Between || m_state == State::AfterSyn || m_state == State::AfterSynDle;
    if (mayStart && octet == Syn) {
        Finish(false, pieces);
        m_state = State::AfterSyn;
        m_held.push_back(octet);
        return;
    }
    m_held.push_back(octet);
    switch (m_state) {
    case State::Between:
        break;
    case State::AfterSyn:
        m_state = octet == Dle ? State::AfterSynDle : State::Between;
        break;
    case State::AfterSynDle:
        m_state = octet == Stx ? State::Body : State::Between;
        break;
    case State::Body:
        if (octet == Dle)
            m_state = State::BodyDle;
        break;
    case State::BodyDle:
        m_state = octet == Etx ? State::Fcs1 : octet == Dle || octet == Stx ? State::Body : State::Between;
        break;
    case State::Fcs1:
        m_state = State::Fcs2;
        break;
    case State::Fcs2:
        m_state = State::Between;
        Finish(true, pieces);
        break;
    }
    // A frame that never ends must not hold the line for ever.
    if (m_held.size() > 3 * FrameDecoder::LongestBody) {
        Finish(false, pieces);
        m_state = State::Between;
    }
}

void FrameSplitter::Finish(bool isFrame, std::vector<LinePiece>& pieces)
{
    if (!m_held.empty())
        pieces.push_back({std::exchange(m_held, {}), isFrame});
}

} // namespace map27
