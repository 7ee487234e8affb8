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

    // Hands the message to the link. Returns why that failed, in plain words; empty when it succeeded.
    virtual std::string Tell(const map27::FromRadio& message) = 0;
};

// What the radio's services share. The radio owns all of it.
struct Air {
    Schedule& schedule;
    Random& random;
    const Scenario& scenario;
    IConsole& console;

    // The party that acknowledgements name: the called one without digits, or nobody when the call goes to
    // another prefix (MAP27 v1.5, A6.5).
    map27::Party AcknowledgedParty(const map27::Party& called) const;
    // The same, but naming the address diverted to when the cause is a diversion and that address is known.
    map27::Party AcknowledgedParty(const map27::Party& called, Service service, std::uint8_t cause) const;
    map27::Address OwnGateway(std::uint16_t ident) const { return {scenario.radio.address.prefix, ident}; }
};

} // namespace sim
