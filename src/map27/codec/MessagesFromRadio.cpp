#include "map27/codec/MessageCodec.h"

#include <stdexcept>

namespace map27 {

std::optional<unsigned> OperatingConditionMessage::MaxCallSeconds() const
{
    constexpr unsigned reserved = 0;
    constexpr unsigned lastMinuteCode = 9;
    constexpr unsigned unlimited = 255;
    if (maxCallTimeCode == reserved || maxCallTimeCode == unlimited)
        return std::nullopt;
    if (maxCallTimeCode <= lastMinuteCode)
        return (maxCallTimeCode + 4u) * 60u;
    return maxCallTimeCode;
}

namespace codec {

namespace {

constexpr std::uint16_t ThreeDigits = 0x8000;
constexpr std::uint16_t ChannelBits = 0x03FF;
constexpr std::uint16_t IdentityBits = 0x7FFF;

PersonalityMessage ReadPersonality(Reader& reader)
{
    PersonalityMessage message;
    message.radio = ReadAddress(reader);
    message.manufacturer = reader.Take();
    const std::uint32_t modelAndSerial = reader.Take();
    message.model = static_cast<std::uint8_t>(modelAndSerial >> 4);
    message.serial = ((modelAndSerial & 0x03) << 16) | reader.TakeWord();
    message.facilitiesA = reader.Take();
    message.facilitiesB = reader.Take();
    message.facilitiesC = reader.Take();
    message.codings = reader.Take();
    return message;
}

IdentRange ReadRange(Reader& reader)
{
    const std::uint16_t base = reader.TakeWord();
    IdentRange range;
    range.base = base & HighestIdent;
    range.threeDigits = (base & ThreeDigits) != 0;
    range.highest = reader.TakeWord() & HighestIdent;
    return range;
}

NumberingMessage ReadNumbering(Reader& reader)
{
    constexpr std::size_t addressOctets = 3;
    NumberingMessage message;
    message.radio = ReadAddress(reader);
    message.individuals = ReadRange(reader);
    message.groups = ReadRange(reader);
    while (reader.Remaining() >= addressOctets)
        message.groupList.push_back(ReadAddress(reader));
    return message;
}

OperatingConditionMessage ReadOperatingCondition(Reader& reader)
{
    const std::uint8_t bits = reader.Take();
    OperatingConditionMessage message;
    message.custom = (bits & 0x80) != 0;
    message.inContact = (bits & 0x04) != 0;
    message.offHook = (bits & 0x02) != 0;
    message.transmitting = (bits & 0x01) != 0;
    message.fieldStrength = reader.Take();
    message.maxCallTimeCode = reader.Take();
    return message;
}

NetworkInfoMessage ReadNetworkInfo(Reader& reader)
{
    NetworkInfoMessage message;
    message.rawChannel = reader.TakeWord();
    message.channel = message.rawChannel & ChannelBits;
    message.systemIdentity = reader.TakeWord() & IdentityBits;
    return message;
}

AcknowledgementMessage ReadAcknowledgement(Reader& reader, std::uint8_t type)
{
    AcknowledgementMessage message;
    message.outcome = static_cast<AckOutcome>(type & 0xF0);
    message.subject = static_cast<AckSubject>(type & 0x0F);
    message.party = ReadParty(reader);
    message.cause = reader.Take();
    return message;
}

void Write(Octets& octets, const PersonalityMessage& message)
{
    if (message.model > 0x0F || message.serial > 0x3FFFF)
        throw std::invalid_argument("radio model or serial number");
    octets.push_back(Type::Personality);
    WriteAddress(octets, message.radio);
    octets.push_back(message.manufacturer);
    octets.push_back(static_cast<std::uint8_t>((message.model << 4) | (message.serial >> 16)));
    WriteWord(octets, static_cast<std::uint16_t>(message.serial & 0xFFFF));
    octets.insert(octets.end(),
                  {message.facilitiesA, message.facilitiesB, message.facilitiesC, message.codings});
}

void WriteRange(Octets& octets, const IdentRange& range)
{
    if (range.base > HighestIdent || range.highest > HighestIdent)
        throw std::invalid_argument("fleet numbering");
    WriteWord(octets, static_cast<std::uint16_t>(range.base | (range.threeDigits ? ThreeDigits : 0)));
    WriteWord(octets, range.highest);
}

void Write(Octets& octets, const NumberingMessage& message)
{
    octets.push_back(Type::Numbering);
    WriteAddress(octets, message.radio);
    WriteRange(octets, message.individuals);
    WriteRange(octets, message.groups);
    for (const Address group : message.groupList)
        WriteAddress(octets, group);
}

void Write(Octets& octets, const OperatingConditionMessage& message)
{
    const int bits = (message.custom ? 0x80 : 0) | (message.inContact ? 0x04 : 0) |
                     (message.offHook ? 0x02 : 0) | (message.transmitting ? 0x01 : 0);
    octets.insert(octets.end(), {Type::OperatingCondition, static_cast<std::uint8_t>(bits),
                                 message.fieldStrength, message.maxCallTimeCode});
}

void Write(Octets& octets, const NetworkInfoMessage& message)
{
    if (message.channel > ChannelBits || message.systemIdentity > IdentityBits)
        throw std::invalid_argument("channel or system identity");
    octets.push_back(Type::NetworkInfo);
    WriteWord(octets, static_cast<std::uint16_t>((message.rawChannel & ~ChannelBits) | message.channel));
    WriteWord(octets, message.systemIdentity);
}

void Write(Octets& octets, const AcknowledgementMessage& message)
{
    octets.push_back(message.TypeOctet());
    WriteParty(octets, message.party);
    octets.push_back(message.cause);
}

DecodeResult<FromRadio> ReadFromRadio(std::uint8_t type, Reader& reader)
{
    switch (type) {
    case Type::Escape:
        return FromRadio(ReadEscape(reader));
    case Type::RadioTest:
        return FromRadio(ReadRadioTest(reader));
    case Type::Status:
        return FromRadio(ReadStatus(reader));
    case Type::Sst:
    case Type::Mst:
        return FromRadio(ReadShortData(reader, type == Type::Sst ? DataSize::Short : DataSize::Medium));
    case Type::ModemData:
        return FromRadio(ReadModemData(reader));
    case Type::Call:
    case Type::EmergencyCall:
        return FromRadio(ReadCall(reader, type == Type::EmergencyCall));
    case Type::Disconnect:
    case Type::Cancel:
        return FromRadio(ReadClear(reader, type == Type::Cancel));
    case Type::Settings:
        return FromRadio(ReadSettings(reader));
    case Type::ProtocolInfo:
        return FromRadio(ReadProtocolInfo(reader));
    case Type::Personality:
        return FromRadio(ReadPersonality(reader));
    case Type::Numbering:
        return FromRadio(ReadNumbering(reader));
    case Type::OperatingCondition:
        return FromRadio(ReadOperatingCondition(reader));
    case Type::NetworkInfo:
        return FromRadio(ReadNetworkInfo(reader));
    case Type::MessagePositive:
    case Type::SetupPositive:
    case Type::ReceivePositive:
    case Type::DiversionPositive:
    case Type::MessageQueued:
    case Type::SetupQueued:
    case Type::ReceiveWarning:
    case Type::MessageNegative:
    case Type::SetupNegative:
    case Type::ReceiveNegative:
    case Type::DiversionNegative:
        return FromRadio(ReadAcknowledgement(reader, type));
    default:
        return ClassifyType(type);
    }
}

} // namespace

static Octets EncodeAny(const FromRadio& message)
{
    Octets octets;
    std::visit([&octets](const auto& alternative) { Write(octets, alternative); }, message);
    return octets;
}

} // namespace codec

Octets EncodeFromRadio(const FromRadio& message)
{
    return codec::EncodeAny(message);
}

DecodeResult<FromRadio> DecodeFromRadio(OctetSpan message)
{
    if (message.empty())
        return DecodeError::TooShort;
    codec::Reader reader(message.subspan(1));
    // No message is shorter than two octets.
    const bool bare = reader.Remaining() == 0;
    auto result = codec::ReadFromRadio(message[0], reader);
    if (std::holds_alternative<DecodeError>(result))
        return result;
    if (bare || reader.RanOut())
        return DecodeError::TooShort;
    return result;
}

} // namespace map27
