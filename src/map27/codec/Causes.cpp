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
    {Type::MessagePositive, Cause::Success, "delivered"},
    {Type::MessageQueued, Cause::SystemBusy, "system busy, waiting"},
    {Type::MessageQueued, Cause::UnitBusy, "called unit engaged, waiting"},
    {Type::MessageQueued, Cause::SentInParts, "network has no long messages, radio sends several short ones"},
    {Type::MessageQueued, Cause::DivertedRetry, "diverted, radio tries the new address"},
    {Type::MessageNegative, Cause::Invalid, "invalid, rejected"},
    {Type::MessageNegative, Cause::Unreachable, "called unit out of reach, or abandoned"},
    {Type::MessageNegative, Cause::DivertedNoRetry, "diverted, not tried again"},
    {Type::MessageNegative, Cause::Aborted, "aborted on request"},
    {Type::MessageNegative, Cause::Overloaded, "system or called unit overloaded"},
    {Type::MessageNegative, Cause::EngagedOrRefused, "called unit engaged or refuses"},
    {Type::MessageNegative, Cause::NoLongMessages, "network has no long messages"},
    {Type::MessageNegative, Cause::DivertedUnavailable, "diverted, new address not available"},
    {Type::MessageNegative, Cause::DivertedToGroup, "diverted to a group"},
    {Type::SetupPositive, Cause::Success, "connected"},
    {Type::SetupQueued, Cause::Alerting, "called unit alerting"},
    {Type::SetupQueued, Cause::SystemBusy, "system busy, waiting"},
    {Type::SetupQueued, Cause::EmergencyProceeding, "emergency call proceeding"},
    {Type::SetupQueued, Cause::UnitBusy, "called unit engaged, waiting"},
    {Type::SetupQueued, Cause::DivertedRetry, "diverted, radio tries the new address"},
    {Type::SetupQueued, Cause::DivertedToGroupRetry, "diverted to a group, radio tries it"},
    {Type::SetupNegative, Cause::Invalid, "invalid, rejected"},
    {Type::SetupNegative, Cause::Unreachable, "called unit out of reach, or abandoned"},
    {Type::SetupNegative, Cause::DivertedNoRetry, "diverted, not tried again"},
    {Type::SetupNegative, Cause::NotedForCallBack, "called unit noted the call for call-back"},
    {Type::SetupNegative, Cause::Aborted, "aborted on request"},
    {Type::SetupNegative, Cause::Overloaded, "system or called unit overloaded"},
    {Type::SetupNegative, Cause::EngagedOrRefused, "called unit engaged or refuses"},
    {Type::SetupNegative, Cause::DivertedUnavailable, "diverted, new address not available"},
    {Type::SetupNegative, Cause::DivertedToGroup, "diverted to a group"},
    {Type::ReceivePositive, Cause::Success, "connected"},
    {Type::ReceiveWarning, Cause::TransmissionDisabled, "transmission disabled"},
    {Type::ReceiveWarning, Cause::SystemBusy, "system busy, waiting"},
    {Type::ReceiveWarning, Cause::CallTimeNearlyOver, "maximum call time nearly over"},
    {Type::ReceiveNegative, Cause::CallerGaveUp, "set-up rejected or cancelled"},
    {Type::ReceiveNegative, Cause::NotedForCallBack, "radio noted the call for call-back"},
    {Type::DiversionPositive, Cause::Success, "diversion set or cancelled"},
    {Type::DiversionNegative, Cause::Invalid, "invalid, or the network does not divert"},
    {Type::DiversionNegative, Cause::Unreachable, "abandoned"},
    {Type::DiversionNegative, Cause::Aborted, "aborted on request"},
    {Type::DiversionNegative, Cause::Overloaded, "system overloaded"},
    {Type::Disconnect, ClearCause::EndedNormally, "call ended normally"},
    {Type::Cancel, ClearCause::Unspecified, "not specified, everything cancelled"},
    {Type::Cancel, ClearCause::ByRadio, "cleared by the radio itself"},
    {Type::Cancel, ClearCause::NoContact, "no radio contact"},
    {Type::Cancel, ClearCause::TooLong, "message or transmission too long"},
    {Type::Cancel, ClearCause::CodingImpossible, "coding not possible"},
    {Type::Cancel, ClearCause::EndedAbnormally, "call ended abnormally"},
};

constexpr CauseRow ToRadioRows[] = {
    {Type::Disconnect, ClearCause::EndCall, "end the call"},
    {Type::Cancel, ClearCause::CancelAttempt, "cancel message or call set-up"},
    {Type::Cancel, ClearCause::CancelInclude, "cancel set-up of an include call"},
    {Type::Cancel, ClearCause::AbortDiversion, "abort setting of a diversion"},
    {Type::Cancel, ClearCause::CancelDataCall, "cancel set-up of a data call"},
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
    const char* toRadio; // empty: not used in this direction
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
    for (const CauseRow& row : rows)
        if (row.type == type && row.cause == cause)
            return row.text;
    return nullptr;
}

std::string Hex(std::uint8_t octet)
{
    return ToHex(OctetSpan(&octet, 1)) + "h";
}

// The upper half of an acknowledgement's type tells the outcome, whatever the cause.
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

const char* Find(std::uint8_t type, std::uint8_t cause, Direction direction)
{
    if (const char* text = Find(BothWaysRows, type, cause))
        return text;
    return direction == Direction::ToRadio ? Find(ToRadioRows, type, cause)
                                           : Find(FromRadioRows, type, cause);
}

} // namespace

bool IsKnownCause(std::uint8_t type, std::uint8_t cause, Direction direction)
{
    return Find(type, cause, direction) != nullptr;
}

std::string CauseText(std::uint8_t type, std::uint8_t cause, Direction direction)
{
    const char* text = Find(type, cause, direction);
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
