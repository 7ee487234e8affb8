#pragma once

#include "simulator/network/Air.h"
#include "simulator/network/GroupMemory.h"
#include "simulator/network/Outstation.h"

#include <list>

namespace sim {

// The radios that the console's messages reach: what each of them remembers and does.
class OtherRadios {
public:
    // `report` is called with every report of an outstation.
    OtherRadios(Air& air, const Outstation::Send& report);

    // What a message of the console does at the radio that it has reached. A remark for a log when no radio
    // can follow it, else empty.
    std::string Take(const map27::ToRadio& message);
    // The outstation must be one of the fleet.
    void Set(const SignalAction& action);

    // Null when the address is no outstation's.
    const Outstation* FindOutstation(map27::Address address) const;
    const GroupMemory& Groups() const { return m_groups; }

private:
    Outstation* Find(map27::Address address);

    Air& m_air;
    GroupMemory m_groups;
    std::list<Outstation> m_outstations; // a list: they stay where they are
};

} // namespace sim
