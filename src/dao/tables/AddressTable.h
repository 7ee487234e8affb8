#pragma once

#include "dao/records/Database.h"

#include <optional>

namespace dao {

// As the table stores them.
enum class EntryKind { Individual = 1, Talkgroup = 2 };

// An entry of the address directory.
struct AddressRecord {
    qint32 id = 0; // given by the database
    EntryKind kind = EntryKind::Individual;
    QString callsign; // trimmed
    QString ident;    // dial text
    QString name;     // individuals only; trimmed
    QString note;     // stored as Null when empty
    bool dynamic = false;
    int position = 1; // talkgroups only; 1..AddressTable::LastPosition
};

// The table of the address directory. Errors are dao::Error.
class AddressTable {
public:
    static inline const QString Table = QStringLiteral("address");

    static constexpr int LastPosition = 16;

    // For reading many records of it by position.
    static inline const QString IdField = QStringLiteral("address_id");
    static inline const QString CallsignField = QStringLiteral("callsign");
    static inline const QString IdentField = QStringLiteral("IDENT");
    static inline const QString NameField = QStringLiteral("Name");
    static inline const QString NoteField = QStringLiteral("note");
    static inline const QString DynamicField = QStringLiteral("dynamic");
    static inline const QString TypeField = QStringLiteral("Type");
    static inline const QString PositionField = QStringLiteral("default_pos");
    static inline const QString OnDutyField = QStringLiteral("on_duty");
    // What the queries of entries add: which picture an entry has.
    static inline const QString IconKeyField = QStringLiteral("iconkey");

    // All entries by id.
    static std::unique_ptr<Recordset> Open(Database& database);
    // Those of a kind by callsign.
    static std::unique_ptr<Recordset> OpenDynaset(Database& database, EntryKind kind);
    static std::unique_ptr<Recordset> OpenSnapshot(Database& database, EntryKind kind);

    // Makes an entry of a dynaset current; false when it is not there.
    static bool Find(Recordset& rows, qint32 id);
    // Ignores case.
    static std::optional<AddressRecord> FindCallsign(Database& database, const QString& callsign);

    static AddressRecord Read(Recordset& rows); // the current one
    // Into the record that is being added or edited.
    static void Write(Recordset& rows, const AddressRecord& record);
};

} // namespace dao
