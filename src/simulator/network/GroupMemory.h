#pragma once

#include "simulator/base/Fleet.h"
#include "simulator/network/GroupCommand.h"

namespace sim {

// The dynamic groups that the network's radios hold, and the names that they know them by.
class GroupMemory {
public:
    // A command to a radio is obeyed by that radio; one to a group, by all radios that hold that group in the
    // position.
    void Obey(const GroupCommand& command, map27::Address called, const Fleet& fleet);

    // "3: Group91 (0/7001) \"Harbour\"; 5: Group92 (0/7002)", empty when the radio holds none.
    std::string Describe(map27::Address radio, const Fleet& fleet) const;

private:
    struct Place {
        map27::Address radio;
        int position;
        map27::Address group; // dummy: the position has a name only
        std::string name;     // UTF-8, empty: none
    };

    void Obey(const RegroupCommand& command, map27::Address radio);
    void Obey(const GroupNameCommand& command, map27::Address radio);
    Place& At(map27::Address radio, int position);

    std::vector<Place> m_places; // by radio and position
};

} // namespace sim
