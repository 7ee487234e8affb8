#include "mainwindow/scada/ScadaGuard.h"

#include "core/session/DbSession.h"
#include "core/session/Registry.h"
#include "core/session/SessionMemory.h"
#include "mainwindow/scada/ScadaItems.h"

#include <QStringList>
#include <algorithm>

namespace {

const QString CriticalKey = QStringLiteral("scada_critical"); // "0;3"
const QString OldKey = QStringLiteral("scada_old_minutes");

} // namespace

unsigned ScadaGuard::Marks() const
{
    unsigned marks = 0;
    for (const QString& text : m_session.Memory().Setting(CriticalKey, {}).split(QLatin1Char(';'))) {
        bool number = false;
        const int control = text.trimmed().toInt(&number);
        if (number && control >= 0 && control < ScadaItemCount)
            marks |= 1U << static_cast<unsigned>(control);
    }
    return marks;
}

bool ScadaGuard::IsCritical(int control) const
{
    return (Marks() >> static_cast<unsigned>(control) & 1U) != 0;
}

bool ScadaGuard::HasCritical() const
{
    return Marks() != 0;
}

int ScadaGuard::MinutesUntilOld() const
{
    return std::max(0, m_session.Memory().Setting(OldKey, QStringLiteral("0")).trimmed().toInt());
}

bool ScadaGuard::IsOld(const QDateTime& reported, const QDateTime& now) const
{
    constexpr qint64 MinuteSeconds = 60;

    const int minutes = MinutesUntilOld();
    return minutes > 0 && reported.isValid() && reported.secsTo(now) > minutes * MinuteSeconds;
}

void ScadaGuard::MarkCritical(int control, bool on)
{
    QStringList marked;
    for (int other = 0; other < ScadaItemCount; ++other)
        if (other == control ? on : IsCritical(other))
            marked.append(QString::number(other));
    RegistryStore(m_session, {{CriticalKey, marked.join(QLatin1Char(';'))}});
}

void ScadaGuard::SetMinutesUntilOld(int minutes)
{
    RegistryStore(m_session, {{OldKey, QString::number(minutes)}});
}
