#include "simulator/network/Air.h"

#include "map27/codec/Causes.h"

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
    constexpr std::uint8_t function = 0x07; // the bits that all causes of a diversion share
    map27::Party party = AcknowledgedParty(called);
    const auto target = scenario.fleet.DivertedTo(called.address, service);
    if (target && (cause & function) == map27::Cause::DivertedNoRetry)
        party.description = {.kind = map27::DescriptionKind::Unit, .unit = *target, .digits = {}, .raw = {}};
    return party;
}

} // namespace sim
