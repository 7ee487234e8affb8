#include "core/attention/AttentionAlarm.h"

#include "core/attention/AttentionBook.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/sounds/Sounds.h"

AttentionAlarm::AttentionAlarm(AttentionBook& book, class Sounds& sounds, IDbSession& session)
    : m_book(book),
      m_sounds(sounds),
      m_session(session)
{
    connect(&book, &AttentionBook::Changed, this, &AttentionAlarm::Follow);
    connect(&session.Changes(), &DatabaseChanges::Opened, this, &AttentionAlarm::Follow);
    connect(&session.Changes(), &DatabaseChanges::Closed, this, [this] { m_sounds.SetEmergencies({}); });
}

void AttentionAlarm::Silence(const dao::AttentionRecord& entry)
{
    m_silenced.insert(entry.id, entry.times);
    Follow();
    Q_EMIT Silenced();
}

bool AttentionAlarm::Sounds(const dao::AttentionRecord& entry) const
{
    return entry.kind == dao::AttentionRecord::Kind::Emergency && !entry.IsTaken() &&
           m_silenced.value(entry.id) < entry.times;
}

void AttentionAlarm::Follow()
{
    QStringList sounding;
    QHash<QString, int> silenced;
    for (const dao::AttentionRecord& entry : m_book.Entries()) {
        if (m_silenced.contains(entry.id))
            silenced.insert(entry.id, m_silenced.value(entry.id));
        if (Sounds(entry))
            sounding.append(entry.id + u' ' + QString::number(entry.times));
    }
    m_silenced = silenced; // those that are over are forgotten
    m_sounds.SetEmergencies(m_session.IsOpen() ? sounding : QStringList());
}
