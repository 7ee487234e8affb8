#pragma once

#include "addressing/FleetConfig.h"
#include "addressing/RadioNumbering.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

class AddressBook;
class MptAddressing;
struct IStringSource;

// The numbering while somebody is logged on: how dial texts and addresses are converted, what the radio has
// reported about itself, and what follows from the two: our dial text and callsign, and any doubts.
class SessionNumbering : public QObject {
    Q_OBJECT

public:
    // Both must outlive it.
    SessionNumbering(AddressBook& addressBook, const IStringSource& strings);
    ~SessionNumbering() override;

    // Null while nobody is logged on. What the radio reported before is forgotten.
    void SetAddressing(std::unique_ptr<MptAddressing> addressing);
    bool IsSet() const { return m_addressing != nullptr; }
    // Raises Error when none is set.
    MptAddressing& Addressing() const;

    // Reads the configuration and converts our dial text again. Raises Error with
    // ErrorCode::NumberingNotConfigured when it is missing or unusable; the previous one no longer holds
    // then.
    void ReadConfiguration(IMpt1343FleetConfigSource& fleets, IActionetConfigSource& parameters);

    // What the radio reports about itself; TakeOwnNumber then works out who we are.
    void SetReported(const RadioNumbering& numbering);
    void TakeOwnNumber();

    // Whether it is one of the groups that the radio has reported as its fleet's.
    bool IsOwnGroup(int prefix, int ident) const;

    // Empty until the radio has reported its number.
    const QString& MyAddress() const { return m_myAddress; }
    const QString& MyCallsign() const { return m_myCallsign; }

    // In raw form, such as "/0010020", when it cannot be converted.
    QString DialOf(int prefix, int ident) const;
    // Of a telephone behind our own gateway; empty when nothing reaches it.
    QString DialOfGateway(int ident, const QString& digits) const;
    // The full form of a dial text. Raises Error when it is not a valid one.
    QString MakeFullAddress(const QString& dial) const;

Q_SIGNALS:
    // Without an entry in the directory the callsign is the dial text itself.
    void OwnNumberTaken(const QString& callsign, const QString& address);
    void CallsignChanged();
    // The doubts about configuration and reported number have changed; empty when all is well.
    void Doubted(const QStringList& doubts);

private:
    void Configure(IMpt1343FleetConfigSource& fleets, IActionetConfigSource& parameters);
    void TakeConfiguration();
    void PassOn();
    void TakeOwnCallsign();
    void TellDoubts(const QStringList& doubts);

    AddressBook& m_addressBook;
    const IStringSource& m_strings;
    std::unique_ptr<MptAddressing> m_addressing;
    std::optional<RadioNumbering> m_reported; // since the logon
    QStringList m_doubts;
    QString m_myAddress;
    QString m_myCallsign;
};
