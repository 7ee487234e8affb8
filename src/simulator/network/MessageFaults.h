#pragma once

#include "map27/codec/Messages.h"
#include "simulator/base/FaultSettings.h"
#include "simulator/base/Random.h"

namespace sim {

// Spoils what the radio says before it becomes a frame, like a radio that reads the standard in its own way.
class MessageFaults {
public:
    explicit MessageFaults(std::uint64_t seed) : m_random(seed) {}

    void Set(FaultKind kind, double value) { m_settings.Set(kind, value); }

    // The messages to send instead, the spoiled one among them.
    std::vector<map27::Octets> Strike(const map27::FromRadio& message);

private:
    bool Strikes(FaultKind kind) { return m_random.Chance(m_settings.Of(kind)); }
    map27::Octets UnknownMessage();

    FaultSettings m_settings;
    Random m_random;
};

} // namespace sim
