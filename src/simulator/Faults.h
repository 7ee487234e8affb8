#pragma once

#include "map27/Octets.h"
#include "simulator/Random.h"

namespace sim {

// What may be made wrong on purpose.
struct FaultSettings {
    double bitErrors = 0;  // probability of each bit to be inverted, 0..1
    double dropFrames = 0; // probability of each frame to get lost, 0..1
};

enum class Fault { None, BitErrors, Dropped, Silent };

// As it stands in a trace.
const char* FaultText(Fault fault);

// Spoils frames of both directions. While silent nothing gets through at all.
class Faults {
public:
    Faults(const FaultSettings& settings, std::uint64_t seed) : m_settings(settings), m_random(seed) {}

    void SetSilent(bool silent) { m_silent = silent; }

    // Changes the frame, or says that it does not arrive.
    Fault Strike(map27::Octets& frame);

private:
    FaultSettings m_settings;
    Random m_random;
    bool m_silent = false;
};

} // namespace sim
