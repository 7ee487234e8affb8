#pragma once

#include "map27/codec/Octets.h"

#include <optional>

namespace map27 {

// Frame of MAP27 v1.5, 4.3.1: SYN DLE STX, body with every DLE doubled, DLE ETX, two FCS octets (never
// doubled, any value).
constexpr std::uint8_t Syn = 0x16;
constexpr std::uint8_t Dle = 0x10;
constexpr std::uint8_t Stx = 0x02;
constexpr std::uint8_t Etx = 0x03;

// The complete frame of a body (link header and data), ready for the line.
Octets EncodeFrame(OctetSpan body);

// What the receiver came across. Every octet belongs to a good frame or is counted here.
struct FramingCounters {
    std::uint64_t frames = 0;        // good ones
    std::uint64_t wrongFcs = 0;      // dropped without an answer: the standard has no reject
    std::uint64_t brokenEscapes = 0; // DLE followed by an octet that has no meaning there
    std::uint64_t restarts = 0;      // a new start flag inside a frame: the old frame lost its end
    std::uint64_t overlong = 0;      // body longer than any link parameter allows
    std::uint64_t noiseOctets = 0;   // outside of frames

    bool operator==(const FramingCounters&) const = default;
};

// Finds frames, in whatever pieces the line delivers them. Holds at most one body.
class FrameDecoder {
public:
    // Header and the longest data part that N1 = 255 allows.
    static constexpr std::size_t LongestBody = 4 + 16 * 256;

    explicit FrameDecoder(std::size_t longestBody = LongestBody) : m_longestBody(longestBody) {}

    // Bodies of the good frames that these octets complete, unstuffed, in order.
    std::vector<Octets> Feed(OctetSpan octets);

    // The body that this one octet completes.
    std::optional<Octets> Feed(std::uint8_t octet);

    // Forgets an unfinished frame, for a line that was opened anew. Keeps the counters.
    void Reset();

    const FramingCounters& Counters() const { return m_counters; }

private:
    enum class State { Hunt, AfterSyn, AfterSynDle, Body, BodyDle, Fcs1, Fcs2 };

    void Hunt(std::uint8_t octet);
    void Append(std::uint8_t octet);
    void AfterDleInBody(std::uint8_t octet);
    std::optional<Octets> Check(std::uint8_t secondFcsOctet);

    std::size_t m_longestBody;
    State m_state = State::Hunt;
    Octets m_body;
    std::uint8_t m_firstFcsOctet = 0;
    FramingCounters m_counters;
};

} // namespace map27
