#include "simulator/network/Radio.h"

#include "simulator/network/RequestText.h"

#include <algorithm>
#include <utility>

namespace sim {

Radio::Radio(Scenario scenario, map27::LinkParameters link, std::uint64_t seed)
    : m_scenario(std::move(scenario)),
      m_random(seed),
      m_air{m_schedule, m_random, m_scenario, *this},
      m_link(link),
      m_reception(m_schedule, m_random, m_scenario.network.field, [this] { TellCondition(); }),
      m_interrogations(m_air),
      m_deliveries(m_air),
      m_messages(m_air, [this](const map27::ToRadio& message) { Reach(message); }),
      m_calls(
          m_air, [this] { TellCondition(); },
          [this](map27::Address from, Milliseconds after) { CallBack(from, after); }),
      m_diversions(m_air, m_scenario.fleet),
      m_faults(seed + 2)
{
    for (const FaultDescription& fault : faultDescriptions)
        m_faults.Set(fault.kind, m_scenario.faults.Of(fault.kind));
    BuildOutstations();
}

RadioOutput Radio::Connect(TimePoint now)
{
    Enter(now);
    DropEverything();
    m_link.Stop();
    Take(m_link.Start(now));
    return TakeOutput();
}

RadioOutput Radio::Disconnect(TimePoint now)
{
    Enter(now);
    DropEverything();
    m_link.Stop();
    return TakeOutput();
}

RadioOutput Radio::Feed(map27::OctetSpan octets, TimePoint now)
{
    Enter(now);
    Take(m_link.Feed(octets, m_now));
    return TakeOutput();
}

RadioOutput Radio::OnTime(TimePoint now)
{
    Enter(now);
    Take(m_link.OnTime(m_now));
    return TakeOutput();
}

Deadline Radio::NextDeadline() const
{
    return map27::Earlier(m_link.NextDeadline(), m_schedule.NextDeadline());
}

Radio::Result Radio::Perform(const Action& action, TimePoint now)
{
    Enter(now);
    std::string problem = CheckAction(action, m_scenario.fleet);
    if (problem.empty())
        problem = std::visit([this](const auto& known) { return Do(known); }, action);
    return {std::move(problem), TakeOutput()};
}

map27::OperatingConditionMessage Radio::Condition() const
{
    map27::OperatingConditionMessage condition;
    condition.inContact = m_reception.InContact();
    condition.offHook = m_calls.OffHook();
    condition.transmitting = m_calls.Transmitting();
    condition.fieldStrength = m_reception.Strength();
    condition.maxCallTimeCode = m_scenario.network.maxCallTimeCode;
    return condition;
}

std::string Radio::Tell(const map27::FromRadio& message)
{
    NoteLosses();
    map27::SendResult told = map27::SendResult::Accepted;
    for (const map27::Octets& octets : m_faults.Strike(message)) {
        auto [result, output] = m_link.Send(octets, m_now);
        if (result == map27::SendResult::Accepted)
            ++m_accepted;
        Take(std::move(output));
        if (told == map27::SendResult::Accepted)
            told = result;
    }
    switch (told) {
    case map27::SendResult::Accepted:
        return {};
    case map27::SendResult::NotReady:
        return "no console is connected";
    case map27::SendResult::QueueFull:
        return "the console does not take any more messages";
    case map27::SendResult::TooLong:
    case map27::SendResult::Empty:
        break;
    }
    return "the console takes shorter messages only";
}

void Radio::Enter(TimePoint now)
{
    m_now = std::max(m_now, now);
    m_schedule.RunUntil(m_now);
}

void Radio::Take(map27::LinkOutput output)
{
    for (map27::Octets& frame : output.frames)
        m_output.frames.push_back(std::move(frame));
    for (const map27::LinkEvent& event : output.events) {
        if (const auto* received = std::get_if<map27::MessageReceived>(&event)) {
            OnMessage(received->message);
        } else if (const auto* failed = std::get_if<map27::LinkFailed>(&event)) {
            Note(std::string("link lost: ") + map27::LinkFailureText(failed->reason));
            DropEverything();
        } else {
            Note("link ready");
        }
    }
}

void Radio::OnMessage(const map27::Octets& octets)
{
    const auto decoded = map27::DecodeToRadio(octets);
    if (const auto* message = std::get_if<map27::ToRadio>(&decoded)) {
        if (std::string request = DescribeRequest(*message, m_scenario.fleet); !request.empty())
            m_lastRequest = std::move(request);
        std::visit([this](const auto& known) { Handle(known); }, *message);
        return;
    }
    const auto error = std::get<map27::DecodeError>(decoded);
    Note("console sent " + map27::ToHex(octets) + ": " + map27::DecodeErrorText(error));
    Complain(error == map27::DecodeError::BadField ? map27::ProtocolReason::NotSupported
                                                   : map27::ProtocolReason::Unrecognised);
}

RadioOutput Radio::TakeOutput()
{
    NoteLosses();
    if (m_link.IsReady())
        m_deliveries.HandOver([this] { return LinkProgress{m_accepted, m_link.Backlog()}; });
    return std::exchange(m_output, {});
}

// Messages are acknowledged in order: those that a link loses are the last that it has accepted.
void Radio::NoteLosses()
{
    const std::uint64_t lost = m_link.Counters().messagesLost;
    if (lost == m_lost)
        return;
    m_deliveries.TakeBack(m_accepted - (lost - m_lost));
    m_lost = lost;
}

void Radio::BuildOutstations()
{
    for (const Subscriber& member : m_scenario.fleet.members) {
        if (member.kind != SubscriberKind::Outstation)
            continue;
        m_outstations.emplace_back(
            m_schedule, m_random, member.address, member.outstation, [this](const TextAction& report) {
                // Nobody misses a report while there is no console to have it.
                if (const std::string problem = Do(report); !problem.empty() && m_link.IsReady())
                    Note("report of " + m_scenario.fleet.Describe({report.from, {}}) +
                         " left out: " + problem);
            });
    }
}

const Outstation* Radio::FindOutstation(map27::Address address) const
{
    const auto found = std::ranges::find(m_outstations, address, &Outstation::Address);
    return found == m_outstations.end() ? nullptr : &*found;
}

void Radio::DropEverything()
{
    m_messages.Drop();
    m_calls.Drop();
    m_diversions.Drop();
}

} // namespace sim
