#include "core/widgets/AddressEntry.h"

#include "core/texts/TextIds.h"
#include "core/texts/Validation.h"
#include "dao/records/Recordset.h"

QString BrowseQuery(EntryKind kind)
{
    return kind == EntryKind::Individual ? QStringLiteral("browse_individuals")
                                         : QStringLiteral("browse_talkgroups");
}

int ProblemOfCallsign(const AddressEntry& entry)
{
    return IsValidCallsign(entry.callsign) ? 0 : CoreText::CallsignRule;
}

int ProblemOfName(const AddressEntry& entry)
{
    return entry.kind == EntryKind::Talkgroup || IsValidName(entry.name) ? 0 : CoreText::NameRule;
}

AddressEntry ReadEntry(dao::Recordset& rows, EntryKind kind)
{
    AddressEntry entry;
    entry.kind = kind;
    entry.callsign = rows.Field("callsign").toString();
    entry.ident = rows.Field("IDENT").toString();
    entry.dynamic = rows.Field("dynamic").toBool();
    entry.note = rows.Field("note").toString();
    if (kind == EntryKind::Individual)
        entry.name = rows.Field("Name").toString();
    else
        entry.position = rows.Field("default_pos").toInt();
    return entry;
}

void WriteEntry(dao::Recordset& rows, const AddressEntry& entry)
{
    rows.SetField("callsign", entry.callsign);
    rows.SetField("IDENT", entry.ident);
    rows.SetField("dynamic", entry.dynamic);
    rows.SetField("note", entry.note.isEmpty() ? QVariant() : QVariant(entry.note));
    rows.SetField("Type", static_cast<int>(entry.kind));
    if (entry.kind == EntryKind::Individual)
        rows.SetField("Name", entry.name);
    else
        rows.SetField("default_pos", entry.position);
}
