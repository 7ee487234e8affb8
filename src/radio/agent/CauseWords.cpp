#include "radio/agent/CauseWords.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "map27/codec/Causes.h"
#include "map27/codec/Messages.h"
#include "radio/base/TextIds.h"
#include "radio/line/RadioCause.h"

namespace {

namespace Type = map27::Type;
namespace Cause = map27::Cause;
namespace ClearCause = map27::ClearCause;
namespace Reason = map27::ProtocolReason;

struct Row {
    int type;
    int cause;
    int text;
};

// Of a message or a call that is set up (E0 and E4, D0 and D4).
constexpr Row RequestRows[] = {
    {Type::MessageNegative, Cause::Invalid, RadioText::CauseRejected},
    {Type::MessageNegative, Cause::Unreachable, RadioText::CauseUnreachable},
    {Type::MessageNegative, Cause::DivertedNoRetry, RadioText::CauseDiverted},
    {Type::MessageNegative, Cause::NotedForCallBack, RadioText::CauseWillCallBack},
    {Type::MessageNegative, Cause::Aborted, RadioText::CauseAborted},
    {Type::MessageNegative, Cause::Overloaded, RadioText::CauseOverloaded},
    {Type::MessageNegative, Cause::EngagedOrRefused, RadioText::CauseEngaged},
    {Type::MessageNegative, Cause::NoLongMessages, RadioText::CauseNoLongMessages},
    {Type::MessageNegative, Cause::DivertedUnavailable, RadioText::CauseDivertedUnavailable},
    {Type::MessageNegative, Cause::DivertedToGroup, RadioText::CauseDivertedToGroup},
    {Type::MessageQueued, Cause::Alerting, RadioText::CauseAlerting},
    {Type::MessageQueued, Cause::SystemBusy, RadioText::CauseSystemBusy},
    {Type::MessageQueued, Cause::EmergencyProceeding, RadioText::CauseEmergencyProceeding},
    {Type::MessageQueued, Cause::UnitBusy, RadioText::CauseUnitBusy},
    {Type::MessageQueued, Cause::SentInParts, RadioText::CauseSentInParts},
    {Type::MessageQueued, Cause::DivertedRetry, RadioText::CauseDivertedRetry},
    {Type::MessageQueued, Cause::DivertedToGroupRetry, RadioText::CauseDivertedToGroupRetry},
};

constexpr Row Rows[] = {
    {Type::ReceiveWarning, Cause::TransmissionDisabled, RadioText::CauseTransmissionDisabled},
    {Type::ReceiveWarning, Cause::SystemBusy, RadioText::CauseSystemBusy},
    {Type::ReceiveWarning, Cause::CallTimeNearlyOver, RadioText::CauseTimeNearlyOver},
    {Type::ReceiveNegative, Cause::CallerGaveUp, RadioText::CauseCallerGaveUp},
    {Type::ReceiveNegative, Cause::NotedForCallBack, RadioText::CauseNotedForCallBack},
    {Type::Disconnect, ClearCause::EndedNormally, RadioText::CauseEndedNormally},
    {Type::Cancel, ClearCause::Unspecified, RadioText::CauseUnspecified},
    {Type::Cancel, ClearCause::ByRadio, RadioText::CauseByRadio},
    {Type::Cancel, ClearCause::NoContact, RadioText::CauseNoContact},
    {Type::Cancel, ClearCause::TooLong, RadioText::CauseTooLong},
    {Type::Cancel, ClearCause::CodingImpossible, RadioText::CauseCodingImpossible},
    {Type::Cancel, ClearCause::EndedAbnormally, RadioText::CauseEndedAbnormally},
    {Type::ProtocolInfo, Reason::Unrecognised, RadioText::CauseUnrecognised},
    {Type::ProtocolInfo, Reason::NotSupported, RadioText::CauseNotSupported},
    {Type::ProtocolInfo, Reason::StateMismatch, RadioText::CauseStateMismatch},
    {Type::ProtocolInfo, Reason::CodingNotSupported, RadioText::CauseCodingNotSupported},
    {Type::ProtocolInfo, Reason::BusyLocally, RadioText::CauseBusyLocally},
    {Type::ProtocolInfo, Reason::ReadyForRemote, RadioText::CauseReadyForRemote},
    {Type::Call, 0, RadioText::CauseCallCameIn},
    {Type::EmergencyCall, 0, RadioText::CauseCallCameIn},
    {0, 0, RadioText::CauseLinkLost},
};

// What to do about a message that has ended so. What only says that it is not known tells to ask first.
constexpr Row AdviceRows[] = {
    {Type::MessageNegative, Cause::Invalid, RadioText::AdviceCheckNumber},
    {Type::MessageNegative, Cause::Unreachable, RadioText::AdviceLater},
    {Type::MessageNegative, Cause::DivertedNoRetry, RadioText::AdviceDiverted},
    {Type::MessageNegative, Cause::Aborted, RadioText::AdviceAgain},
    {Type::MessageNegative, Cause::Overloaded, RadioText::AdviceAgain},
    {Type::MessageNegative, Cause::EngagedOrRefused, RadioText::AdviceAgain},
    {Type::MessageNegative, Cause::NoLongMessages, RadioText::AdviceShorter},
    {Type::MessageNegative, Cause::DivertedUnavailable, RadioText::AdviceLater},
    {Type::MessageNegative, Cause::DivertedToGroup, RadioText::AdviceDiverted},
    {Type::Cancel, ClearCause::TooLong, RadioText::AdviceShorter},
    {Type::Cancel, ClearCause::CodingImpossible, RadioText::AdvicePlainLetters},
    {Type::ProtocolInfo, Reason::Unrecognised, RadioText::AdviceUnable},
    {Type::ProtocolInfo, Reason::NotSupported, RadioText::AdviceUnable},
    {Type::ProtocolInfo, Reason::StateMismatch, RadioText::AdviceAgain},
    {Type::ProtocolInfo, Reason::CodingNotSupported, RadioText::AdvicePlainLetters},
    {Type::ProtocolInfo, Reason::BusyLocally, RadioText::AdviceAgain},
};

template <std::size_t Count> int Find(const Row (&rows)[Count], int type, int cause)
{
    for (const Row& row : rows)
        if (row.type == type && row.cause == cause)
            return row.text;
    return RadioText::CauseUnknown;
}

int TextOf(const RadioCause& cause)
{
    if (cause.type == Type::SetupNegative || cause.type == Type::MessageNegative)
        return Find(RequestRows, Type::MessageNegative, cause.cause);
    if (cause.type == Type::SetupQueued || cause.type == Type::MessageQueued)
        return Find(RequestRows, Type::MessageQueued, cause.cause);
    return Find(Rows, cause.type, cause.cause);
}

struct Sentences {
    int progress;
    int end;
};

Sentences SentencesOf(TransactionKind kind)
{
    switch (kind) {
    case TransactionKind::Status:
    case TransactionKind::Text:
        return {RadioText::MessageGoesOn, RadioText::MessageNotConfirmed};
    case TransactionKind::Regroup:
    case TransactionKind::GroupName:
        return {RadioText::CommandGoesOn, RadioText::CommandNotConfirmed};
    case TransactionKind::CallSetUp:
        return {RadioText::SetUpGoesOn, RadioText::SetUpFailed};
    case TransactionKind::CallRinging:
        return {RadioText::RingingGoesOn, RadioText::RingingEnded};
    case TransactionKind::CallConnected:
        return {RadioText::CallGoesOn, RadioText::CallEnded};
    case TransactionKind::None:
        break;
    }
    return {RadioText::RadioTells, RadioText::RadioTells};
}

} // namespace

