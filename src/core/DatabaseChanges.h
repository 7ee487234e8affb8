#pragma once

#include <QObject>

// What other consoles do to the database, and whether it can be reached; from the event loop. On files nobody
// tells: then whoever shows records asks for them again (MayHaveChanged) when it has reason to.
class DatabaseChanges : public QObject {
    Q_OBJECT

public:
    // Whether the database is on a server that does not answer at present.
    bool IsAway() const { return m_away; }

    void Open(bool tells);
    void SetAway(bool away);
    void Tell(const QString& table) { Q_EMIT Changed(table); }
    // A reason to look: tells Changed for all tables where the database itself tells nothing.
    void MayHaveChanged();

Q_SIGNALS:
    // An operator has logged on.
    void Opened();
    // Another console changed this table; an empty name: nobody knows which.
    void Changed(const QString& table);
    void AwayChanged(bool away);

private:
    bool m_tells = false;
    bool m_away = false;
};
