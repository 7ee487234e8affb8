#pragma once

#include "map27/codec/Direction.h"
#include "map27/codec/Octets.h"
#include "simulator/base/FaultSettings.h"
#include "simulator/base/Random.h"
#include "simulator/base/Schedule.h"

namespace sim {

// What became of a frame.
struct Struck {
    map27::Octets sent;     // the frame as its sender meant it
    map27::Octets octets;   // what goes over the line, noise and repetitions included; empty: nothing
    Milliseconds late{};    // how much later than without the fault
    std::string_view fault; // for a trace; empty: none
};

// Spoils frames in both directions. While silent, nothing gets through at all.
class Faults {
public:
    Faults(FaultSettings settings, std::uint64_t seed) : m_settings(std::move(settings)), m_random(seed) {}

    void Set(FaultKind kind, double value) { m_settings.Set(kind, value); }
    void SetSilent(bool silent) { m_silent = silent; }

    Struck Strike(map27::Octets frame, map27::Direction direction);
    // Octets between frames, which only silence and bit errors affect.
    map27::Octets StrikeNoise(map27::Octets octets);

private:
    bool Strikes(FaultKind kind) { return m_random.Chance(m_settings.Of(kind)); }
    void ChangeContent(map27::Octets& frame, Struck& struck);
    void InvertBits(map27::Octets& octets);
    map27::Octets NoiseOctets();

    FaultSettings m_settings;
    Random m_random;
    bool m_silent = false;
};

} // namespace sim
