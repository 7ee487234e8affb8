#include "core/widgets/Tone.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double ToneSeconds = 0.14;
constexpr double RampSeconds = 0.01; // of fading in and out, so that no click is heard
constexpr double Loudness = 0.5;     // of full scale
constexpr double FullScale = 32767;
constexpr double Frequencies[] = {880, 1175}; // Hz

double Envelope(double second)
{
    const double fromEdge = std::min(second, ToneSeconds - second);
    if (fromEdge >= RampSeconds)
        return 1;
    return 0.5 - 0.5 * std::cos(std::numbers::pi * std::max(fromEdge, 0.0) / RampSeconds);
}

} // namespace

QByteArray MessageTone(int samplesPerSecond)
{
    const int count = static_cast<int>(ToneSeconds * samplesPerSecond);
    QByteArray samples;
    samples.reserve(static_cast<qsizetype>(std::size(Frequencies)) * count * 2);
    for (const double frequency : Frequencies) {
        for (int i = 0; i < count; ++i) {
            const double second = static_cast<double>(i) / samplesPerSecond;
            const double wave = std::sin(2 * std::numbers::pi * frequency * second);
            const auto sample = static_cast<qint16>(FullScale * Loudness * Envelope(second) * wave);
            samples.append(reinterpret_cast<const char*>(&sample), sizeof sample);
        }
    }
    return samples;
}
