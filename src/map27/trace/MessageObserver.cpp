#include "map27/trace/MessageObserver.h"

#include "map27/codec/Causes.h"
#include "map27/codec/Messages.h"
#include "map27/trace/MessageWords.h"

#include <algorithm>
#include <stdexcept>

namespace map27 {

namespace {

constexpr std::uint8_t ReservedCodingBit = 0x01;
constexpr std::uint8_t FirstCustomReason = 0x80;
constexpr std::uint16_t ChannelBits = 0x03FF;

// Of an octet that is one character.
std::uint8_t UsedBits(Coding coding)
{
    switch (coding) {
    case Coding::BcdAscii:
    case Coding::TelexAscii:
    case Coding::Ccitt5:
        return 0x7F;
    case Coding::Bcd:
        return 0x0F;
    case Coding::Telex:
        return 0x1F;
    default:
        return 0xFF;
    }
}

// One message at a time.
class Judge {
public:
    Judge(OctetSpan message, Direction direction) : m_message(message), m_direction(direction) {}

    Findings TakeFindings() { return std::move(m_findings); }

    template <typename Message> void Look(const DecodeResult<Message>& decoded)
    {
        if (const auto* error = std::get_if<DecodeError>(&decoded))
            return LookAt(*error);
        const Message& message = std::get<Message>(decoded);
        LookAtUnusedBits(message);
        std::visit([this](const auto& known) { this->LookAt(known); }, message);
    }

private:
    void Breach(std::string_view kind, std::string text)
    {
        m_findings.push_back({Finding::Weight::Breach, kind, m_direction, std::move(text)});
    }
    void Remark(std::string_view kind, std::string text)
    {
        m_findings.push_back({Finding::Weight::Remark, kind, m_direction, std::move(text)});
    }

    static Octets Encode(const ToRadio& message) { return EncodeToRadio(message); }
    static Octets Encode(const FromRadio& message) { return EncodeFromRadio(message); }

    // The second half of the octet with the number of a PABX.
    template <typename Message> void IgnoreUnspecified(const Message& message, Octets& again) const
    {
        constexpr std::size_t At = 5;
        const bool isExtension = std::visit(
            [](const auto& known) {
                if constexpr (requires { known.party; })
                    return known.party.description.kind == DescriptionKind::PabxExtension;
                else
                    return false;
            },
            message);
        if (isExtension && again.size() > At && m_message.size() > At)
            again[At] = static_cast<std::uint8_t>((again[At] & 0xF0) | (m_message[At] & 0x0F));
    }

    // What was masked on receipt shows when the message is written again.
    template <typename Message> void LookAtUnusedBits(const Message& message)
    {
        Octets again;
        try {
            again = Encode(message);
        } catch (const std::invalid_argument&) {
            return; // kept raw, and judged by its own fields
        }
        IgnoreUnspecified(message, again);
        const std::size_t common = std::min(again.size(), m_message.size());
        if (!std::equal(again.begin(), again.begin() + static_cast<std::ptrdiff_t>(common),
                        m_message.begin()))
            Breach("unused-bits", "Bits are set that the standard wants to be 0; the message is written " +
                                      ToHex(again) + '.');
        if (m_message.size() > again.size() && m_message[0] == Type::Numbering)
            Breach("cut-group", "The list of groups ends in the middle of one.");
        else if (m_message.size() > again.size())
            Remark("extra-octets", std::to_string(m_message.size() - again.size()) +
                                       " octets follow the end of the message, which are ignored.");
    }

    void LookAt(DecodeError error)
    {
        const std::uint8_t type = m_message.empty() ? 0 : m_message[0];
        switch (error) {
        case DecodeError::TooShort:
            return Breach("too-short", "The message ends before its last octet.");
        case DecodeError::Reserved:
            return Breach("reserved-type", "The standard reserves this type of message.");
        case DecodeError::BadField:
            return Breach("address", "The address octets cannot be understood.");
        case DecodeError::Unknown:
            break;
        }
        if (type < 0x40)
            Remark("custom-type", "A message of a type that is free for makers of radios.");
        else
            Breach("wrong-direction", "A message of this type goes the other way only.");
    }

    void LookAtParty(const Party& party)
    {
        if (!party.description.understood)
            Breach("address", "The address octets cannot be understood.");
        const bool mayBeDialled = party.description.kind == DescriptionKind::DialledString;
        if (m_direction == Direction::ToRadio && !mayBeDialled && !IsSendable(party.address))
            Breach("reserved-ident", "A terminal may not use the ident of " + ToText(party.address) + '.');
    }

    void LookAtCause(std::uint8_t type, std::uint8_t cause)
    {
        if (!IsKnownCause(type, cause, m_direction))
            Remark("unknown-cause", "The standard knows no such cause of this message.");
    }

    void LookAt(const StatusMessage& message)
    {
        LookAtParty(message.party);
        if (message.status > HighestStatus)
            Breach("status", "A status is 0 to 31.");
    }

