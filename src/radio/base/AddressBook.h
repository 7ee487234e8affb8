#pragma once

#include <QObject>
#include <QString>

struct IDbSession;
struct IStringSource;

// The address directory as messages need it: callsigns and dial texts of each other, and who is on duty. A
// look-up that finds nothing, or cannot read the directory, gives back what it was given.
class AddressBook : public QObject {
    Q_OBJECT

public:
    // Both must outlive it.
    AddressBook(IDbSession& session, const IStringSource& strings);

    QString LookupCallsign(const QString& dial) const;
    // The dial text of a callsign; any other text is trimmed.
    QString LookupIdent(const QString& text) const;

    // False when it should be stored and could not be; the program's log then says why.
    bool UpdateDutyStatus(const QString& callsign, bool onDuty);
    // The same for a status from the air, when it is one of those that mean on or off duty.
    void FollowStatus(const QString& callsign, int status);

Q_SIGNALS:
    // An entry of the directory has been changed by UpdateDutyStatus.
    void DutyChanged();

private:
    IDbSession& m_session;
    const IStringSource& m_strings;
};
