#include "radio/agent/AgentRules.h"

#include "radio/base/TextIds.h"

#include <initializer_list>

namespace {

using Kind = TransactionKind;
using Trigger = AgentTrigger;
using Request = AgentReaction::Request;
using OnError = AgentReaction::OnError;

constexpr unsigned Bit(Kind kind)
{
    return 1U << static_cast<unsigned>(kind);
}

constexpr unsigned Messages = Bit(Kind::Status) | Bit(Kind::Text);
constexpr unsigned Groups = Bit(Kind::Regroup) | Bit(Kind::GroupName);
constexpr unsigned Calls = Bit(Kind::CallSetUp) | Bit(Kind::CallConnected) | Bit(Kind::CallRinging);

struct Rule {
    unsigned kinds;
    Trigger trigger;
    AgentReaction reaction;
};

const Rule Rules[] = {
    {Bit(Kind::CallSetUp),
     Trigger::CallConnected,
     {.showFirst = true,
      .writeRecord = true,
      .forgetMessage = true,
      .logText = RadioText::ConnectedTalk,
      .buttonText = RadioText::Hungup,
      .next = Kind::CallConnected}},
    {Bit(Kind::CallSetUp),
     Trigger::CallProceeding,
     {.logText = RadioText::CallingWait, .next = Kind::CallSetUp}},
    {Bit(Kind::CallSetUp),
     Trigger::CallFailed,
     {.forgetMessage = true, .hide = true, .warning = RadioText::CallFailed}},

    {Bit(Kind::CallRinging),
     Trigger::AnswerConnected,
     {.logText = RadioText::ConnectedTalk, .buttonText = RadioText::Hungup, .next = Kind::CallConnected}},
    {Bit(Kind::CallRinging), Trigger::AnswerFailed, {.hide = true}},

    {Bit(Kind::Status), Trigger::MessageSending, {.logText = RadioText::SendingWait, .next = Kind::Status}},
    {Bit(Kind::Text), Trigger::MessageSending, {.logText = RadioText::SendingWait, .next = Kind::Text}},
    {Messages,
     Trigger::MessageDelivered,
     {.writeRecord = true, .forgetMessage = true, .reflectScada = true, .hide = true}},
    {Messages,
     Trigger::MessageFailed,
     {.forgetMessage = true, .cancelScada = true, .hide = true, .warning = RadioText::MessageNotSent}},

    {Bit(Kind::Regroup),
     Trigger::MessageSending,
     {.logText = RadioText::RegroupingWait, .next = Kind::Regroup}},
    {Bit(Kind::GroupName),
     Trigger::MessageSending,
     {.logText = RadioText::RegroupingWait, .next = Kind::GroupName}},
    {Bit(Kind::Regroup), Trigger::MessageDelivered, {.storeRegroup = true, .hide = true}},
    {Bit(Kind::GroupName), Trigger::MessageDelivered, {.hide = true}},
    {Groups,
     Trigger::MessageFailed,
     {.cancelRegroup = true, .hide = true, .warning = RadioText::RegroupingFailed}},

    {Calls | Messages,
     Trigger::Cleared,
     {.forgetMessage = true, .logText = RadioText::Cleared, .hide = true}},
    {Groups, Trigger::Cleared, {.cancelRegroup = true, .logText = RadioText::Cleared, .hide = true}},

    {Bit(Kind::CallSetUp) | Messages | Bit(Kind::GroupName),
     Trigger::MainButton,
     {.forgetMessage = true, .request = Request::Cancel, .onError = OnError::LogAndStay, .hide = true}},
    {Bit(Kind::Regroup),
     Trigger::MainButton,
     {.cancelRegroup = true, .request = Request::Cancel, .onError = OnError::LogAndStay, .hide = true}},
    {Bit(Kind::CallConnected),
     Trigger::MainButton,
     {.request = Request::Clear, .onError = OnError::LogAndStay, .hide = true}},
    {Bit(Kind::CallRinging),
     Trigger::MainButton,
     {.next = Kind::CallRinging, .request = Request::Answer, .onError = OnError::LogAndStay}},

    {Bit(Kind::CallSetUp) | Bit(Kind::CallRinging) | Messages | Bit(Kind::GroupName),
     Trigger::CloseButton,
     {.forgetMessage = true, .request = Request::Cancel, .hide = true}},
    {Bit(Kind::CallConnected),
     Trigger::CloseButton,
     {.request = Request::Clear, .onError = OnError::Warn, .hide = true}},
    {Bit(Kind::Regroup),
     Trigger::CloseButton,
     {.cancelRegroup = true, .request = Request::Cancel, .onError = OnError::LogAndStay, .hide = true}},
    {Bit(Kind::None), Trigger::CloseButton, {.hide = true}},
};

} // namespace

const AgentReaction* FindReaction(TransactionKind kind, AgentTrigger trigger)
{
    for (const Rule& rule : Rules)
        if (rule.trigger == trigger && (rule.kinds & Bit(kind)) != 0)
            return &rule.reaction;
    return nullptr;
}
