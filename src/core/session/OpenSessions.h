#pragma once

#include <QList>
#include <QString>

class Settings;

// The sessions begun at this console whose end is not known to be stored, kept in its settings. One that is
// found at a logon was cut short: the program was killed, or the database could not be reached. What it left
// in the database, a marked profile and a radio on duty, is then put right.
class OpenSessions {
public:
    struct Session {
        QString database; // its identity
        QString user;     // name of the account
        QString callsign; // of this console's radio; empty if unknown or already off duty

        bool operator==(const Session&) const = default;
    };

    explicit OpenSessions(Settings& settings) : m_settings(settings) {}

    // All raise Error when the settings cannot be read or written.
    QList<Session> Of(const QString& database) const;
    // Replaces the one of this account on this database, if there is one.
    void Keep(const Session& session);
    void Forget(const Session& session);

private:
    QList<Session> All() const;
    void Store(const QList<Session>& sessions);

    Settings& m_settings;
};