QString CauseWords(const IStringSource& strings, const RadioCause& cause, const QString& target)
{
    const int text = TextOf(cause);
    const QString number = QString::number(cause.cause, 16).toUpper().rightJustified(2, QLatin1Char('0'));
    return FormatMessage(strings, text, {text == RadioText::CauseUnknown ? number : target});
}

QString CauseAdvice(const IStringSource& strings, const RadioCause& cause)
{
    const int fallback = IsRefusal(cause) ? RadioText::AdviceAgain : RadioText::AdviceAskFirst;
    for (const Row& row : AdviceRows)
        if (row.type == cause.type && row.cause == cause.cause)
            return strings.LoadString(row.text);
    return strings.LoadString(fallback);
}

bool IsRefusal(const RadioCause& cause)
{
    return cause.type == Type::MessageNegative || cause.type == Type::ProtocolInfo ||
           (cause.type == Type::Cancel &&
            (cause.cause == ClearCause::TooLong || cause.cause == ClearCause::CodingImpossible));
}

bool IsProgress(const RadioCause& cause)
{
    return (cause.type & 0xF0) == (Type::MessageQueued & 0xF0);
}

QString CauseSentence(const IStringSource& strings, TransactionKind kind, const QString& party,
                      bool isProgress, const QString& words)
{
    const Sentences sentences = SentencesOf(kind);
    if (kind == TransactionKind::None)
        return FormatMessage(strings, sentences.end, {words});
    return FormatMessage(strings, isProgress ? sentences.progress : sentences.end, {party, words});
}
