#include "dao/tables/StatusTable.h"

namespace dao {

namespace {

const QString CodeField = QStringLiteral("status_code");
const QString InField = QStringLiteral("in_desc");
const QString OutField = QStringLiteral("out_desc");
const QString EmergencyField = QStringLiteral("emergency");

} // namespace

std::unique_ptr<Recordset> StatusTable::Open(Database& database)
{
    return database.OpenTable(Table);
}

QString StatusTable::ByCode()
{
    return QStringLiteral("select * from %1 order by %2").arg(Table, CodeField);
}

std::unique_ptr<Recordset> StatusTable::OpenSnapshot(Database& database)
{
    return database.OpenSnapshot(ByCode());
}

StatusRecord StatusTable::Read(Recordset& rows)
{
    return {.code = rows.Field(CodeField).toInt(),
            .in = rows.Field(InField).toString(),
            .out = rows.Field(OutField).toString(),
            .emergency = rows.Field(EmergencyField).toBool()};
}

void StatusTable::Store(Recordset& rows, const StatusRecord& record)
{
    if (rows.NoMatch()) {
        rows.AddNew();
        rows.SetField(CodeField, record.code);
    } else {
        rows.Edit();
    }
    rows.SetField(InField, record.in);
    rows.SetField(OutField, record.out);
    rows.SetField(EmergencyField, record.emergency);
    rows.Update();
}

int StatusTable::LongestText(Database& database)
{
    return database.FieldSize(Table, InField);
}

} // namespace dao
