#pragma once

#include "core/sounds/SoundTurns.h"

#include <QObject>
#include <QTimer>

class Settings;
struct Clock;
struct IBeeper;
struct IStringSource;

// Makes the console heard, as the operator has set it. A failing setting takes its default and is written to
// the program's log.
class Sounds : public QObject {
    Q_OBJECT

public:
    // All must outlive it.
    Sounds(const Settings& settings, const Clock& clock, IBeeper& beeper, const IStringSource& strings);

    // As SoundTurns. Of what comes in, only emergencies are heard when the operator wants no beep.
    void Tell(SoundKind kind);
    void Ring(bool on);
    void SetEmergencies(const QStringList& ids);
    // False: nothing can be heard on this computer but the desktop's beep, if that.
    bool HasOutput() const;

private:
    bool WantsBeeps() const;
    void Play();

    const Settings& m_settings;
    const Clock& m_clock;
    IBeeper& m_beeper;
    const IStringSource& m_strings;
    SoundTurns m_turns;
    QTimer m_timer;
};
