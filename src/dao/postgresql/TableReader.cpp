#include "dao/postgresql/TableReader.h"
#include "dao/base/Error.h"
#include "dao/postgresql/Result.h"
#include "dao/records/Engine.h"

namespace dao::postgresql {

namespace {

TableShape::Type TypeOf(Oid type)
{
    switch (type) {
    case Types::Boolean:
        return TableShape::Type::Boolean;
    case Types::Int2:
    case Types::Int4:
    case Types::Int8:
        return TableShape::Type::Number;
    case Types::Timestamptz:
        return TableShape::Type::Time;
    default:
        return TableShape::Type::Text;
    }
}

} // namespace

std::shared_ptr<const TableShape> ReadTableShape(Engine& engine, const QString& table)
{
    // The type modifier of varchar(n) is n + 4; place: where the column stands in the primary key, from 0.
    const auto described = engine.AllRows(
        "SELECT c.relname::text, a.attname::text, a.atttypid::bigint, "
        "CASE WHEN a.atttypid = 'varchar'::regtype AND a.atttypmod > 4 THEN a.atttypmod - 4 ELSE 0 END, "
        "array_position(i.indkey::int2[], a.attnum) "
        "FROM pg_class c JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped "
        "LEFT JOIN pg_index i ON i.indrelid = c.oid AND i.indisprimary "
        "WHERE c.relnamespace = 'kyn'::regnamespace AND c.relkind = 'r' AND lower(c.relname) = lower(?) "
        "ORDER BY a.attnum",
        {table});
    if (described.empty())
        throw Error(Kind::NoSuchTable, {table});
    QList<TableShape::Column> columns;
    QMap<int, QString> key;
    for (const QVariantList& row : described) {
        columns.append({row[1].toString(), TypeOf(row[2].toUInt()), row[3].toInt()});
        if (row[4].isValid())
            key.insert(row[4].toInt(), columns.last().name);
    }
    return std::make_shared<const TableShape>(engine, described.front()[0].toString(), columns, key.values());
}

} // namespace dao::postgresql
