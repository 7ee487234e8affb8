#include "map27/codec/MessageCodec.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace map27 {

const char* DecodeErrorText(DecodeError error)
{
    switch (error) {
    case DecodeError::TooShort:
        return "message too short";
    case DecodeError::Reserved:
        return "reserved message type";
    case DecodeError::Unknown:
        return "unknown message type";
    case DecodeError::BadField:
        return "address description not understood";
    }
    return "unknown error";
}

namespace codec {

namespace {

void Append(Octets& octets, OctetSpan more)
{
    octets.insert(octets.end(), more.begin(), more.end());
}

Octets ToOctets(OctetSpan octets)
{
    return {octets.begin(), octets.end()};
}

// True when the octets are as the kind requires.
bool Understand(AddressDescription& description, OctetSpan octets)
{
    Reader reader(octets);
    const auto takeDigits = [&](OctetSpan packed) {
        const auto digits = UnpackDigits(packed);
        if (digits)
            description.digits = *digits;
        return digits && !digits->empty();
    };
    switch (description.kind) {
    case DescriptionKind::None:
        return octets.empty();
    case DescriptionKind::Digits:
        return takeDigits(octets) && description.digits.size() <= MostDigits;
    case DescriptionKind::Custom:
        description.raw = ToOctets(octets);
        return true;
    case DescriptionKind::PabxExtension:
        description.exchange = reader.Take() >> 4;
        return octets.size() == 1;
    case DescriptionKind::PabxExtensionFull:
        description.unit = ReadAddress(reader);
        description.exchange = reader.Take() >> 4;
        return octets.size() == 4;
    case DescriptionKind::Unit:
        description.unit = ReadAddress(reader);
        return octets.size() == 3;
    case DescriptionKind::UnitWithDigits:
        description.unit = ReadAddress(reader);
        return !reader.RanOut() && takeDigits(reader.TakeRest());
    case DescriptionKind::DialledString:
        return takeDigits(octets);
    }
    return false;
}

AddressDescription ReadDescription(std::uint8_t kind, OctetSpan octets)
{
    AddressDescription description;
    description.kind = static_cast<DescriptionKind>(kind);
    if (!Understand(description, octets)) {
        description = {};
        description.kind = static_cast<DescriptionKind>(kind);
        description.raw = ToOctets(octets);
        description.understood = false;
    }
    return description;
}

void WriteDigits(Octets& octets, const std::string& digits)
{
    const auto packed = PackDigits(digits);
    if (!packed || digits.empty() || digits.size() > MostDigits)
        throw std::invalid_argument("not a telephone number: " + digits);
    Append(octets, *packed);
}

Octets DescriptionOctets(const AddressDescription& description)
{
    Octets octets;
    if (!description.understood)
        return description.raw;
    switch (description.kind) {
    case DescriptionKind::None:
        break;
    case DescriptionKind::Digits:
    case DescriptionKind::DialledString:
        WriteDigits(octets, description.digits);
        break;
    case DescriptionKind::Custom:
        octets = description.raw;
        break;
    case DescriptionKind::PabxExtension:
        octets.push_back(static_cast<std::uint8_t>(description.exchange << 4));
        break;
    case DescriptionKind::PabxExtensionFull:
        WriteAddress(octets, description.unit);
        octets.push_back(static_cast<std::uint8_t>(description.exchange << 4));
        break;
    case DescriptionKind::Unit:
        WriteAddress(octets, description.unit);
        break;
    case DescriptionKind::UnitWithDigits:
        WriteAddress(octets, description.unit);
        WriteDigits(octets, description.digits);
        break;
    }
    return octets;
}

} // namespace

// Reading.

std::uint8_t Reader::Take()
{
    if (m_octets.empty()) {
        m_ranOut = true;
        return 0;
    }
    const std::uint8_t octet = m_octets.front();
    m_octets = m_octets.subspan(1);
    return octet;
}

std::uint16_t Reader::TakeWord()
{
    const unsigned high = Take();
    return static_cast<std::uint16_t>((high << 8) | Take());
}

OctetSpan Reader::Take(std::size_t count)
{
    if (count > m_octets.size()) {
        m_ranOut = true;
        count = m_octets.size();
    }
    const OctetSpan taken = m_octets.first(count);
    m_octets = m_octets.subspan(count);
    return taken;
}

Address ReadAddress(Reader& reader)
{
    Address address;
    address.prefix = reader.Take() & HighestPrefix;
    address.ident = reader.TakeWord() & HighestIdent;
    return address;
}

Party ReadParty(Reader& reader)
{
    Party party;
    party.address = ReadAddress(reader);
    const std::uint8_t kindAndLength = reader.Take();
    const OctetSpan octets = reader.Take(std::size_t{kindAndLength} & 0x0F);
    party.description = ReadDescription(kindAndLength >> 4, octets);
    return party;
}

EscapeMessage ReadEscape(Reader& reader)
{
    return {ToOctets(reader.TakeRest())};
}

RadioTestMessage ReadRadioTest(Reader& reader)
{
    return {ToOctets(reader.TakeRest())};
}

StatusMessage ReadStatus(Reader& reader)
{
    StatusMessage message;
    message.party = ReadParty(reader);
    message.status = reader.Take();
    return message;
}

ShortDataMessage ReadShortData(Reader& reader, DataSize size)
{
    ShortDataMessage message;
    message.size = size;
    message.party = ReadParty(reader);
    const std::uint8_t coding = reader.Take();
    message.data.coding = static_cast<Coding>(coding >> 4);
    message.data.octets = ToOctets(reader.TakeRest());
    // The octet holds the number of valid bits in the last octet minus one; a character is always whole.
    message.data.bitsInLastOctet =
        IsCharacterCoding(message.data.coding) ? 8 : static_cast<std::uint8_t>((coding & 0x07) + 1);
    return message;
}

ModemDataMessage ReadModemData(Reader& reader)
{
    return {ToOctets(reader.TakeRest())};
}

CallMessage ReadCall(Reader& reader, bool emergency)
{
    CallMessage message;
    message.emergency = emergency;
    message.party = ReadParty(reader);
    message.details.octet = reader.Take();
    if (message.details.Custom() != 0)
        message.parameters = ToOctets(reader.TakeRest());
    return message;
}

ClearMessage ReadClear(Reader& reader, bool abnormal)
{
    ClearMessage message;
    message.abnormal = abnormal;
    message.address = ReadAddress(reader);
    message.cause = reader.Take();
    return message;
}

SettingsMessage ReadSettings(Reader& reader)
{
    SettingsMessage message;
    message.facilitiesA = reader.Take();
    message.facilitiesB = reader.Take();
    message.facilitiesC = reader.Take();
    if (reader.Remaining() > 0)
        message.codings = reader.Take();
    return message;
}

ProtocolInfoMessage ReadProtocolInfo(Reader& reader)
{
    return {reader.Take()};
}

DecodeError ClassifyType(std::uint8_t type)
{
    if (type < 0x40)
        return DecodeError::Unknown;
    static constexpr std::array assigned{Type::Status,
                                         Type::Sst,
                                         Type::Mst,
                                         Type::Disconnect,
                                         Type::DiversionRequest,
                                         Type::ModemData,
                                         Type::Call,
                                         Type::EmergencyCall,
                                         Type::Cancel,
                                         Type::DiversionCancel,
                                         Type::Personality,
                                         Type::Numbering,
                                         Type::OperatingCondition,
                                         Type::Settings,
                                         Type::ProtocolInfo,
                                         Type::NetworkInfo,
                                         Type::Volume,
                                         Type::DialledString,
                                         Type::MessagePositive,
                                         Type::SetupPositive,
                                         Type::ReceivePositive,
                                         Type::DiversionPositive,
                                         Type::MessageQueued,
                                         Type::SetupQueued,
                                         Type::ReceiveWarning,
                                         Type::MessageNegative,
                                         Type::SetupNegative,
                                         Type::ReceiveNegative,
                                         Type::DiversionNegative};
    const bool known = std::find(assigned.begin(), assigned.end(), type) != assigned.end();
    return known ? DecodeError::Unknown : DecodeError::Reserved;
}

// Writing.

void WriteWord(Octets& octets, std::uint16_t word)
{
    octets.push_back(static_cast<std::uint8_t>(word >> 8));
    octets.push_back(static_cast<std::uint8_t>(word & 0xFF));
}

void WriteAddress(Octets& octets, Address address)
{
    if (address.prefix > HighestPrefix || address.ident > HighestIdent)
        throw std::invalid_argument("not an address: " + ToText(address));
    octets.push_back(address.prefix);
    WriteWord(octets, address.ident);
}

void WriteParty(Octets& octets, const Party& party)
{
    WriteAddress(octets, party.address);
    const Octets description = DescriptionOctets(party.description);
    if (description.size() > MostAddressOctets)
        throw std::invalid_argument("address description too long");
    const unsigned kind = static_cast<unsigned>(party.description.kind) & 0x0F;
    octets.push_back(static_cast<std::uint8_t>((kind << 4) | description.size()));
    Append(octets, description);
}

void Write(Octets& octets, const EscapeMessage& message)
{
    octets.push_back(Type::Escape);
    Append(octets, message.octets);
}

void Write(Octets& octets, const RadioTestMessage& message)
{
    octets.push_back(Type::RadioTest);
    Append(octets, message.octets);
}

void Write(Octets& octets, const StatusMessage& message)
{
    octets.push_back(Type::Status);
    WriteParty(octets, message.party);
    octets.push_back(message.status);
}

void Write(Octets& octets, const ShortDataMessage& message)
{
    octets.push_back(message.size == DataSize::Short ? Type::Sst : Type::Mst);
    WriteParty(octets, message.party);
    const unsigned valid = IsCharacterCoding(message.data.coding) ? 8 : message.data.bitsInLastOctet;
    if (valid < 1 || valid > 8)
        throw std::invalid_argument("bits in the last octet");
    const unsigned coding = static_cast<unsigned>(message.data.coding) & 0x0F;
    octets.push_back(static_cast<std::uint8_t>((coding << 4) | (valid - 1)));
    Append(octets, message.data.octets);
}

void Write(Octets& octets, const ModemDataMessage& message)
{
    octets.push_back(Type::ModemData);
    Append(octets, message.octets);
}

void Write(Octets& octets, const CallMessage& message)
{
    octets.push_back(message.emergency ? Type::EmergencyCall : Type::Call);
    WriteParty(octets, message.party);
    octets.push_back(message.details.octet);
    Append(octets, message.parameters);
}

void Write(Octets& octets, const ClearMessage& message)
{
    octets.push_back(message.abnormal ? Type::Cancel : Type::Disconnect);
    WriteAddress(octets, message.address);
    octets.push_back(message.cause);
}

void Write(Octets& octets, const SettingsMessage& message)
{
    octets.insert(octets.end(),
                  {Type::Settings, message.facilitiesA, message.facilitiesB, message.facilitiesC});
    if (message.codings)
        octets.push_back(*message.codings);
}

void Write(Octets& octets, const ProtocolInfoMessage& message)
{
    octets.insert(octets.end(), {Type::ProtocolInfo, message.reason});
}

} // namespace codec

} // namespace map27
