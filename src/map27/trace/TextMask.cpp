#include "map27/trace/TextMask.h"

#include "map27/codec/Messages.h"
#include "map27/link/Framing.h"
#include "map27/link/LinkPackets.h"
#include "map27/trace/FrameParts.h"

#include <algorithm>
#include <stdexcept>

namespace map27 {

namespace {

constexpr std::size_t TypeOctet = 1;

void Blank(Octets& octets, std::size_t from, std::size_t to)
{
    to = std::min(to, octets.size());
    if (from < to)
        std::fill(octets.begin() + static_cast<std::ptrdiff_t>(from),
                  octets.begin() + static_cast<std::ptrdiff_t>(to), std::uint8_t{0});
}

// Octets of another protocol, or of a vendor's.
bool IsForeign(std::uint8_t type)
{
    return type == Type::Escape || type == Type::RadioTest || type == Type::ModemData ||
           type == Type::DialledString;
}

// How many octets of the message are known to be no text.
template <typename Message> std::size_t KnownOf(const Message& message, std::size_t encoded)
{
    if (const auto* data = std::get_if<ShortDataMessage>(&message))
        return encoded - data->data.octets.size();
    if (const auto* call = std::get_if<CallMessage>(&message))
        return encoded - call->parameters.size();
    return encoded;
}

std::size_t KnownOf(const Octets& message, Direction direction)
{
    if (IsForeign(message[0]))
        return TypeOctet;
    try {
        if (direction == Direction::ToRadio) {
            const auto decoded = DecodeToRadio(message);
            if (const auto* whole = std::get_if<ToRadio>(&decoded))
                return KnownOf(*whole, EncodeToRadio(*whole).size());
        } else {
            const auto decoded = DecodeFromRadio(message);
            if (const auto* whole = std::get_if<FromRadio>(&decoded))
                return KnownOf(*whole, EncodeFromRadio(*whole).size());
        }
    } catch (const std::invalid_argument&) { // received, but nothing that could be sent
    }
    return TypeOctet;
}

// Start flag at one end, end flag and check sequence at the other.
void BlankDamaged(Octets& frame)
{
    constexpr std::size_t startFlag = 3;
    constexpr std::size_t end = 4;
    const bool ends = frame.size() >= startFlag + end && frame[frame.size() - end] == Dle &&
                      frame[frame.size() - end + 1] == Etx;
    Blank(frame, startFlag, ends ? frame.size() - end : frame.size());
}

} // namespace

Octets WithoutText(Octets message, Direction direction)
{
    if (!message.empty())
        Blank(message, KnownOf(message, direction), message.size());
    return message;
}

TraceEntry WithoutText(TraceEntry entry)
{
    switch (entry.kind) {
    case TraceEntry::Kind::Frame: {
        const auto parts = TakeApart(entry.octets);
        if (!parts || !parts->IsGood()) {
            BlankDamaged(entry.octets);
        } else if (parts->body.size() > packet::HeaderOctets && parts->body[0] == packet::LinkTransfer) {
            const auto begin = parts->body.begin() + packet::HeaderOctets;
            Octets body(parts->body.begin(), begin);
            const Octets message = WithoutText(Octets(begin, parts->body.end()), entry.direction);
            body.insert(body.end(), message.begin(), message.end());
            if (body != parts->body)
                entry.octets = EncodeFrame(body);
        } else if (parts->body.size() > packet::HeaderOctets) {
            Octets body = parts->body;
            Blank(body, packet::HeaderOctets, body.size());
            entry.octets = EncodeFrame(body);
        }
        break;
    }
    case TraceEntry::Kind::Noise:
        Blank(entry.octets, 0, entry.octets.size());
        break;
    case TraceEntry::Kind::Said:
        entry.octets = WithoutText(std::move(entry.octets), Direction::FromRadio);
        break;
    case TraceEntry::Kind::Command:
        entry.command.assign(entry.command.size(), '*');
        entry.answer.assign(entry.answer.size(), '*');
        break;
    case TraceEntry::Kind::Opened:
    case TraceEntry::Kind::Closed:
    case TraceEntry::Kind::Time:
    case TraceEntry::Kind::Lost:
    case TraceEntry::Kind::Continued:
        break;
    }
    return entry;
}

} // namespace map27
