#include "simulator/Air.h"

namespace sim {

map27::Party Air::AcknowledgedParty(const map27::Party& called) const
{
    if (called.address.ident == map27::Ident::Pstn || called.address.ident == map27::Ident::Pabx)
        return {OwnGateway(called.address.ident), {}};
    if (called.address.prefix != scenario.radio.address.prefix)
        return {};
    return {called.address, {}};
}

} // namespace sim
