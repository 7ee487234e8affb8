#include "simulator/network/Radio.h"

#include <algorithm>

// What happens on the air side.

namespace sim {

namespace {

constexpr std::uint8_t noService = 0x04;
constexpr Milliseconds restartPause{500};

} // namespace

std::string Radio::Do(const StatusAction& action)
{
    std::string problem = WhyNothingArrives(map27::Facility::Status, Service::Status);
    return problem.empty() ? m_deliveries.Deliver(action) : problem;
}

std::string Radio::Do(const TextAction& action)
{
    const auto encoded = map27::EncodeText(action.text, action.coding);
    const auto* text = std::get_if<map27::EncodedText>(&encoded);
    const bool isMedium = text && text->size == map27::DataSize::Medium;
    std::string problem =
        WhyNothingArrives(isMedium ? map27::Facility::Mst : map27::Facility::Sst, Service::Text);
    return problem.empty() ? m_deliveries.Deliver(action) : problem;
}

std::string Radio::Do(const CallAction& action)
{
    const std::uint8_t facility = action.data ? map27::Facility::Modem : map27::Facility::Voice;
    std::optional<Service> divertible;
    if (action.scope == CallScope::Individual)
        divertible = Service::Call;
    if (std::string problem = WhyNothingArrives(facility, divertible); !problem.empty())
        return problem;
    std::string problem = m_calls.ComeIn(action);
    if (problem.empty()) {
        m_messages.Drop();
        m_diversions.Drop();
    }
    return problem;
}

std::string Radio::Do(const ContactAction& action)
{
    if (!action.inContact && m_reception.InContact()) {
        if (m_messages.IsOpen() || m_diversions.IsOpen())
            Tell(map27::ClearMessage{true, {}, noService});
        m_messages.Drop();
        m_diversions.Drop();
        m_calls.LoseService();
    }
    m_reception.SetContact(action.inContact);
    return {};
}

std::string Radio::Do(const FieldAction& action)
{
    m_reception.SetStrength(action.strength);
    return {};
}

std::string Radio::Do(const BehaveAction& action)
{
    Subscriber& member = *m_scenario.fleet.Find(action.who);
    if (action.service)
        member.reactions.To(*action.service) = action.reaction;
    else
        member.reactions = Reactions::All(action.reaction);
    return {};
}

std::string Radio::Do(const SignalAction& action)
{
    const map27::Address address = m_scenario.fleet.Find(action.who)->address;
    Outstation& outstation = *std::ranges::find(m_outstations, address, &Outstation::Address);
    if (action.isControl)
        outstation.SetControl(action.number, action.signal);
    else
        outstation.SetSensor(action.number, action.signal);
    return {};
}

std::string Radio::Do(const NumberingAction& action)
{
    m_scenario.radio.address = action.address;
    m_scenario.radio.units = action.units.value_or(m_scenario.radio.units);
    m_scenario.radio.groups = action.groups.value_or(m_scenario.radio.groups);
    m_interrogations.TellNumbering();
    return {};
}

std::string Radio::Do(const ModemAction& action)
{
    if (!m_calls.IsDataCall())
        return "there is no data call";
    return Tell(map27::ModemDataMessage{action.octets});
}

std::string Radio::Do(const StormAction& action)
{
    std::string problem = WhyNothingArrives(map27::Facility::Status, Service::Status);
    return problem.empty() ? m_deliveries.Deliver(action) : problem;
}

std::string Radio::Do(const FaultAction& action)
{
    m_faults.Set(action.kind, action.value);
    return {};
}

std::string Radio::Do(const RestartAction&)
{
    if (const std::size_t lost = m_deliveries.Kept(); lost > 0)
        Note(std::to_string(lost) + " messages for the console are lost with the restart");
    m_deliveries.Forget();
    DropEverything();
    Take(m_link.Reset(m_now, restartPause));
    return {};
}

std::string Radio::WhyNothingArrives(std::uint8_t facility, std::optional<Service> divertible) const
{
    if (!m_link.IsReady())
        return "no console is connected";
    if (!m_reception.InContact())
        return "the radio is out of contact";
    if (!m_interrogations.Accepts(facility))
        return "the console has switched this kind of message or call off";
    const Diversion* diversion =
        divertible ? m_scenario.fleet.FindDiversion(m_scenario.radio.address, *divertible) : nullptr;
    if (diversion)
        return "it is diverted to " + m_scenario.fleet.Describe({diversion->to, {}});
    return {};
}

// Somebody who has noted a call of the console calls by himself, as soon as the radio is free.
void Radio::CallBack(map27::Address from, Milliseconds after)
{
    m_schedule.After(after, [this, from, after] {
        if (IsBusy() && m_link.IsReady())
            return CallBack(from, after);
        CallAction call;
        call.from = from;
        if (const std::string problem = Do(call); !problem.empty())
            Note(Describe(Action(call), m_scenario.fleet) + " left out: " + problem);
    });
}

} // namespace sim
