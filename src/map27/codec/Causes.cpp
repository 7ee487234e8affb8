#include "map27/codec/Causes.h"

#include "map27/codec/Messages.h"

namespace map27 {

namespace {

struct CauseRow {
    std::uint8_t type;
    std::uint8_t cause;
    const char* text;
};

// Negative acknowledgements of messages (E0) and of call set-ups (E4) share most causes.
constexpr CauseRow FromRadioRows[] = {
    {Type::MessagePositive, 0x00, "delivered"},
    {Type::MessageQueued, 0x02, "system busy, waiting"},
    {Type::MessageQueued, 0x0A, "called unit engaged, waiting"},
    {Type::MessageQueued, 0x22, "network has no long messages, radio sends several short ones"},
    {Type::MessageQueued, 0x26, "diverted, radio tries the new address"},
    {Type::MessageNegative, 0x03, "invalid, rejected"},
    {Type::MessageNegative, 0x04, "called unit out of reach, or abandoned"},
    {Type::MessageNegative, 0x06, "diverted, not tried again"},
    {Type::MessageNegative, 0x08, "aborted on request"},
    {Type::MessageNegative, 0x0B, "system or called unit overloaded"},
    {Type::MessageNegative, 0x0C, "called unit engaged or refuses"},
    {Type::MessageNegative, 0x0D, "network has no long messages"},
    {Type::MessageNegative, 0x0E, "diverted, new address not available"},
    {Type::MessageNegative, 0x16, "diverted to a group"},
    {Type::SetupPositive, 0x00, "connected"},
    {Type::SetupQueued, 0x01, "called unit alerting"},
    {Type::SetupQueued, 0x02, "system busy, waiting"},
    {Type::SetupQueued, 0x05, "emergency call proceeding"},
    {Type::SetupQueued, 0x0A, "called unit engaged, waiting"},
    {Type::SetupQueued, 0x26, "diverted, radio tries the new address"},
    {Type::SetupQueued, 0x36, "diverted to a group, radio tries it"},
    {Type::SetupNegative, 0x03, "invalid, rejected"},
    {Type::SetupNegative, 0x04, "called unit out of reach, or abandoned"},
    {Type::SetupNegative, 0x06, "diverted, not tried again"},
    {Type::SetupNegative, 0x07, "called unit noted the call for call-back"},
    {Type::SetupNegative, 0x08, "aborted on request"},
    {Type::SetupNegative, 0x0B, "system or called unit overloaded"},
    {Type::SetupNegative, 0x0C, "called unit engaged or refuses"},
    {Type::SetupNegative, 0x0E, "diverted, new address not available"},
    {Type::SetupNegative, 0x16, "diverted to a group"},
    {Type::ReceivePositive, 0x00, "connected"},
    {Type::ReceiveWarning, 0x01, "transmission disabled"},
    {Type::ReceiveWarning, 0x02, "system busy, waiting"},
    {Type::ReceiveWarning, 0x0A, "maximum call time nearly over"},
    {Type::ReceiveNegative, 0x03, "set-up rejected or cancelled"},
    {Type::ReceiveNegative, 0x07, "radio noted the call for call-back"},
    {Type::DiversionPositive, 0x00, "diversion set or cancelled"},
    {Type::DiversionNegative, 0x03, "invalid, or the network does not divert"},
    {Type::DiversionNegative, 0x04, "abandoned"},
    {Type::DiversionNegative, 0x08, "aborted on request"},
    {Type::DiversionNegative, 0x0B, "system overloaded"},
    {Type::Disconnect, 0x0B, "call ended normally"},
    {Type::Cancel, 0x00, "not specified, everything cancelled"},
    {Type::Cancel, 0x01, "cleared by the radio itself"},
    {Type::Cancel, 0x04, "no radio contact"},
    {Type::Cancel, 0x05, "message or transmission too long"},
    {Type::Cancel, 0x06, "coding not possible"},
    {Type::Cancel, 0x0E, "call ended abnormally"},
};

constexpr CauseRow ToRadioRows[] = {
    {Type::Disconnect, 0x07, "end the call"},
    {Type::Cancel, 0x08, "cancel message or call set-up"},
    {Type::Cancel, 0x09, "cancel set-up of an include call"},
    {Type::Cancel, 0x0A, "abort setting of a diversion"},
    {Type::Cancel, 0x0C, "cancel set-up of a data call"},
};

constexpr CauseRow BothWaysRows[] = {
    {Type::ProtocolInfo, ProtocolReason::Unrecognised, "message not recognised"},
    {Type::ProtocolInfo, ProtocolReason::NotSupported, "facility or addressing not supported"},
    {Type::ProtocolInfo, ProtocolReason::StateMismatch, "not possible in the present state"},
    {Type::ProtocolInfo, ProtocolReason::CodingNotSupported, "coding not supported"},
    {Type::ProtocolInfo, ProtocolReason::BusyLocally, "radio busy, used locally"},
    {Type::ProtocolInfo, ProtocolReason::ReadyForRemote, "radio ready for remote control"},
};

struct TypeRow {
    std::uint8_t type;
    const char* toRadio; // empty: does not exist in this direction
    const char* fromRadio;
};

constexpr TypeRow TypeRows[] = {
    {Type::Escape, "ESCAPE", "ESCAPE"},
    {Type::RadioTest, "RADIO TEST", "RADIO TEST RESULT"},
    {Type::Status, "SEND STATUS", "RECEIVE STATUS"},
    {Type::Sst, "SEND SST", "RECEIVE SST"},
    {Type::Mst, "SEND MST", "RECEIVE MST"},
    {Type::Disconnect, "DISCONNECT", "CLEARED"},
    {Type::DiversionRequest, "DIVERSION REQUEST", ""},
    {Type::ModemData, "SEND MODEM DATA", "RECEIVE MODEM DATA"},
    {Type::Call, "SETUP CALL", "INCOMING CALL"},
    {Type::EmergencyCall, "SETUP EMERGENCY CALL", "INCOMING EMERGENCY CALL"},
    {Type::Cancel, "DISCONNECT", "CLEARED"},
    {Type::DiversionCancel, "DIVERSION CANCEL", ""},
    {Type::Personality, "RADIO INTERROGATION", "RADIO PERSONALITY"},
    {Type::Numbering, "", "NUMBERING INFORMATION"},
    {Type::OperatingCondition, "RADIO CONTROL", "OPERATING CONDITION"},
    {Type::Settings, "RADIO MANAGEMENT", "RADIO SETTINGS"},
    {Type::ProtocolInfo, "PROTOCOL INFO", "PROTOCOL INFO"},
    {Type::NetworkInfo, "", "NETWORK INFORMATION"},
    {Type::Volume, "VOLUME CONTROL", ""},
    {Type::DialledString, "DIALLED STRING", ""},
    {Type::MessagePositive, "", "MESSAGE ACK"},
    {Type::MessageQueued, "", "MESSAGE ACK"},
    {Type::MessageNegative, "", "MESSAGE ACK"},
    {Type::SetupPositive, "", "SETUP PROGRESS"},
    {Type::SetupQueued, "", "SETUP PROGRESS"},
    {Type::SetupNegative, "", "SETUP PROGRESS"},
    {Type::ReceivePositive, "", "RECEIVE PROGRESS"},
    {Type::ReceiveWarning, "", "RECEIVE PROGRESS"},
    {Type::ReceiveNegative, "", "RECEIVE PROGRESS"},
    {Type::DiversionPositive, "", "DIVERSION ACK"},
    {Type::DiversionNegative, "", "DIVERSION ACK"},
};

template <std::size_t Count>
const char* Find(const CauseRow (&rows)[Count], std::uint8_t type, std::uint8_t cause)
{
    for (const CauseRow& row : rows) {
        if (row.type == type && row.cause == cause)
            return row.text;
    }
    return nullptr;
}

std::string Hex(std::uint8_t octet)
{
    return ToHex(OctetSpan(&octet, 1)) + "h";
}

// The upper half of an acknowledgement's type says how it went, whatever the cause.
std::string OutcomeText(std::uint8_t type)
{
    switch (type & 0xF0) {
    case 0xC0:
        return "success";
    case 0xD0:
        return "in progress";
    case 0xE0:
        return "failed";
    default:
        return "unknown";
    }
}

} // namespace

std::string CauseText(std::uint8_t type, std::uint8_t cause, Direction direction)
{
    const char* text = Find(BothWaysRows, type, cause);
    if (text == nullptr)
        text = direction == Direction::ToRadio ? Find(ToRadioRows, type, cause)
                                               : Find(FromRadioRows, type, cause);
    return text != nullptr ? text : OutcomeText(type) + ", cause " + Hex(cause);
}

std::string TypeName(std::uint8_t type, Direction direction)
{
    for (const TypeRow& row : TypeRows) {
        std::string name = direction == Direction::ToRadio ? row.toRadio : row.fromRadio;
        if (row.type == type && !name.empty())
            return name;
    }
    return "type " + Hex(type);
}

} // namespace map27
