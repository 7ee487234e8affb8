#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace sim {

// Everything that happens by chance comes from here. The same seed gives the same run on every machine, which
// the distributions of the standard library do not promise.
class Random {
public:
    explicit Random(std::uint64_t seed) : m_engine(seed) {}

    // True with the probability 0..1.
    bool Chance(double probability)
    {
        if (probability <= 0)
            return false;
        return static_cast<double>(m_engine() >> 11) * 0x1.0p-53 < probability;
    }

    // low..high, both included.
    int Between(int low, int high)
    {
        const auto count = static_cast<std::uint64_t>(high - low) + 1;
        return low + static_cast<int>(m_engine() % count);
    }

private:
    std::mt19937_64 m_engine;
};

} // namespace sim
