#include "map27/trace/MessageWords.h"

#include "map27/codec/Causes.h"
#include "map27/codec/CharacterCoding.h"
#include "map27/codec/Messages.h"

#include <span>

namespace map27 {

namespace {

struct BitName {
    unsigned bit;
    const char* name;
};

constexpr BitName FacilityNames[] = {
    {Facility::Voice, "voice"},
    {Facility::Modem, "data calls"},
    {Facility::Status, "status"},
    {Facility::Sst, "short texts"},
    {Facility::Mst, "long texts"},
    {Facility::AutomaticDiversion, "calls to the diversion address"},
    {Facility::CallBackLog, "call-back log"},
};
constexpr BitName CodingBitNames[] = {
    {CodingBit::BcdAscii, "digits as characters"},
    {CodingBit::TelexAscii, "telex as characters"},
    {CodingBit::Binary, "binary"},
    {CodingBit::Bcd, "digits"},
    {CodingBit::Telex, "telex"},
    {CodingBit::Ccitt5, "7-bit characters"},
    {CodingBit::PcCharacters, "8-bit characters"},
};
constexpr BitName ControlNames[] = {{0x02, "off-hook"}, {0x01, "transmit"}};
constexpr BitName SetupNames[] = {
    {0x40, "include call"}, {0x20, "one way"}, {0x10, "data"}, {0x08, "normal priority"}};
constexpr BitName IncomingNames[] = {
    {0x40, "include call"}, {0x20, "group"}, {0x10, "data"}, {0x08, "to be answered"}};

std::string Names(std::span<const BitName> names, unsigned bits)
{
    std::string text;
    for (const BitName& one : names)
        if ((bits & one.bit) != 0)
            text += (text.empty() ? "" : ", ") + std::string(one.name);
    return text;
}

std::string OrNone(const std::string& text)
{
    return text.empty() ? "none" : text;
}

std::string HexOctet(std::uint8_t octet)
{
    return ToHex(OctetSpan(&octet, 1)) + 'h';
}

std::string RangeWords(const IdentRange& range)
{
    return std::to_string(range.base) + ".." + std::to_string(range.highest) +
           (range.threeDigits ? " (3 digits)" : " (2 digits)");
}

// What follows the name of a message.
class Describer {
public:
    explicit Describer(Direction direction)
        : m_direction(direction),
          m_link(direction == Direction::ToRadio ? " to " : " from ")
    {
    }