    void LookAt(const ShortDataMessage& message)
    {
        LookAtParty(message.party);
        const ShortData& data = message.data;
        const auto most = MostUnits(data.coding, message.size);
        const unsigned coding = static_cast<unsigned>(data.coding);
        if (coding == 14)
            Remark("custom-coding", "The coding is free for customisation.");
        else if (!IsKnown(data.coding))
            Breach("reserved-coding", "The coding " + std::to_string(coding) + " is reserved.");
        else if (!most)
            Breach("coding", "Free format goes into short messages only.");
        else if (!Fits(data, message.size))
            Breach("data-length",
                   "There is more data than a message of this size holds: " + std::to_string(*most) +
                       (IsCharacterCoding(data.coding) ? " characters." : " bits."));
        if (data.octets.empty())
            Breach("empty-text", "The message is empty.");
        constexpr auto reserved = [](std::uint8_t digit) {
            return digit == 0x0A || digit == 0x0D || digit == 0x0E;
        };
        if (data.coding == Coding::Bcd && std::ranges::any_of(data.octets, reserved))
            Breach("reserved-digit", "A digit is neither 0 to 9, * (Bh), # (Ch) nor the filler (Fh).");
        if (std::ranges::any_of(data.octets, [used = UsedBits(data.coding)](std::uint8_t octet) {
                return (octet & ~used) != 0;
            }))
            Breach("unused-bits", "A character has bits set that its coding wants to be 0.");
        if (m_direction == Direction::FromRadio && IsKnown(data.coding) && Fits(data, message.size) &&
            !data.octets.empty() && PadToCodewords(data, message.size, PadStyle::Nul) != data)
            Remark("codewords", "The length is not that of whole codewords, as it comes from the air.");
    }

    void LookAt(const CallMessage& message)
    {
        LookAtParty(message.party);
        const std::uint8_t octet = message.details.octet;
        const bool fromEmergency = message.emergency && (octet & 0x40) != 0;
        const bool toEmergency =
            message.emergency && m_direction == Direction::ToRadio && (octet & 0x08) != 0;
        if ((octet & 0x80) != 0 || fromEmergency || toEmergency)
            Breach("call-details", "Bits of the call details are set that the standard wants to be 0.");
    }

    void LookAt(const ClearMessage& message)
    {
        LookAtCause(message.abnormal ? Type::Cancel : Type::Disconnect, message.cause);
    }

    void LookAt(const SettingsMessage& message)
    {
        if (!message.codings)
            Remark("short-settings", "Settings of four octets, as before version 1.5 of the standard.");
        LookAtFacilities(message.facilitiesB, message.codings.value_or(0));
    }

    void LookAtFacilities(std::uint8_t facilitiesB, std::uint8_t codings)
    {
        if (facilitiesB != 0)
            Breach("facilities", "The second octet of the facilities is reserved.");
        if ((codings & ReservedCodingBit) != 0)
            Breach("codings", "Bit 1 of the codings is reserved.");
    }

    void LookAt(const ProtocolInfoMessage& message)
    {
        if (message.reason < FirstCustomReason)
            LookAtCause(Type::ProtocolInfo, message.reason);
    }

    void LookAt(const InterrogationMessage& message)
    {
        if (message.reason > static_cast<std::uint8_t>(RadioInfo::Network) &&
            message.reason < FirstCustomReason)
            Breach("question", "The standard has no such question.");
    }

    void LookAt(const RadioControlMessage& message)
    {
        if (message.transmit && !message.offHook)
            Breach("hook", "Transmitting while on-hook may end the call; both bits are always sent.");
    }

    void LookAt(const PersonalityMessage& message)
    {
        if (message.radio.IsDummy())
            Breach("own-number", "The radio reports no number of its own.");
        LookAtFacilities(message.facilitiesB, message.codings);
    }

    void LookAtRange(const IdentRange& range, const char* name)
    {
        if (range.base > range.highest)
            Breach("numbering", std::string("The ") + name + " begin above their end.");
    }

    void LookAt(const NumberingMessage& message)
    {
        if (message.radio.IsDummy())
            Breach("own-number", "The radio reports no number of its own.");
        LookAtRange(message.individuals, "individuals");
        LookAtRange(message.groups, "groups");
        if (message.individuals.highest == 0 && message.groups.highest == 0)
            Remark("no-fleet", "The radio reports no fleet of its own.");
        if (std::ranges::any_of(message.groupList, [](Address group) { return group.IsDummy(); }))
            Remark("empty-group", "A group in the list has no ident.");
    }

    void LookAt(const OperatingConditionMessage& message)
    {
        if (message.maxCallTimeCode == 0)
            Breach("call-time", "The value 0 of the longest call time is reserved.");
    }

    void LookAt(const NetworkInfoMessage& message)
    {
        if ((message.rawChannel & ~ChannelBits) != 0)
            Breach("network-bits", "Bits are set above the ten of the channel number.");
    }

    void LookAt(const AcknowledgementMessage& message)
    {
        LookAtParty(message.party);
        LookAtCause(message.TypeOctet(), message.cause);
    }

    void LookAt(const DiversionRequestMessage& message) { LookAtParty(message.target); }
    void LookAt(const DiversionCancelMessage&) {}
    void LookAt(const EscapeMessage&) {}
    void LookAt(const RadioTestMessage&) {}
    void LookAt(const ModemDataMessage&) {}
    void LookAt(const DialledStringMessage&) {}
    void LookAt(const VolumeMessage&) {}

    OctetSpan m_message;
    Direction m_direction;
    Findings m_findings;
};

} // namespace

Findings JudgeMessage(OctetSpan message, Direction direction)
{
    Judge judge(message, direction);
    if (direction == Direction::ToRadio)
        judge.Look(DecodeToRadio(message));
    else
        judge.Look(DecodeFromRadio(message));
    return judge.TakeFindings();
}

} // namespace map27
