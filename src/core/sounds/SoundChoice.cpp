#include "core/sounds/SoundChoice.h"

#include "core/settings/Settings.h"

#include <algorithm>

namespace {

const QString Section = QStringLiteral("sounds");

QString NameOf(SoundKind kind)
{
    switch (kind) {
    case SoundKind::Emergency:
        return QStringLiteral("emergency");
    case SoundKind::Ringing:
        return QStringLiteral("ringing");
    case SoundKind::RadioLost:
        return QStringLiteral("radio_lost");
    case SoundKind::Failure:
        return QStringLiteral("failure");
    case SoundKind::Status:
        return QStringLiteral("status");
    case SoundKind::Text:
        return QStringLiteral("text");
    }
    return {};
}

} // namespace

SoundChoice ReadSoundChoice(const Settings& settings, SoundKind kind)
{
    const QString name = NameOf(kind);
    const SoundChoice usual;
    SoundChoice choice;
    choice.tune = settings.ReadInt(Section, name + QStringLiteral("_tune"), usual.tune, 0, SoundTunes - 1);
    choice.volume = settings.ReadInt(Section, name + QStringLiteral("_volume"), usual.volume, 0, 100);
    if (kind == SoundKind::Emergency)
        choice.volume = std::max(choice.volume, SoundChoice::LowestOfEmergency);
    else
        choice.on = settings.ReadBool(Section, name, usual.on);
    return choice;
}

void StoreSoundChoice(Settings& settings, SoundKind kind, const SoundChoice& choice)
{
    const QString name = NameOf(kind);
    settings.Write(Section, name + QStringLiteral("_tune"), QString::number(choice.tune));
    settings.Write(Section, name + QStringLiteral("_volume"), QString::number(choice.volume));
    if (kind != SoundKind::Emergency)
        settings.Write(Section, name, choice.on ? QStringLiteral("True") : QStringLiteral("False"));
}
