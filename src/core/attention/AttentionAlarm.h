#pragma once

#include "dao/tables/AttentionTable.h"

#include <QHash>
#include <QObject>
#include <QString>

class AttentionBook;
class Sounds;
struct IDbSession;

// Which emergencies sound here: those that nobody has taken, until they are silenced at this console. One
// that is heard once more sounds again. Nothing sounds while nobody is logged on.
class AttentionAlarm : public QObject {
    Q_OBJECT

public:
    // All must outlive it.
    AttentionAlarm(AttentionBook& book, Sounds& sounds, IDbSession& session);

    void Silence(const dao::AttentionRecord& entry);
    bool Sounds(const dao::AttentionRecord& entry) const;

Q_SIGNALS:
    void Silenced();

private:
    void Follow();

    AttentionBook& m_book;
    class Sounds& m_sounds;
    IDbSession& m_session;
    QHash<QString, int> m_silenced; // by entry: how often it had been heard by then
};
