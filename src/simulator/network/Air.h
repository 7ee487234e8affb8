#pragma once

#include "map27/codec/Messages.h"
#include "simulator/base/Random.h"
#include "simulator/base/Scenario.h"
#include "simulator/base/Schedule.h"

#include <string>

namespace sim {

// The console at the other end of the link, as the radio's services see it.
class IConsole {
public:
    virtual ~IConsole() = default;

    // Why the message cannot be handed to the link, in plain words; empty when it was.
    virtual std::string Tell(const map27::FromRadio& message) = 0;
};

// What the radio's services share; all of it belongs to the radio.
struct Air {
    Schedule& schedule;
    Random& random;
    const Scenario& scenario;
    IConsole& console;

    // The party that acknowledgements name: the called one without digits, or nobody when the call goes to
    // another prefix (MAP27 v1.5, A6.5).
    map27::Party AcknowledgedParty(const map27::Party& called) const;
    // The same with the address that it was diverted to, when the cause speaks of a diversion and somebody
    // knows it.
    map27::Party AcknowledgedParty(const map27::Party& called, Service service, std::uint8_t cause) const;
    map27::Address OwnGateway(std::uint16_t ident) const { return {scenario.radio.address.prefix, ident}; }
};

} // namespace sim
