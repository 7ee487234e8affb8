#include "simulator/network/Reception.h"

#include <algorithm>

namespace sim {

namespace {

constexpr int LongestStep = 12; // of the field strength, between two reports

}

Reception::Reception(Schedule& schedule, Random& random, const FieldStrength& field,
                     std::function<void()> changed)
    : m_random(random),
      m_field(field),
      m_changed(std::move(changed)),
      m_wandering(schedule),
      m_strength(static_cast<std::uint8_t>((field.lowest + field.highest) / 2))
{
    if (field.lowest != field.highest)
        PlanWandering();
}

void Reception::SetContact(bool inContact)
{
    if (m_inContact == inContact)
        return;
    m_inContact = inContact;
    m_changed();
}

void Reception::SetStrength(std::uint8_t strength)
{
    m_wandering.Stop();
    Change(strength);
}

void Reception::Wander()
{
    PlanWandering();
    const int next = m_strength + m_random.Between(-LongestStep, LongestStep);
    Change(static_cast<std::uint8_t>(std::clamp<int>(next, m_field.lowest, m_field.highest)));
}

void Reception::PlanWandering()
{
    m_wandering.Start(
        m_field.every, [this] { Wander(); });
}

void Reception::Change(std::uint8_t strength)
{
    if (m_strength == strength)
        return;
    m_strength = strength;
    if (m_inContact)
        m_changed();
}

} // namespace sim
