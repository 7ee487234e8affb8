#pragma once

#include "map27/codec/Octets.h"

#include <vector>

namespace map27 {

// A piece of what goes over the line.
struct LinePiece {
    Octets octets;
    bool isFrame =
        false; // a complete frame with its flags and FCS, right or wrong; else octets between frames

    bool operator==(const LinePiece&) const = default;
};

// Splits an octet stream into frames without changing an octet, for tracing and for faults that strike whole
// frames. Every octet comes out again: those of an unfinished frame once its end or another start has come.
class FrameSplitter {
public:
    std::vector<LinePiece> Feed(OctetSpan octets);
    // What is held: the beginning of a frame that has not ended yet.
    OctetSpan Held() const { return m_held; }
    void Clear();

private:
    enum class State { Between, AfterSyn, AfterSynDle, Body, BodyDle, Fcs1, Fcs2 };

    void Feed(std::uint8_t octet, std::vector<LinePiece>& pieces);
    void AfterDleInBody(std::uint8_t octet, std::vector<LinePiece>& pieces);
    void FinishFrame(std::vector<LinePiece>& pieces);
    void KeepLast(std::size_t count, std::vector<LinePiece>& pieces);
    void Finish(bool isFrame, std::vector<LinePiece>& pieces);

    State m_state = State::Between;
    Octets m_held;
};

} // namespace map27
