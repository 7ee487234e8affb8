#pragma once

#include "simulator/base/Random.h"
#include "simulator/base/Scenario.h"
#include "simulator/base/Schedule.h"

#include <functional>

namespace sim {

// How well the radio hears its network.
class Reception {
public:
    // `changed` is called after every change; the field strength wanders by itself as the scenario says.
    Reception(Schedule& schedule, Random& random, const FieldStrength& field, std::function<void()> changed);

    bool InContact() const { return m_inContact; }
    // 0, unknown, while out of contact.
    std::uint8_t Strength() const { return m_inContact ? m_strength : std::uint8_t{0}; }

    void SetContact(bool inContact);
    // The strength stays there and wanders no more.
    void SetStrength(std::uint8_t strength);

private:
    void Wander();
    void PlanWandering();
    void Change(std::uint8_t strength);

    Random& m_random;
    FieldStrength m_field;
    std::function<void()> m_changed;
    Timer m_wandering;
    std::uint8_t m_strength;
    bool m_inContact = true;
};

} // namespace sim
