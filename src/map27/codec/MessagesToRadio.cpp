#include "map27/codec/MessageCodec.h"

namespace map27 {

namespace codec {

namespace {

// The shortest party, including its kind and length octet.
constexpr std::size_t ShortestParty = 4;

DiversionRequestMessage ReadDiversionRequest(Reader& reader)
{
    DiversionRequestMessage message;
    message.target = ReadParty(reader);
    message.info = reader.Take();
    if (reader.Remaining() >= ShortestParty)
        message.blocked = ReadParty(reader);
    return message;
}

DiversionCancelMessage ReadDiversionCancel(Reader& reader)
{
    DiversionCancelMessage message;
    message.party = ReadParty(reader);
    message.info = reader.Take();
    return message;
}

RadioControlMessage ReadRadioControl(Reader& reader)
{
    const std::uint8_t octet = reader.Take();
    return {(octet & 0x02) != 0, (octet & 0x01) != 0};
}

VolumeMessage ReadVolume(Reader& reader)
{
    VolumeMessage message;
    message.points = reader.Take();
    message.setting = reader.Take();
    return message;
}

DialledStringMessage ReadDialledString(Reader& reader)
{
    const OctetSpan rest = reader.TakeRest();
    return {Octets(rest.begin(), rest.end())};
}

void Write(Octets& octets, const InterrogationMessage& message)
{
    octets.insert(octets.end(), {Type::Personality, message.reason});
}

void Write(Octets& octets, const RadioControlMessage& message)
{
    const int bits = (message.offHook ? 0x02 : 0) | (message.transmit ? 0x01 : 0);
    octets.insert(octets.end(), {Type::OperatingCondition, static_cast<std::uint8_t>(bits)});
}

void Write(Octets& octets, const VolumeMessage& message)
{
    octets.insert(octets.end(), {Type::Volume, message.points, message.setting});
}

void Write(Octets& octets, const DialledStringMessage& message)
{
    octets.push_back(Type::DialledString);
    octets.insert(octets.end(), message.characters.begin(), message.characters.end());
}

void Write(Octets& octets, const DiversionRequestMessage& message)
{
    octets.push_back(Type::DiversionRequest);
    WriteParty(octets, message.target);
    octets.push_back(message.info);
    if (message.blocked)
        WriteParty(octets, *message.blocked);
}

void Write(Octets& octets, const DiversionCancelMessage& message)
{
    octets.push_back(Type::DiversionCancel);
    WriteParty(octets, message.party);
    octets.push_back(message.info);
}

// The address description that a radio has to understand before it may act on the message.
const AddressDescription* DescriptionOf(const ToRadio& message)
{
    if (const auto* status = std::get_if<StatusMessage>(&message))
        return &status->party.description;
    if (const auto* data = std::get_if<ShortDataMessage>(&message))
        return &data->party.description;
    if (const auto* call = std::get_if<CallMessage>(&message))
        return &call->party.description;
    if (const auto* diversion = std::get_if<DiversionRequestMessage>(&message))
        return &diversion->target.description;
    if (const auto* cancel = std::get_if<DiversionCancelMessage>(&message))
        return &cancel->party.description;
    return nullptr;
}

DecodeResult<ToRadio> ReadToRadio(std::uint8_t type, Reader& reader)
{
    switch (type) {
    case Type::Escape:
        return ToRadio(ReadEscape(reader));
    case Type::RadioTest:
        return ToRadio(ReadRadioTest(reader));
    case Type::Status:
        return ToRadio(ReadStatus(reader));
    case Type::Sst:
    case Type::Mst:
        return ToRadio(ReadShortData(reader, type == Type::Sst ? DataSize::Short : DataSize::Medium));
    case Type::ModemData:
        return ToRadio(ReadModemData(reader));
    case Type::Call:
    case Type::EmergencyCall:
        return ToRadio(ReadCall(reader, type == Type::EmergencyCall));
    case Type::Disconnect:
    case Type::Cancel:
        return ToRadio(ReadClear(reader, type == Type::Cancel));
    case Type::Settings:
        return ToRadio(ReadSettings(reader));
    case Type::ProtocolInfo:
        return ToRadio(ReadProtocolInfo(reader));
    case Type::Personality:
        return ToRadio(InterrogationMessage{reader.Take()});
    case Type::OperatingCondition:
        return ToRadio(ReadRadioControl(reader));
    case Type::Volume:
        return ToRadio(ReadVolume(reader));
    case Type::DialledString:
        return ToRadio(ReadDialledString(reader));
    case Type::DiversionRequest:
        return ToRadio(ReadDiversionRequest(reader));
    case Type::DiversionCancel:
        return ToRadio(ReadDiversionCancel(reader));
    default:
        return ClassifyType(type);
    }
}

} // namespace

static Octets EncodeAny(const ToRadio& message)
{
    Octets octets;
    std::visit([&octets](const auto& alternative) { Write(octets, alternative); }, message);
    return octets;
}

} // namespace codec

Octets EncodeToRadio(const ToRadio& message)
{
    return codec::EncodeAny(message);
}

DecodeResult<ToRadio> DecodeToRadio(OctetSpan message)
{
    if (message.empty())
        return DecodeError::TooShort;
    codec::Reader reader(message.subspan(1));
    // No message is shorter than two octets.
    const bool bare = reader.Remaining() == 0;
    auto result = codec::ReadToRadio(message[0], reader);
    const auto* decoded = std::get_if<ToRadio>(&result);
    if (decoded == nullptr)
        return result;
    if (bare || reader.RanOut())
        return DecodeError::TooShort;
    const AddressDescription* description = codec::DescriptionOf(*decoded);
    if (description != nullptr && !description->understood)
        return DecodeError::BadField;
    return result;
}

} // namespace map27
