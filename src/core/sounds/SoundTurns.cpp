#include "core/sounds/SoundTurns.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr auto EmergencyPeriod = 2500ms;
constexpr auto RingPeriod = 3000ms;
constexpr auto LouderAfter = 60s;
constexpr auto TooLate = 3s;

} // namespace

void SoundTurns::Tell(SoundKind kind, Time now)
{
    std::erase_if(
        m_told, [&](const Told& told) { return now - told.since > TooLate; });
    if (std::none_of(m_told.begin(), m_told.end(), [kind](const Told& told) { return told.kind == kind; }))
        m_told.push_back({kind, now});
}

void SoundTurns::Ring(bool on, Time now)
{
    if (on && !m_rings)
        m_nextRing = now;
    m_rings = on;
}

void SoundTurns::SetEmergencies(const QStringList& ids, Time now)
{
    std::erase_if(m_emergencies, [&](const Emergency& known) { return !ids.contains(known.id); });
    for (const QString& id : ids) {
        const bool known = std::any_of(m_emergencies.begin(), m_emergencies.end(),
                                       [&](const Emergency& emergency) { return emergency.id == id; });
        if (known)
            continue;
        m_emergencies.push_back({id, now});
        m_nextEmergency = now;
    }
}

std::optional<SoundTurns::Turn> SoundTurns::Next(Time now)
{
    if (now < m_busyUntil)
        return {};
    if (!m_emergencies.empty() && now >= m_nextEmergency) {
        m_nextEmergency = now + EmergencyPeriod;
        return Begin({SoundKind::Emergency, now - m_emergencies.front().since >= LouderAfter}, now);
    }
    if (m_rings && now >= m_nextRing) {
        m_nextRing = now + RingPeriod;
        return Begin({SoundKind::Ringing}, now);
    }
    std::erase_if(
        m_told, [&](const Told& told) { return now - told.since > TooLate; });
    const auto urgent =
        std::min_element(m_told.begin(), m_told.end(),
                         [](const Told& one, const Told& other) { return one.kind < other.kind; });
    if (urgent == m_told.end())
        return {};
    const SoundKind kind = urgent->kind;
    m_told.erase(urgent);
    return Begin({kind}, now);
}

std::optional<SoundTurns::Turn> SoundTurns::Begin(Turn turn, Time now)
{
    m_busyUntil = now + LengthOf(turn.kind);
    return turn;
}

std::optional<SoundTurns::Time> SoundTurns::When() const
{
    std::optional<Time> when;
    const auto sooner = [&](Time time) { when = std::min(when.value_or(time), time); };
    if (!m_emergencies.empty())
        sooner(m_nextEmergency);
    if (m_rings)
        sooner(m_nextRing);
    if (!m_told.empty())
        sooner(m_busyUntil);
    if (when)
        when = std::max(*when, m_busyUntil);
    return when;
}
