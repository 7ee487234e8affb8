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
// reported of itself, and what follows from both: our dial text and callsign, and what is doubtful.
class SessionNumbering : public QObject {
    Q_OBJECT

public:
    // Both must outlive it.
    SessionNumbering(AddressBook& addressBook, const IStringSource& strings);
    ~SessionNumbering() override;

    // Null while nobody is logged on. The radio has reported nothing for a new one yet.
    void SetAddressing(std::unique_ptr<MptAddressing> addressing);
    bool IsSet() const { return m_addressing != nullptr; }
    // Raises Error when none is set.
    MptAddressing& Addressing() const;

    // Reads how it is configured; our dial text is converted again. Raises Error, NumberingNotConfigured for
    // what is missing or cannot be used; what was read before does not hold any more then.
    void ReadConfiguration(IMpt1343FleetConfigSource& fleets, IActionetConfigSource& parameters);

    // What the radio reports of itself; TakeOwnNumber then says who we are.
    void SetReported(const RadioNumbering& numbering);
    void TakeOwnNumber();

    // Empty until the radio has reported its number.
    const QString& MyAddress() const { return m_myAddress; }
    const QString& MyCallsign() const { return m_myCallsign; }

    // In the raw form, "/0010020", when it cannot be converted.
    QString DialOf(int prefix, int ident) const;
    // A dial text in full. Raises Error for one that is none.
    QString MakeFullAddress(const QString& dial) const;

Q_SIGNALS:
    // Our dial text; the callsign is the same text when the directory has none.
    void OwnNumberTaken(const QString& callsign, const QString& address);
    void CallsignChanged();
    // What is doubtful about configuration and reported numbering has changed; empty when all is well.
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
