#include "dao/tables/RegistryTable.h"

namespace dao {

namespace {

const QString KeyIndex = QStringLiteral("i_key");

std::unique_ptr<Recordset> OpenAt(Database& database, const QString& key)
{
    auto rows = database.OpenTable(RegistryTable::Table);
    rows->SetIndex(KeyIndex);
    rows->Seek(key);
    return rows;
}

} // namespace

std::optional<QString> RegistryTable::Find(Database& database, const QString& key)
{
    const auto rows = OpenAt(database, key);
    return rows->NoMatch() ? std::nullopt : std::optional(rows->Field(ValueField).toString());
}

Reading RegistryTable::ReadingOf(const QString& key)
{
    return {.source = Table, .index = KeyIndex, .key = {key}};
}

void RegistryTable::Store(Database& database, const QString& key, const QString& value)
{
    database.Put(Table, {{KeyField, key}, {ValueField, value}});
}

QMap<QString, QString> RegistryTable::All(Database& database)
{
    QMap<QString, QString> values;
    const auto rows = database.OpenTable(Table);
    for (; !rows->Eof(); rows->MoveNext())
        values.insert(rows->Field(KeyField).toString(), rows->Field(ValueField).toString());
    return values;
}

void RegistryTable::Remove(Database& database, const QString& key)
{
    if (const auto rows = OpenAt(database, key); !rows->NoMatch())
        rows->Delete();
}

} // namespace dao
