#include "core/sounds/Sound.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr double RampSeconds = 0.01; // of fading in and out, so that no click is heard
constexpr double FullScale = 32767;
constexpr double Loudness = 0.6; // of full scale, at the highest volume
constexpr double LouderBy = 1.6;

struct Tune {
    SoundKind kind;
    double noteSeconds;
    std::vector<double> notes[SoundTunes]; // Hz; 0 is a pause
};

const Tune& TuneOf(SoundKind kind)
{
    static const Tune tunes[] = {
        {SoundKind::Emergency,
         0.2,
         {{1320, 880, 1320, 880, 1320, 880},
          {1500, 1500, 0, 1500, 1500, 0},
          {784, 988, 1175, 784, 988, 1175}}},
        {SoundKind::Ringing,
         0.1,
         {{660, 550, 660, 550, 660, 550, 0, 0},
          {740, 740, 0, 740, 740, 0, 0, 0},
          {523, 659, 784, 659, 523, 659, 784, 0}}},
        {SoundKind::RadioLost, 0.2, {{520, 390, 290}, {440, 220, 220}, {600, 0, 300}}},
        {SoundKind::Failure, 0.15, {{392, 330, 262}, {350, 0, 350}, {494, 370, 370}}},
        {SoundKind::Status, 0.14, {{880, 1175}, {1047, 1047}, {1319, 988}}},
        {SoundKind::Text, 0.14, {{1175, 1175, 1568}, {880, 988, 1175}, {1568, 1175, 1568}}},
    };
    return *std::find_if(std::begin(tunes), std::end(tunes),
                         [kind](const Tune& tune) { return tune.kind == kind; });
}

double Envelope(double second, double noteSeconds)
{
    const double fromEdge = std::min(second, noteSeconds - second);
    if (fromEdge >= RampSeconds)
        return 1;
    return 0.5 - 0.5 * std::cos(std::numbers::pi * std::max(fromEdge, 0.0) / RampSeconds);
}

} // namespace

std::chrono::milliseconds LengthOf(SoundKind kind)
{
    const Tune& tune = TuneOf(kind);
    return std::chrono::milliseconds(
        std::lround(1000 * tune.noteSeconds * static_cast<double>(tune.notes[0].size())));
}

QByteArray SamplesOf(const Sound& sound, int samplesPerSecond)
{
    const Tune& tune = TuneOf(sound.kind);
    const std::vector<double>& notes = tune.notes[std::clamp(sound.tune, 0, SoundTunes - 1)];
    const double volume = Loudness * std::clamp(sound.volume, 0, 100) / 100.0;
    const double loudness = FullScale * (sound.louder ? Loudness * LouderBy : volume);
    const int count = static_cast<int>(tune.noteSeconds * samplesPerSecond);
    QByteArray samples;
    samples.reserve(static_cast<qsizetype>(notes.size()) * count * 2);
    for (const double frequency : notes) {
        for (int i = 0; i < count; ++i) {
            const double second = static_cast<double>(i) / samplesPerSecond;
            const double wave = std::sin(2 * std::numbers::pi * frequency * second);
            const auto sample = static_cast<qint16>(loudness * Envelope(second, tune.noteSeconds) * wave);
            samples.append(reinterpret_cast<const char*>(&sample), sizeof sample);
        }
    }
    return samples;
}
