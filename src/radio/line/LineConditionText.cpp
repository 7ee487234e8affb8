#include "radio/line/LineConditionText.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "radio/base/TextIds.h"

namespace {

int TextIdOf(map27::LinkFailure reason)
{
    if (reason == map27::LinkFailure::PeerReset)
        return RadioText::LinkLostRestarted;
    if (reason == map27::LinkFailure::RetriesUsedUp)
        return RadioText::LinkLostRetries;
    return RadioText::LinkLostSilent;
}

} // namespace

LinkStatus::State LinkStateOf(LineCondition::Kind kind)
{
    switch (kind) {
    case LineCondition::Kind::Connecting:
        return LinkStatus::State::Connecting;
    case LineCondition::Kind::Ready:
        return LinkStatus::State::Ready;
    case LineCondition::Kind::Owes:
        return LinkStatus::State::Silent;
    default:
        return LinkStatus::State::Lost;
    }
}

QString LineConditionText(const LineCondition& condition, const LinePort& port, const IStringSource& strings)
{
    using enum LineCondition::Kind;
    const auto text = [&](int id) { return FormatMessage(strings, id, {port.name}); };
    switch (condition.kind) {
    case Connecting:
        return text(RadioText::LinkConnecting);
    case Ready:
        break;
    case LinkLost:
        return text(TextIdOf(condition.reason));
    case PortFailed:
        return FormatMessage(strings, RadioText::LinkLostPort, {PortProblemText(condition.problem, strings)});
    case Owes:
        return text(RadioText::LinkOwes);
    case Silent:
        return text(RadioText::LinkLostSilent);
    case Foreign:
        return FormatMessage(strings, RadioText::LinkForeign, {port.name, condition.detail});
    case Noise:
        return FormatMessage(strings, RadioText::LinkNoise, {port.name, QString::number(port.bitsPerSecond)});
    case Damaged:
        return text(RadioText::LinkDamaged);
    case Echo:
        return FormatMessage(strings, RadioText::LinkLostPort, {text(RadioText::LinkEcho)});
    }
    return {};
}
