#pragma once

#include "map27/codec/Messages.h"
#include "simulator/base/Action.h"
#include "simulator/base/FaultSettings.h"

namespace sim {

// The radio that the console is connected to.
struct OwnRadio {
    map27::Address address;
    map27::IdentRange units;
    map27::IdentRange groups;
    bool dataCalls = false; // not every radio can
};

// Field strength as the radio reports it; wanders between the two, or stays when they are equal.
struct FieldStrength {
    std::uint8_t lowest = 158;
    std::uint8_t highest = 158;
    Milliseconds every{30000}; // between two reports while it wanders
};

// What the network does with medium texts (MST).
enum class MediumTexts { Carried, Refused, Split };

struct NetworkProperties {
    std::uint16_t channel = 1;        // 10 bits
    std::uint16_t systemIdentity = 0; // 15 bits
    FieldStrength field;
    std::uint8_t maxCallTimeCode = 255; // as in the operating condition message
    Milliseconds callWarning{10000};    // how long before the maximum call time the radio warns
    Milliseconds ringing{30000};        // after this a caller whom nobody answers gives up
    MediumTexts mediumTexts = MediumTexts::Carried;
};

struct TimedEvent {
    Milliseconds at{};    // since a console first came; time without a console does not count
    Milliseconds every{}; // 0: once
    Action action;
};

struct Scenario {
    OwnRadio radio;
    NetworkProperties network;
    Fleet fleet;
    std::vector<TimedEvent> events;
    FaultSettings faults; // from the beginning

    // The groups that the console's radio listens to: all groups of the fleet.
    std::vector<map27::Address> GroupList() const;
};

// As many as fit into a numbering message.
constexpr std::size_t MostGroups = 70;

// The octet of the operating condition message; empty when the message cannot express the time. 0: no limit.
std::optional<std::uint8_t> MaxCallTimeCode(int seconds);

} // namespace sim
