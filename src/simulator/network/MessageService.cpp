#include "simulator/network/MessageService.h"

#include "map27/codec/Causes.h"
#include "simulator/network/GroupCommand.h"

#include <algorithm>

namespace sim {

namespace {

constexpr Milliseconds NetworkReaction{300};

bool IsDigit(std::uint8_t octet)
{
    return (octet >= '0' && octet <= '9') || octet == '*' || octet == '#' || octet == 0;
}

// 0-9, * and #, and the filler; the other values are reserved (MAP27 v1.5, 5.2.1.2).
bool IsBcdDigit(std::uint8_t octet)
{
    return octet <= 0x09 || octet == 0x0B || octet == 0x0C || octet == 0x0F;
}

// Whether there is anything to code, and every octet is a character in the coding.
bool CanBeCoded(const map27::ShortData& data)
{
    const auto all = [&](auto isCharacter) { return std::ranges::all_of(data.octets, isCharacter); };
    if (data.octets.empty())
        return false;
    switch (data.coding) {
    case map27::Coding::Ccitt5:
    case map27::Coding::TelexAscii:
        return all([](std::uint8_t octet) { return octet < 0x80; });
    case map27::Coding::BcdAscii:
        return all(IsDigit);
    case map27::Coding::Bcd:
        return all(IsBcdDigit);
    case map27::Coding::Telex:
        return all([](std::uint8_t octet) { return octet <= 0x1F; });
    default:
        return true;
    }
}

} // namespace

void MessageService::Send(const map27::StatusMessage& message)
{
    if (message.status > 31)
        m_air.console.Tell(map27::ProtocolInfoMessage{map27::ProtocolReason::CodingNotSupported});
    else
        Start(message.party, Service::Status, message);
}

void MessageService::Send(const map27::ShortDataMessage& message)
{
    if (!map27::MostUnits(message.data.coding, message.size))
        m_air.console.Tell(map27::ProtocolInfoMessage{map27::ProtocolReason::CodingNotSupported});
    else if (!CanBeCoded(message.data))
        m_air.console.Tell(
            map27::ClearMessage{true, message.party.address, map27::ClearCause::CodingImpossible});
    else if (!map27::Fits(message.data, message.size))
        m_air.console.Tell(map27::ClearMessage{true, message.party.address, map27::ClearCause::TooLong});
    else
        Start(message.party, IsGroupCommand(message.data) ? Service::Regroup : Service::Text, message);
}

void MessageService::Cancel()
{
    if (!IsOpen())
        return;
    m_attempt.Stop();
    Acknowledge(map27::AckOutcome::Negative, map27::Cause::Aborted);
}

void MessageService::Start(const map27::Party& called, Service service, map27::ToRadio message)
{
    m_called = called;
    m_service = service;
    std::vector<Step> steps = Steps(called, service, message);
    m_attempt.Start(std::move(steps),
                    [this, message = std::move(message)](StepOutcome outcome, std::uint8_t cause) {
                        if (outcome == StepOutcome::Success)
                            m_delivered(message);
                        Acknowledge(AckOutcomeOf(outcome), cause);
                    });
}

std::vector<Step> MessageService::Steps(const map27::Party& called, Service service,
                                        const map27::ToRadio& message) const
{
    std::vector<Step> steps = m_air.scenario.fleet.StepsTo(called, service);
    const auto* data = std::get_if<map27::ShortDataMessage>(&message);
    const MediumTexts medium = m_air.scenario.network.mediumTexts;
    if (!data || data->size != map27::DataSize::Medium || medium == MediumTexts::Carried || steps.empty())
        return steps;
    if (medium == MediumTexts::Refused)
        return {{NetworkReaction, StepOutcome::Failure, map27::Cause::NoLongMessages}};
    steps.insert(steps.begin(), {NetworkReaction, StepOutcome::Pending, map27::Cause::SentInParts});
    return steps;
}

void MessageService::Acknowledge(map27::AckOutcome outcome, std::uint8_t cause)
{
    const map27::Party party = m_air.AcknowledgedParty(m_called, m_service, cause);
    m_air.console.Tell(map27::AcknowledgementMessage{outcome, map27::AckSubject::Message, party, cause});
}

} // namespace sim
