#include "map27/terminal/TerminalTable.h"

#include "map27/codec/Causes.h"

#include <array>

namespace map27 {

namespace {

using Row = std::array<Transition, TerminalStateCount>;

constexpr auto Idle = TerminalState::Idle;
constexpr auto Message = TerminalState::MessageWait;
constexpr auto Outcall = TerminalState::OutcallWait;
constexpr auto Incall = TerminalState::IncallWait;
constexpr auto Active = TerminalState::Active;

constexpr auto Late = TerminalAction::ReportLate;
constexpr auto Quiet = TerminalAction::Quietly;
constexpr auto TellMsg = TerminalAction::TellMessage;
constexpr auto TellCall = TerminalAction::TellCall;
constexpr auto TellAns = TerminalAction::TellAnswer;
constexpr auto FailMsg = TerminalAction::FailMessage;
constexpr auto FailCall = TerminalAction::FailCall;
constexpr auto FailAns = TerminalAction::FailAnswer;
constexpr auto Refusal = TerminalAction::ReportRefusal;
constexpr auto Cleared = TerminalAction::TellCleared;
constexpr auto First = TerminalAction::TellClearedFirst;
constexpr auto Nothing = TerminalAction::Nothing;

// A row for each RadioInput, a column for each TerminalState, both in their order. A late acknowledgement
// never ends a call (MAP27 v1.5, figure 5-2 would allow it).
// clang-format off
constexpr std::array<Row, RadioInputCount> Table{{
    // Idle               MessageWait         OutcallWait          IncallWait         Active
    // MessageDone
    {{{Late, Idle},      {TellMsg, Idle},    {Late, Outcall},     {Late, Incall},    {Late, Active}}},
    // MessageQueued
    {{{Late, Idle},      {TellMsg, Message}, {Late, Outcall},     {Late, Incall},    {Late, Active}}},
    // MessageFailed
    {{{Late, Idle},      {TellMsg, Idle},    {Late, Outcall},     {Late, Incall},    {Late, Active}}},
    // CallConnected
    {{{Late, Idle},      {Late, Message},    {TellCall, Active},  {Late, Incall},    {Quiet, Active}}},
    // CallQueued
    {{{Late, Idle},      {Late, Message},    {TellCall, Outcall}, {Late, Incall},    {Late, Active}}},
    // CallFailed
    {{{Late, Idle},      {Late, Message},    {TellCall, Idle},    {Late, Incall},    {Late, Active}}},
    // AnswerConnected
    {{{Late, Idle},      {Late, Message},    {Late, Outcall},     {TellAns, Active}, {Quiet, Active}}},
    // AnswerWarning
    {{{Late, Idle},      {Late, Message},    {Late, Outcall},     {TellAns, Incall}, {TellAns, Active}}},
    // AnswerFailed
    {{{Late, Idle},      {Late, Message},    {Late, Outcall},     {TellAns, Idle},   {Late, Active}}},
    // CallBackNoted
    {{{TellAns, Idle},   {TellAns, Message}, {TellAns, Outcall},  {TellAns, Idle},   {TellAns, Active}}},
    // ClearedNormal
    {{{Late, Idle},      {Late, Message},    {Cleared, Idle},     {Cleared, Idle},   {Cleared, Idle}}},
    // ClearedAbnormal
    {{{Late, Idle},      {Cleared, Idle},    {Cleared, Idle},     {Cleared, Idle},   {Cleared, Idle}}},
    // CallEndedAbnormal
    {{{Late, Idle},      {Late, Message},    {Cleared, Idle},     {Cleared, Idle},   {Cleared, Idle}}},
    // Refused
    {{{Refusal, Idle},   {FailMsg, Idle},    {FailCall, Idle},    {FailAns, Idle},   {Refusal, Active}}},
    // IncomingConnected
    {{{Nothing, Active}, {First, Active},    {First, Active},     {First, Active},   {First, Active}}},
    // IncomingRinging
    {{{Nothing, Incall}, {First, Incall},    {First, Incall},     {First, Incall},   {First, Incall}}},
    // LinkLost
    {{{Nothing, Idle},   {First, Idle},      {First, Idle},       {First, Idle},     {First, Idle}}},
}};
// clang-format on

} // namespace

std::optional<RadioInput> InputOf(const AcknowledgementMessage& message)
{
    switch (message.TypeOctet()) {
    case Type::MessagePositive:
        return RadioInput::MessageDone;
    case Type::MessageQueued:
        return RadioInput::MessageQueued;
    case Type::MessageNegative:
        return RadioInput::MessageFailed;
    case Type::SetupPositive:
        return RadioInput::CallConnected;
    case Type::SetupQueued:
        return RadioInput::CallQueued;
    case Type::SetupNegative:
        return RadioInput::CallFailed;
    case Type::ReceivePositive:
        return RadioInput::AnswerConnected;
    case Type::ReceiveWarning:
        return RadioInput::AnswerWarning;
    case Type::ReceiveNegative:
        return message.cause == Cause::NotedForCallBack ? RadioInput::CallBackNoted
                                                        : RadioInput::AnswerFailed;
    default:
        return std::nullopt;
    }
}

RadioInput InputOf(const ClearMessage& message)
{
    if (!message.abnormal)
        return RadioInput::ClearedNormal;
    return message.cause == ClearCause::EndedAbnormally ? RadioInput::CallEndedAbnormal
                                                        : RadioInput::ClearedAbnormal;
}

Transition Decide(TerminalState state, RadioInput input)
{
    return Table[static_cast<std::size_t>(input)][static_cast<std::size_t>(state)];
}

const char* TerminalStateText(TerminalState state)
{
    switch (state) {
    case TerminalState::Idle:
        return "idle";
    case TerminalState::MessageWait:
        return "message being sent";
    case TerminalState::OutcallWait:
        return "call being set up";
    case TerminalState::IncallWait:
        return "incoming call rings";
    case TerminalState::Active:
        return "in a call";
    }
    return "unknown";
}

} // namespace map27
