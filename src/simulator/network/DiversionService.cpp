#include "simulator/network/DiversionService.h"

#include "simulator/network/Outcome.h"

namespace sim {

namespace {

constexpr std::uint8_t success = 0x00;
constexpr std::uint8_t invalid = 0x03;
constexpr std::uint8_t aborted = 0x08;
constexpr Milliseconds reaction{300};

// Of the info octet.
constexpr std::uint8_t speechOnly = 0x08;
constexpr std::uint8_t dataOnly = 0x10;
constexpr std::uint8_t kinds = 0x18;
constexpr std::uint8_t thirdParty = 0x01;
constexpr std::uint8_t whose = 0x03;
constexpr std::uint8_t byRecipient = 0x02;

bool HasSpeech(std::uint8_t info)
{
    return (info & kinds) != dataOnly;
}

bool HasData(std::uint8_t info)
{
    return (info & kinds) != speechOnly;
}

} // namespace

void DiversionService::Set(const map27::DiversionRequestMessage& message)
{
    map27::Address from = m_air.scenario.radio.address;
    const bool third = (message.info & thirdParty) != 0;
    if (third)
        from = message.blocked ? message.blocked->address : map27::Address{};
    const map27::Address to = message.target.address;
    const bool known = !third || m_fleet.Find(from);
    const bool possible = known && from != to && m_fleet.Find(to);
    const Diversion diversion{from, to, HasSpeech(message.info), HasData(message.info)};
    Start(to, possible, [this, diversion] {
        std::erase_if(m_fleet.diversions, [&](const Diversion& old) { return old.from == diversion.from; });
        m_fleet.diversions.push_back(diversion);
    });
}

void DiversionService::Cancel(const map27::DiversionCancelMessage& message)
{
    const std::uint8_t who = message.info & whose;
    const map27::Address own = m_air.scenario.radio.address;
    const map27::Address named = message.party.address;
    Start(named, true, [this, who, own, named] {
        std::erase_if(m_fleet.diversions, [&](const Diversion& old) {
            if (who == byRecipient)
                return old.to == own;
            return old.from == (who == thirdParty ? named : own);
        });
    });
}

template <typename Change> void DiversionService::Start(map27::Address named, bool possible, Change change)
{
    m_party = m_air.AcknowledgedParty({named, {}});
    const StepOutcome end = possible ? StepOutcome::Success : StepOutcome::Failure;
    m_attempt.Start({{reaction, end, possible ? success : invalid}},
                    [this, change = std::move(change)](StepOutcome outcome, std::uint8_t cause) {
                        if (outcome == StepOutcome::Success)
                            change();
                        Acknowledge(AckOutcomeOf(outcome), cause);
                    });
}

void DiversionService::Abort()
{
    if (!IsOpen())
        return;
    m_attempt.Stop();
    Acknowledge(map27::AckOutcome::Negative, aborted);
}

void DiversionService::Acknowledge(map27::AckOutcome outcome, std::uint8_t cause)
{
    m_air.console.Tell(map27::AcknowledgementMessage{outcome, map27::AckSubject::Diversion, m_party, cause});
}

} // namespace sim
