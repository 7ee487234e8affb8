#include "core/sounds/Sounds.h"

#include "core/base/Clock.h"
#include "core/base/ProgramLog.h"
#include "core/settings/Settings.h"
#include "core/sounds/Beeper.h"
#include "core/sounds/SoundChoice.h"
#include "core/texts/Errors.h"

Sounds::Sounds(const Settings& settings, const Clock& clock, IBeeper& beeper, const IStringSource& strings)
    : m_settings(settings),
      m_clock(clock),
      m_beeper(beeper),
      m_strings(strings)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Sounds::Play);
}

void Sounds::Tell(SoundKind kind)
{
    const bool comesIn = kind == SoundKind::Status || kind == SoundKind::Text;
    if (comesIn && !WantsBeeps())
        return;
    m_turns.Tell(kind, m_clock.Ticks());
    Play();
}

void Sounds::Ring(bool on)
{
    m_turns.Ring(on && WantsBeeps(), m_clock.Ticks());
    Play();
}

void Sounds::SetEmergencies(const QStringList& ids)
{
    m_turns.SetEmergencies(ids, m_clock.Ticks());
    Play();
}

bool Sounds::HasOutput() const
{
    return m_beeper.HasOutput();
}

bool Sounds::WantsBeeps() const
{
    try {
        return m_settings.BeepNotify();
    } catch (const std::exception& failure) {
        ProgramLog::Write(DescribeError(failure, m_strings));
        return true;
    }
}

void Sounds::Play()
{
    const std::chrono::milliseconds now = m_clock.Ticks();
    if (const auto turn = m_turns.Next(now)) {
        SoundChoice choice;
        try {
            choice = ReadSoundChoice(m_settings, turn->kind);
        } catch (const std::exception& failure) {
            ProgramLog::Write(DescribeError(failure, m_strings));
        }
        if (choice.on)
            m_beeper.Play({turn->kind, choice.tune, choice.volume, turn->louder});
    }
    if (const auto when = m_turns.When())
        m_timer.start(std::max(std::chrono::milliseconds(1), *when - now));
    else
        m_timer.stop();
}
