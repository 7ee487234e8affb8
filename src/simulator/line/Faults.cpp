#include "simulator/line/Faults.h"

#include "map27/codec/Messages.h"
#include "map27/link/Framing.h"
#include "map27/link/LinkPackets.h"

#include <algorithm>
#include <array>

namespace sim {

namespace {

constexpr int LongestNoise = 20; // octets
constexpr map27::Octets::difference_type FcsOctets = 2;

// Header and data of a correct frame; empty for any other.
map27::Octets BodyOf(const map27::Octets& frame)
{
    map27::FrameDecoder decoder;
    std::vector<map27::Octets> bodies = decoder.Feed(frame);
    return bodies.empty() ? map27::Octets{} : std::move(bodies.front());
}

bool IsPacket(const map27::Octets& body, std::uint8_t type)
{
    return body.size() >= map27::packet::HeaderOctets && body[0] == type;
}

// Whether octets may follow the message without becoming part of it.
bool HasFixedEnd(const map27::Octets& body)
{
    namespace Type = map27::Type;
    static constexpr std::array open{Type::Escape,    Type::RadioTest, Type::Sst,  Type::Mst,
                                     Type::ModemData, Type::Numbering, Type::Call, Type::EmergencyCall};
    return IsPacket(body, map27::packet::LinkTransfer) && body.size() > map27::packet::HeaderOctets &&
           std::ranges::find(open, body[map27::packet::HeaderOctets]) == open.end();
}

bool HasFlagFcs(const map27::Octets& frame)
{
    static constexpr std::array flags{map27::Stx, map27::Etx, map27::Dle, map27::Syn};
    return std::all_of(frame.end() - FcsOctets, frame.end(),
                       [](std::uint8_t octet) { return std::ranges::find(flags, octet) != flags.end(); });
}

// The frame with two more octets, chosen so that both of its check octets look like flags. A frame always
// gets the same two, as its repetition has to be the same frame.
map27::Octets WithFlagFcs(map27::Octets body)
{
    body.resize(body.size() + 2);
    for (unsigned choice = 0; choice <= 0xFFFF; ++choice) {
        body[body.size() - 2] = static_cast<std::uint8_t>(choice >> 8);
        body[body.size() - 1] = static_cast<std::uint8_t>(choice & 0xFF);
        map27::Octets frame = map27::EncodeFrame(body);
        if (HasFlagFcs(frame))
            return frame;
    }
    return {}; // two octets can reach any check sequence
}

} // namespace

Struck Faults::Strike(map27::Octets frame, map27::Direction direction)
{
    Struck struck{.sent = frame, .octets = {}, .fault = {}};
    if (m_silent) {
        struck.fault = "silent";
        return struck;
    }
    const auto name = [&](FaultKind kind) { struck.fault = DescriptionOf(kind).word; };
    const map27::Octets body = BodyOf(frame);
    if (Strikes(FaultKind::DropFrames)) {
        name(FaultKind::DropFrames);
        return struck;
    }
    if (IsPacket(body, map27::packet::LinkAcknowledgement) && Strikes(FaultKind::LostLa)) {
        name(FaultKind::LostLa);
        return struck;
    }
    if (direction == map27::Direction::FromRadio)
        ChangeContent(frame, struck);
    struck.sent = frame;
    InvertBits(frame);
    if (frame != struck.sent)
        name(FaultKind::BitErrors);
    if (Strikes(FaultKind::WrongFcs)) {
        frame.back() = static_cast<std::uint8_t>(~frame.back());
        name(FaultKind::WrongFcs);
    }
    const bool twice = IsPacket(body, map27::packet::LinkTransfer) && Strikes(FaultKind::DuplicateLt);
    struck.octets.insert(struck.octets.end(), frame.begin(), frame.end());
    if (twice) {
        struck.octets.insert(struck.octets.end(), frame.begin(), frame.end());
        name(FaultKind::DuplicateLt);
    }
    if (Strikes(FaultKind::Noise)) {
        const map27::Octets noise = NoiseOctets();
        struck.octets.insert(struck.octets.begin(), noise.begin(), noise.end());
        name(FaultKind::Noise);
    }
    if (const int most = static_cast<int>(m_settings.Of(FaultKind::Delay)); most > 0)
        struck.late = Milliseconds(m_random.Between(0, most));
    return struck;
}

map27::Octets Faults::StrikeNoise(map27::Octets octets)
{
    if (m_silent)
        return {};
    InvertBits(octets);
    return octets;
}

// What a radio may get wrong on a good line.
void Faults::ChangeContent(map27::Octets& frame, Struck& struck)
{
    map27::Octets body = BodyOf(frame);
    if (IsPacket(body, map27::packet::LinkAcknowledgement) && Strikes(FaultKind::NoCredit)) {
        body[2] = 0;
        frame = map27::EncodeFrame(body);
        struck.fault = DescriptionOf(FaultKind::NoCredit).word;
    }
    if (HasFixedEnd(body) && Strikes(FaultKind::FlagFcs)) {
        frame = WithFlagFcs(std::move(body));
        struck.fault = DescriptionOf(FaultKind::FlagFcs).word;
    } else if (IsPacket(body, map27::packet::LinkTransfer) && Strikes(FaultKind::StrayLr)) {
        struck.octets = map27::EncodeFrame(map27::Octets{map27::packet::LinkRequest, 14, 1, 1});
        struck.fault = DescriptionOf(FaultKind::StrayLr).word;
    }
}

void Faults::InvertBits(map27::Octets& octets)
{
    const double probability = m_settings.Of(FaultKind::BitErrors);
    if (probability <= 0)
        return;
    for (std::uint8_t& octet : octets) {
        for (unsigned bit = 1; bit < 0x100; bit <<= 1)
            if (m_random.Chance(probability))
                octet = static_cast<std::uint8_t>(octet ^ bit);
    }
}

map27::Octets Faults::NoiseOctets()
{
    map27::Octets noise(static_cast<std::size_t>(m_random.Between(1, LongestNoise)));
    for (std::uint8_t& octet : noise)
        octet = static_cast<std::uint8_t>(m_random.Between(0, 0xFF));
    return noise;
}

} // namespace sim
