#pragma once

#include <QByteArray>
#include <chrono>

// What a sound tells. The more urgent comes first.
enum class SoundKind { Emergency, Ringing, RadioLost, Failure, Status, Text };

constexpr SoundKind SoundKinds[] = {SoundKind::Emergency, SoundKind::Ringing, SoundKind::RadioLost,
                                    SoundKind::Failure,   SoundKind::Status,  SoundKind::Text};
constexpr int SoundTunes = 3; // of each kind to choose from

struct Sound {
    SoundKind kind = SoundKind::Status;
    int tune = 0;        // 0 to SoundTunes - 1
    int volume = 100;    // percent
    bool louder = false; // than its volume allows otherwise

    bool operator==(const Sound&) const = default;
};

// The same for all tunes of a kind.
std::chrono::milliseconds LengthOf(SoundKind kind);

// 16-bit samples in the machine's byte order, one channel.
QByteArray SamplesOf(const Sound& sound, int samplesPerSecond);
