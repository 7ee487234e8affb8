#pragma once

#include "map27/codec/Address.h"

#include <QString>

class AddressBook;
class SessionNumbering;
struct IStringSource;

// Another party as the radio names it.
struct Caller {
    QString dial;
    QString callsign; // for the record; the dial text itself without an entry in the directory
    QString shown;    // who it is, for a person
    QString callBack; // what reaches it; empty: nothing does
};

// Who the radio speaks of: from addresses and their descriptions to names.
class CallerNames {
public:
    // All must outlive it.
    CallerNames(const SessionNumbering& numbering, const AddressBook& addressBook,
                const IStringSource& strings);

    Caller Of(int prefix, int ident, const map27::AddressDescription& description = {}) const;
    // Where something was diverted to.
    QString Target(const map27::AddressDescription& description) const;
    // Catalogue text of an incoming call's caption, as it is recorded.
    QString Caption(bool emergency, int prefix, int ident) const;

private:
    QString Extension(int number, int exchange) const;

    const SessionNumbering& m_numbering;
    const AddressBook& m_addressBook;
    const IStringSource& m_strings;
};
