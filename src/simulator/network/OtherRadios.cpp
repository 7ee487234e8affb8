#include "simulator/network/OtherRadios.h"

#include <algorithm>
#include <utility>

namespace sim {

OtherRadios::OtherRadios(Air& air, const Outstation::Send& report) : m_air(air)
{
    for (const Subscriber& member : air.scenario.fleet.members)
        if (member.kind == SubscriberKind::Outstation)
            m_outstations.emplace_back(air.schedule, air.random, member.address, member.outstation, report);
}

std::string OtherRadios::Take(const map27::ToRadio& message)
{
    const Fleet& fleet = m_air.scenario.fleet;
    if (const auto* status = std::get_if<map27::StatusMessage>(&message)) {
        const map27::Address called = status->party.address;
        if (Outstation* outstation = Find(fleet.DivertedTo(called, Service::Status).value_or(called)))
            outstation->Take(status->status);
        return {};
    }
    const auto* data = std::get_if<map27::ShortDataMessage>(&message);
    if (!data || !IsGroupCommand(data->data))
        return {};
    const auto command = DecodeGroupCommand(data->data);
    if (!command)
        return "a group command that no radio understands: " + map27::ToHex(data->data.octets);
    m_groups.Obey(*command, data->party.address, fleet);
    return {};
}

void OtherRadios::Set(const SignalAction& action)
{
    Outstation& outstation = *Find(m_air.scenario.fleet.Find(action.who)->address);
    if (action.isControl)
        outstation.SetControl(action.number, action.signal);
    else
        outstation.SetSensor(action.number, action.signal);
}

const Outstation* OtherRadios::FindOutstation(map27::Address address) const
{
    const auto found = std::ranges::find(m_outstations, address, &Outstation::Address);
    return found == m_outstations.end() ? nullptr : &*found;
}

Outstation* OtherRadios::Find(map27::Address address)
{
    return const_cast<Outstation*>(std::as_const(*this).FindOutstation(address));
}

} // namespace sim
