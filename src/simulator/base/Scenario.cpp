#include "simulator/base/Scenario.h"

namespace sim {

std::vector<map27::Address> Scenario::GroupList() const
{
    std::vector<map27::Address> groups;
    for (const Subscriber& member : fleet.members)
        if (member.kind == SubscriberKind::Group)
            groups.push_back(member.address);
    return groups;
}

std::optional<std::uint8_t> MaxCallTimeCode(int seconds)
{
    // MAP27 v1.5, operating condition: 1..9 stand for 5..13 minutes, 10..254 for seconds, 255 for no limit.
    if (seconds == 0)
        return std::uint8_t{255};
    if (seconds >= 10 && seconds <= 254)
        return static_cast<std::uint8_t>(seconds);
    if (seconds % 60 == 0 && seconds >= 5 * 60 && seconds <= 13 * 60)
        return static_cast<std::uint8_t>(seconds / 60 - 4);
    return std::nullopt;
}

} // namespace sim
