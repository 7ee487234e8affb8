#include "map27/trace/FrameSplitter.h"

#include "map27/link/Framing.h"
#include "map27/trace/FrameParts.h"

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
        AfterDleInBody(octet, pieces);
        break;
    case State::Fcs1:
        m_state = State::Fcs2;
        break;
    case State::Fcs2:
        FinishFrame(pieces);
        break;
    }
    // A frame that never ends must not hold the line for ever.
    if (m_held.size() > 3 * FrameDecoder::LongestBody) {
        Finish(false, pieces);
        m_state = State::Between;
    }
}

void FrameSplitter::AfterDleInBody(std::uint8_t octet, std::vector<LinePiece>& pieces)
{
    if (octet == Etx) {
        m_state = State::Fcs1;
    } else if (octet == Dle) {
        m_state = State::Body;
    } else if (octet == Stx) { // the frame before has lost its end
        m_state = State::Body;
        constexpr std::size_t startFlag = 3;
        if (m_held[m_held.size() - startFlag] == Syn)
            KeepLast(startFlag, pieces);
    } else if (octet == Syn) {
        m_state = State::AfterSyn;
        KeepLast(1, pieces);
    } else {
        m_state = State::Between;
    }
}

// When octets were lost, those in place of the FCS may already be the next frame's.
void FrameSplitter::FinishFrame(std::vector<LinePiece>& pieces)
{
    m_state = State::Between;
    const std::optional<FrameParts> parts = TakeApart(m_held);
    const std::uint8_t last = m_held.back();
    const bool isBad = parts && !parts->IsGood();
    if (isBad && last == Syn) {
        m_state = State::AfterSyn;
        KeepLast(1, pieces);
    } else if (isBad && last == Dle && m_held[m_held.size() - 2] == Syn) {
        m_state = State::AfterSynDle;
        KeepLast(2, pieces);
    } else {
        Finish(parts.has_value(), pieces);
    }
}

// What was held before the last octets is no frame.
void FrameSplitter::KeepLast(std::size_t count, std::vector<LinePiece>& pieces)
{
    Octets kept(m_held.end() - static_cast<std::ptrdiff_t>(count), m_held.end());
    m_held.resize(m_held.size() - count);
    Finish(false, pieces);
    m_held = std::move(kept);
}

void FrameSplitter::Finish(bool isFrame, std::vector<LinePiece>& pieces)
{
    if (!m_held.empty())
        pieces.push_back({std::exchange(m_held, {}), isFrame});
}

} // namespace map27
