#include "map27/check/CheckSteps.h"

#include "map27/codec/Causes.h"
#include "map27/codec/CharacterCoding.h"
#include "map27/trace/MessageObserver.h"
#include "map27/trace/MessageWords.h"

namespace map27 {

namespace {

using Verdict = CheckReport::Verdict;
using Way = CheckStep::Way;

constexpr Milliseconds UntilDelivered{30000};
constexpr Milliseconds UntilCancelled{2000};
constexpr Milliseconds Silence{1000};
constexpr int QuickQuestions = 20; // so that the numbers pass 16, which is doubled on the line

template <std::uint8_t Wanted> bool IsOfType(OctetSpan message)
{
    return !message.empty() && message[0] == Wanted;
}

// Of something that the radio was sent; the others it tells unasked.
bool IsProtocolAnswer(OctetSpan message)
{
    return message.size() > 1 && message[0] == Type::ProtocolInfo && message[1] < 0x80 &&
           message[1] != ProtocolReason::ReadyForRemote;
}

std::optional<std::uint8_t> CauseOf(OctetSpan message)
{
    const auto decoded = DecodeFromRadio(message);
    const auto* known = std::get_if<FromRadio>(&decoded);
    if (known == nullptr)
        return std::nullopt;
    if (const auto* answer = std::get_if<AcknowledgementMessage>(known))
        return answer->cause;
    if (const auto* clear = std::get_if<ClearMessage>(known))
        return clear->cause;
    return std::nullopt;
}

// Of this message, or of one that was cancelled.
bool IsEnd(OctetSpan message)
{
    return IsProtocolAnswer(message) || IsOfType<Type::Cancel>(message) ||
           IsOfType<Type::MessageNegative>(message) || IsOfType<Type::MessagePositive>(message);
}

bool IsOutcome(OctetSpan message)
{
    const bool isOfCancelled = IsOfType<Type::MessageNegative>(message) && CauseOf(message) == Cause::Aborted;
    return IsEnd(message) && !isOfCancelled;
}

// The radio looked at the message and did not want it. What failed otherwise may have gone out.
bool IsRefusal(OctetSpan message)
{
    switch (message[0]) {
    case Type::ProtocolInfo:
        return message[1] == ProtocolReason::Unrecognised || message[1] == ProtocolReason::NotSupported ||
               message[1] == ProtocolReason::CodingNotSupported;
    case Type::Cancel:
        return CauseOf(message) == ClearCause::CodingImpossible;
    case Type::MessageNegative:
        return CauseOf(message) == Cause::Invalid;
    default:
        return false;
    }
}

Octets Question(RadioInfo info)
{
    return EncodeToRadio(InterrogationMessage{static_cast<std::uint8_t>(info)});
}

std::string WordsOf(OctetSpan answer)
{
    return MessageWords(answer, Direction::FromRadio);
}

// What a question was answered with; what is wrong with it strikes by itself.
template <std::uint8_t Wanted> CheckStep Ask(std::string_view name, RadioInfo info)
{
    return {
        .name = name,
        .message = Question(info),
        .isAnswer = [](OctetSpan message) { return IsOfType<Wanted>(message) || IsProtocolAnswer(message); },
        .judge =
            [name](CheckReport& report, OctetSpan answer, Milliseconds took) {
                const bool known = answer[0] == Wanted;
                bool isSound = known;
                for (const Finding& finding : JudgeMessage(answer, Direction::FromRadio))
                    isSound = isSound && finding.weight != Finding::Weight::Breach;
                report.Add(name,
                           isSound ? Verdict::Good
                           : known ? Verdict::Deviates
                                   : Verdict::Noted,
                           WordsOf(answer), took);
            },
        .isQuestion = true};
}

CheckStep Refused(std::string_view name, Octets message, Milliseconds limit = Milliseconds{10000})
{
    return {.name = name,
            .message = std::move(message),
            .isAnswer = IsOutcome,
            .limit = limit,
            .judge =
                [name](CheckReport& report, OctetSpan answer, Milliseconds took) {
                    if (IsRefusal(answer))
                        report.Add(name, Verdict::Good, WordsOf(answer), took);
                    else if (IsOfType<Type::MessagePositive>(answer))
                        report.Add(name, Verdict::Deviates, WordsOf(answer), took);
                    else
                        report.Add(name, Verdict::Noted, "not decided: " + WordsOf(answer), took);
                }};
}

CheckStep Sent(std::string_view name, Octets message)
{
    return {.name = name,
            .message = std::move(message),
            .isAnswer = IsOutcome,
            .limit = UntilDelivered,
            .judge =
                [name](CheckReport& report, OctetSpan answer, Milliseconds took) {
                    const bool isDelivered = IsOfType<Type::MessagePositive>(answer);
                    report.Add(name, isDelivered ? Verdict::Good : Verdict::Noted, WordsOf(answer), took);
                }};
}

// Nothing of this goes over the air.
void AddLinkSteps(std::vector<CheckStep>& steps)
{
    const Octets condition = Question(RadioInfo::OperatingCondition);
    Octets longer = condition;
    longer.insert(longer.end(), {0x5A, 0x10, 0x10, 0x16, 0x10});
    const auto isCondition = IsOfType<Type::OperatingCondition>;
    steps.push_back({.name = "extra-octets",
                     .message = longer,
                     .isAnswer = isCondition,
                     .answered = "octets after the end of a message are ignored, doubled ones understood"});
    steps.push_back({.name = "flags-in-fcs",
                     .way = Way::FlagFcs,
                     .message = condition,
                     .isAnswer = isCondition,
                     .answered = "a check sequence of flags is understood"});
    // The condition may come unasked, the personality does not.
    const Octets personality = Question(RadioInfo::Personality);
    steps.push_back({.name = "damaged-frame", .way = Way::Damaged, .message = personality, .limit = Silence});
    steps.push_back({.name = "after-damage",
                     .message = personality,
                     .isAnswer =
                         [](OctetSpan message) {
                             return IsOfType<Type::Personality>(message) || IsProtocolAnswer(message);
                         },
                     .answered = "the number of the damaged frame is free"});
    // What comes too soon to have been asked for may be passed over.
    steps.push_back({.name = "repeated-frame", .way = Way::Pause});
    steps.push_back({.name = "repeated-frame", .way = Way::Repeated, .limit = Silence});
    for (int count = 0; count < QuickQuestions; ++count)
        steps.push_back({.name = "quick-questions",
                         .message = condition,
                         .isAnswer = isCondition,
                         .judge = [](CheckReport&, OctetSpan, Milliseconds) {},
                         .isQuestion = true});
    steps.push_back(Refused("unknown-message", {0xC9, 0x00, 0x00}));
    steps.push_back(Refused("unknown-question", {Type::Personality, 0x7F}));
}

void AddTransmittingSteps(std::vector<CheckStep>& steps, Address to, std::uint8_t status)
{
    const auto head = [to](std::uint8_t type) {
        return Octets{type, to.prefix, static_cast<std::uint8_t>(to.ident >> 8),
                      static_cast<std::uint8_t>(to.ident & 0xFF), 0x00};
    };
    const auto with = [](Octets octets, std::initializer_list<std::uint8_t> more) {
        octets.insert(octets.end(), more);
        return octets;
    };
    steps.push_back(Sent("status", EncodeToRadio(StatusMessage{{to, {}}, status})));
    const auto text = EncodeText("VeltorKyn radio check", TextCoding::SevenBit);
    if (const auto* encoded = std::get_if<EncodedText>(&text))
        steps.push_back(
            Sent("short-text", EncodeToRadio(ShortDataMessage{encoded->size, {to, {}}, encoded->data})));
    // 8185 is the network's own. The others are for the same radio, in case that this one sends them.
    steps.push_back(
        Refused("reserved-ident", {Type::Status, to.prefix, 0x1F, 0xF9, 0x00, status}, UntilDelivered));
    steps.push_back(Refused("status-32", with(head(Type::Status), {32}), UntilDelivered));
    steps.push_back(Refused("reserved-coding", with(head(Type::Sst), {0xC7, 0x41}), UntilDelivered));
    steps.push_back(Refused("empty-text", with(head(Type::Sst), {0xB7}), UntilDelivered));
    steps.push_back(Refused("reserved-digit", with(head(Type::Sst), {0x97, 0x01, 0x0A}), UntilDelivered));
    steps.push_back(Refused("long-free-format", with(head(Type::Mst), {0x07, 0x41}), UntilDelivered));
}

} // namespace

bool CheckStep::GoesOut() const
{
    return way == Way::Message && !message.empty() &&
           (message[0] == Type::Status || message[0] == Type::Sst || message[0] == Type::Mst);
}

CheckStep CancelOf(const CheckStep& step)
{
    return {.name = "cancel",
            .message = {Type::Cancel, step.message[1], step.message[2], step.message[3],
                        ClearCause::CancelAttempt},
            .isAnswer = IsEnd,
            .limit = UntilCancelled,
            .judge = [](CheckReport&, OctetSpan, Milliseconds) {}};
}

std::vector<CheckStep> CheckStepsFor(const CheckSettings& settings)
{
    std::vector<CheckStep> steps;
    steps.push_back(Ask<Type::Personality>("personality", RadioInfo::Personality));
    steps.push_back(Ask<Type::Numbering>("numbering", RadioInfo::Numbering));
    steps.push_back(Ask<Type::Settings>("settings", RadioInfo::Settings));
    steps.push_back(Ask<Type::OperatingCondition>("condition", RadioInfo::OperatingCondition));
    steps.push_back(Ask<Type::NetworkInfo>("network", RadioInfo::Network));
    AddLinkSteps(steps);
    if (settings.transmitTo)
        AddTransmittingSteps(steps, *settings.transmitTo, settings.status);
    if (settings.watch > Milliseconds{0})
        steps.push_back({.name = "keep-alive", .way = Way::Rest, .limit = settings.watch});
    steps.push_back({.name = "new-link", .way = Way::NewLink, .limit = Milliseconds{20000}});
    steps.push_back({.name = "after-new-link",
                     .message = Question(RadioInfo::OperatingCondition),
                     .isAnswer = IsOfType<Type::OperatingCondition>,
                     .answered = "the radio answers on the new link"});
    return steps;
}

} // namespace map27
