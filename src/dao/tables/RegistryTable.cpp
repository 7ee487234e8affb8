#include "dao/tables/RegistryTable.h"

namespace dao {

namespace {

std::unique_ptr<Recordset> OpenAt(Database& database, const QString& key)
{
    auto rows = database.OpenTable(RegistryTable::Table);
    rows->SetIndex(QStringLiteral("i_key"));
    rows->Seek(key);
    return rows;
}

} // namespace

std::optional<QString> RegistryTable::Find(Database& database, const QString& key)
{
    const auto rows = OpenAt(database, key);
    return rows->NoMatch() ? std::nullopt : std::optional(rows->Field(ValueField).toString());
}

void RegistryTable::Store(Database& database, const QString& key, const QString& value)
{
    const auto rows = OpenAt(database, key);
    if (rows->NoMatch()) {
        rows->AddNew();
        rows->SetField(KeyField, key);
    } else {
        rows->Edit();
    }
    rows->SetField(ValueField, value);
    rows->Update();
}

} // namespace dao
