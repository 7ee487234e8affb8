#pragma once

#include <QObject>
#include <QString>

struct IDbSession;
struct IStringSource;

// The address directory as messages need it: which callsign belongs to which dial text, and who is on duty;
// from the session's memory, never from the database. A look-up that finds nothing returns what it was given.
class AddressBook : public QObject {
    Q_OBJECT

public:
    // Both must outlive it.
    AddressBook(IDbSession& session, const IStringSource& strings);

    QString LookupCallsign(const QString& dial) const;
    // The dial text of a callsign; any other text only trimmed.
    QString LookupIdent(const QString& text) const;

    // Returns false when the duty could not be stored; the program's log says why. Duties that the site does
    // not keep are not stored, which is no failure.
    bool UpdateDutyStatus(const QString& callsign, bool onDuty);
    // The same for a status that came in, if it is one of the two that mean on duty or off duty.
    void FollowStatus(const QString& callsign, int status);

Q_SIGNALS:
    // UpdateDutyStatus has changed an entry of the directory.
    void DutyChanged();

private:
    // The one place that stores a duty. Raises Error and dao::Error.
    void StoreDuty(const QString& callsign, bool onDuty);

    IDbSession& m_session;
    const IStringSource& m_strings;
};
