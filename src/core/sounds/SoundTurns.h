#pragma once

#include "core/sounds/Sound.h"

#include <QStringList>
#include <chrono>
#include <deque>
#include <optional>

// Whose turn it is to sound: one at a time, the most urgent first. Emergencies repeat until none is left and
// are louder after a minute, a call repeats while it rings. What could not be heard within three seconds is
// dropped. Time is any that never goes backwards.
class SoundTurns {
public:
    using Time = std::chrono::milliseconds;

    // Sounds once; told again before its turn adds nothing.
    void Tell(SoundKind kind, Time now);
    void Ring(bool on, Time now);
    // Those that are to be heard; a new one is heard at once.
    void SetEmergencies(const QStringList& ids, Time now);

    struct Turn {
        SoundKind kind;
        bool louder = false;
        bool operator==(const Turn&) const = default;
    };
    // What begins now; it is taken to be played to its end.
    std::optional<Turn> Next(Time now);
    // When to ask again; nothing while nothing is to be heard.
    std::optional<Time> When() const;

private:
    struct Told {
        SoundKind kind;
        Time since;
    };
    struct Emergency {
        QString id;
        Time since;
    };

    std::optional<Turn> Begin(Turn turn, Time now);

    std::deque<Emergency> m_emergencies; // oldest first
    Time m_nextEmergency{0};
    bool m_rings = false;
    Time m_nextRing{0};
    std::deque<Told> m_told;
    Time m_busyUntil{0};
};
