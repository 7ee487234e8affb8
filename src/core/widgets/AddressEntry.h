#pragma once

#include <QString>

namespace dao {
class Recordset;
}

// Field "Type" of the table address.
enum class EntryKind { Individual = 1, Talkgroup = 2 };

constexpr int LastPosition = 16;

// What a person enters for an entry of the address directory.
struct AddressEntry {
    EntryKind kind = EntryKind::Individual;
    QString callsign; // trimmed
    QString ident;    // dial text
    QString name;     // individuals only; trimmed
    QString note;     // stored as Null when empty
    bool dynamic = false;
    int position = 1; // talkgroups only; 1..LastPosition

    bool operator==(const AddressEntry&) const = default;
};

// Updatable query that shows the entries of a kind.
QString BrowseQuery(EntryKind kind);

// Catalogue id of the rule that callsign or name breaks; 0 when both may be stored.
int ProblemOfCallsign(const AddressEntry& entry);
int ProblemOfName(const AddressEntry& entry);

// The current record of a browsing query.
AddressEntry ReadEntry(dao::Recordset& rows, EntryKind kind);
// Writes the fields of the record that is being added or edited.
void WriteEntry(dao::Recordset& rows, const AddressEntry& entry);