    std::string operator()(const EscapeMessage& message) const { return ": " + ToHex(message.octets); }
    std::string operator()(const RadioTestMessage& message) const { return ": " + ToHex(message.octets); }
    std::string operator()(const ModemDataMessage& message) const { return ": " + ToHex(message.octets); }
    std::string operator()(const DialledStringMessage& message) const
    {
        return ": " + ToHex(message.characters);
    }
    std::string operator()(const StatusMessage& message) const
    {
        return m_link + PartyWords(message.party) + ": " + std::to_string(message.status);
    }
    std::string operator()(const ShortDataMessage& message) const
    {
        const std::string text = WithoutControls(DecodeText(message.data));
        return m_link + PartyWords(message.party) + " (" +
               CodingName(static_cast<unsigned>(message.data.coding)) +
               "): " + (IsCharacterCoding(message.data.coding) ? '"' + text + '"' : text);
    }
    std::string operator()(const CallMessage& message) const
    {
        const bool toRadio = m_direction == Direction::ToRadio;
        const std::span<const BitName> names = toRadio ? std::span<const BitName>(SetupNames) : IncomingNames;
        std::string details = Names(names, message.details.octet);
        if (toRadio && message.details.HighPriority() && !message.emergency)
            details += details.empty() ? "high priority" : ", high priority";
        if (!toRadio && !message.details.OffHookNeeded())
            details += details.empty() ? "connected" : ", connected";
        return m_link + PartyWords(message.party) + (details.empty() ? "" : ": " + details);
    }
    std::string operator()(const ClearMessage& message) const
    {
        const std::uint8_t type = message.abnormal ? Type::Cancel : Type::Disconnect;
        return ": " + CauseText(type, message.cause, m_direction) +
               (message.address.IsDummy() ? "" : " (" + ToText(message.address) + ')');
    }
    std::string operator()(const SettingsMessage& message) const
    {
        return ": " + OrNone(FacilityWords(message.facilitiesA)) +
               (message.codings ? "; codings " + OrNone(CodingWords(*message.codings)) : "");
    }
    std::string operator()(const ProtocolInfoMessage& message) const
    {
        return ": " + CauseText(Type::ProtocolInfo, message.reason, m_direction);
    }
    std::string operator()(const InterrogationMessage& message) const
    {
        return ": " + QuestionWords(message.reason);
    }
    std::string operator()(const RadioControlMessage& message) const
    {
        const unsigned bits = (message.offHook ? 2U : 0U) | (message.transmit ? 1U : 0U);
        return ": " + (bits == 0 ? "on-hook" : Names(ControlNames, bits));
    }
    std::string operator()(const VolumeMessage& message) const
    {
        return ": points " + HexOctet(message.points) + ", setting " + HexOctet(message.setting);
    }
    std::string operator()(const DiversionRequestMessage& message) const
    {
        return m_link + PartyWords(message.target);
    }
    std::string operator()(const DiversionCancelMessage& message) const
    {
        return " of " + PartyWords(message.party);
    }
    std::string operator()(const PersonalityMessage& message) const
    {
        return ": radio " + ToText(message.radio) + ", maker " + std::to_string(message.manufacturer) +
               ", model " + std::to_string(message.model) + ", serial number " +
               std::to_string(message.serial) + "; " + OrNone(FacilityWords(message.facilitiesA)) +
               "; codings " + OrNone(CodingWords(message.codings));
    }
    std::string operator()(const NumberingMessage& message) const
    {
        std::string text = ": radio " + ToText(message.radio) + ", individuals " +
                           RangeWords(message.individuals) + ", groups " + RangeWords(message.groups);
        for (const Address group : message.groupList)
            text += (group == message.groupList.front() ? "; listens to " : ", ") + ToText(group);
        return text;
    }
    std::string operator()(const OperatingConditionMessage& message) const
    {
        return std::string(": ") + (message.inContact ? "in contact" : "no radio contact") +
               (message.offHook ? ", off-hook" : ", on-hook") +
               (message.transmitting ? ", transmitting" : "") + ", field strength " +
               (message.fieldStrength == 0 ? "unknown" : std::to_string(message.fieldStrength)) +
               ", longest call " + CallTimeWords(message.maxCallTimeCode);
    }
    std::string operator()(const NetworkInfoMessage& message) const
    {
        return ": channel " + std::to_string(message.channel) + ", system identity " +
               std::to_string(message.systemIdentity);
    }
    std::string operator()(const AcknowledgementMessage& message) const
    {
        const char* whose = message.subject == AckSubject::Receive ? " from " : " of ";
        return whose + PartyWords(message.party) + ": " +
               CauseText(message.TypeOctet(), message.cause, m_direction);
    }

private:
    Direction m_direction;
    std::string m_link;
};

template <typename Message> std::string Words(const DecodeResult<Message>& result, Direction direction)
{
    if (const auto* error = std::get_if<DecodeError>(&result))
        return std::string(": ") + DecodeErrorText(*error);
    return std::visit(Describer(direction), std::get<Message>(result));
}

} // namespace

std::string MessageWords(OctetSpan message, Direction direction)
{
    if (message.empty())
        return "no message";
    return TypeName(message[0], direction) + (direction == Direction::ToRadio
                                                  ? Words(DecodeToRadio(message), direction)
                                                  : Words(DecodeFromRadio(message), direction));
}

std::string PartyWords(const Party& party)
{
    const AddressDescription& more = party.description;
    if (!more.understood)
        return ToText(party.address) + " (address octets " + ToHex(more.raw) + ')';
    switch (more.kind) {
    case DescriptionKind::None:
        return party.address.IsDummy() ? "nobody" : ToText(party.address);
    case DescriptionKind::Digits:
        return (party.address.ident == Ident::Pabx ? "PABX " : "PSTN ") + more.digits;
    case DescriptionKind::Custom:
        return ToText(party.address) + " (custom " + ToHex(more.raw) + ')';
    case DescriptionKind::PabxExtension:
        return "extension " + std::to_string(party.address.ident) + " of exchange " +
               std::to_string(more.exchange);
    case DescriptionKind::PabxExtensionFull:
        return "extension " + std::to_string(more.unit.ident) + " of exchange " +
               std::to_string(more.exchange);
    case DescriptionKind::Unit:
        return ToText(party.address) + " (now " + ToText(more.unit) + ')';
    case DescriptionKind::UnitWithDigits:
        return ToText(party.address) + " (now " + ToText(more.unit) + ' ' + more.digits + ')';
    case DescriptionKind::DialledString:
        return "dialled " + more.digits;
    }
    return ToText(party.address);
}

std::string WithoutControls(std::string_view text)
{
    const auto shown = [](unsigned code) {
        const std::uint8_t octet = static_cast<std::uint8_t>(code);
        return '<' + ToHex(OctetSpan(&octet, 1)) + '>';
    };
    std::string safe;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const unsigned code = static_cast<unsigned char>(text[at]);
        // U+0080 to U+009F are C2 80 to C2 9F.
        const unsigned next = at + 1 < text.size() ? static_cast<unsigned char>(text[at + 1]) : 0;
        if (code < 0x20 || code == 0x7F) {
            safe += shown(code);
        } else if (code == 0xC2 && next >= 0x80 && next < 0xA0) {
            safe += shown(next);
            ++at;
        } else {
            safe += text[at];
        }
    }
    return safe;
}

std::string FacilityWords(std::uint8_t facilitiesA)
{
    return Names(FacilityNames, facilitiesA);
}

std::string CodingWords(std::uint8_t codings)
{
    return Names(CodingBitNames, codings);
}

std::string CodingName(unsigned coding)
{
    switch (static_cast<Coding>(coding)) {
    case Coding::FreeFormat:
        return "free format";
    case Coding::BcdAscii:
        return "digits as characters";
    case Coding::TelexAscii:
        return "telex as characters";
    case Coding::Binary:
        return "binary";
    case Coding::Bcd:
        return "digits";
    case Coding::Telex:
        return "telex";
    case Coding::Ccitt5:
        return "7-bit characters";
    case Coding::PcCharacters:
        return "8-bit characters";
    }
    return "coding " + std::to_string(coding);
}

std::string CallTimeWords(std::uint8_t maxCallTimeCode)
{
    OperatingConditionMessage condition;
    condition.maxCallTimeCode = maxCallTimeCode;
    if (const auto seconds = condition.MaxCallSeconds())
        return std::to_string(*seconds) + " s";
    return maxCallTimeCode == 0 ? "reserved value" : "without limit";
}

std::string QuestionWords(std::uint8_t reason)
{
    static constexpr const char* Known[] = {"personality", "numbering", "settings", "operating condition",
                                            "network information"};
    return reason < std::size(Known) ? Known[reason] : "question " + HexOctet(reason);
}

} // namespace map27
