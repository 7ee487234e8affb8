#include "dao/tables/AddressTable.h"

namespace dao {

namespace {

QString BrowseQuery(EntryKind kind)
{
    return kind == EntryKind::Individual ? QStringLiteral("browse_individuals")
                                         : QStringLiteral("browse_talkgroups");
}

} // namespace

std::unique_ptr<Recordset> AddressTable::Open(Database& database)
{
    return database.OpenTable(Table);
}

std::unique_ptr<Recordset> AddressTable::OpenDynaset(Database& database, EntryKind kind)
{
    return database.OpenDynaset(BrowseQuery(kind));
}

std::unique_ptr<Recordset> AddressTable::OpenSnapshot(Database& database, EntryKind kind)
{
    return database.OpenSnapshot(BrowseQuery(kind));
}

bool AddressTable::Find(Recordset& rows, qint32 id)
{
    rows.FindFirst(QStringLiteral("%1=%2").arg(IdField).arg(id));
    return !rows.NoMatch();
}

std::optional<AddressRecord> AddressTable::FindCallsign(Database& database, const QString& callsign)
{
    const auto rows = Open(database);
    rows->SetIndex(QStringLiteral("i_callsign"));
    rows->Seek(callsign);
    return rows->NoMatch() ? std::nullopt : std::optional(Read(*rows));
}

AddressRecord AddressTable::Read(Recordset& rows)
{
    AddressRecord record;
    record.id = rows.Field(IdField).toInt();
    record.kind = static_cast<EntryKind>(rows.Field(TypeField).toInt());
    record.callsign = rows.Field(CallsignField).toString();
    record.ident = rows.Field(IdentField).toString();
    record.dynamic = rows.Field(DynamicField).toBool();
    record.note = rows.Field(NoteField).toString();
    if (record.kind == EntryKind::Individual)
        record.name = rows.Field(NameField).toString();
    else
        record.position = rows.Field(PositionField).toInt();
    return record;
}

void AddressTable::Write(Recordset& rows, const AddressRecord& record)
{
    rows.SetField(CallsignField, record.callsign);
    rows.SetField(IdentField, record.ident);
    rows.SetField(DynamicField, record.dynamic);
    rows.SetField(NoteField, record.note.isEmpty() ? QVariant() : QVariant(record.note));
    rows.SetField(TypeField, static_cast<int>(record.kind));
    if (record.kind == EntryKind::Individual)
        rows.SetField(NameField, record.name);
    else
        rows.SetField(PositionField, record.position);
}

} // namespace dao
