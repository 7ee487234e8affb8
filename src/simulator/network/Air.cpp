#include "simulator/network/Air.h"

namespace sim {

map27::Party Air::AcknowledgedParty(const map27::Party& called) const
{
    if (called.address.ident == map27::Ident::Pstn || called.address.ident == map27::Ident::Pabx)
        return {OwnGateway(called.address.ident), {}};
    if (called.address.prefix != scenario.radio.address.prefix)
        return {};
    return {called.address, {}};
}

map27::Party Air::AcknowledgedParty(const map27::Party& called, Service service, std::uint8_t cause) const
{
    constexpr std::uint8_t function = 0x07;
    constexpr std::uint8_t redirected = 0x06; // of the function bits
    map27::Party party = AcknowledgedParty(called);
    const Diversion* diversion = scenario.fleet.FindDiversion(called.address, service);
    if (diversion && (cause & function) == redirected)
        party.description = {
            .kind = map27::AddressKind::Unit, .unit = diversion->to, .digits = {}, .raw = {}};
    return party;
}

} // namespace sim
