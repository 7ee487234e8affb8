#pragma once

#include <QObject>
#include <QString>

class EventLog;
struct IDbSession;

// The address directory as messages need it: which callsign belongs to which dial text, and who is on duty;
// from the session's memory, never from the database. A look-up that finds nothing returns what it was given.
class AddressBook : public QObject {
    Q_OBJECT

public:
    // Both must outlive it.
    AddressBook(IDbSession& session, EventLog& eventLog);

    QString LookupCallsign(const QString& dial) const;
    // The dial text of a callsign; any other text only trimmed.
    QString LookupIdent(const QString& text) const;

    bool IsTalkgroup(const QString& dial) const;

    // Holds at once here, and is stored in turn with the log records. Duties that the site does not keep are
    // left alone.
    void UpdateDutyStatus(const QString& callsign, bool onDuty);
    // The same for a status that came in, if it is one of the two that mean on duty or off duty.
    void FollowStatus(const QString& callsign, int status);

Q_SIGNALS:
    // UpdateDutyStatus has changed an entry of the directory.
    void DutyChanged();

private:
    IDbSession& m_session;
    EventLog& m_eventLog;
};
