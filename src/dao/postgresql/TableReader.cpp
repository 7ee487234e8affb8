#include "dao/postgresql/TableReader.h"
#include "dao/base/Error.h"
#include "dao/postgresql/Result.h"

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

// The type modifier of varchar(n) is n + 4; place: where the column stands in the primary key, from 0.
constexpr auto Columns =
    "SELECT c.relname::text, a.attname::text, a.atttypid::bigint, "
    "CASE WHEN a.atttypid = 'varchar'::regtype AND a.atttypmod > 4 THEN a.atttypmod - 4 ELSE 0 END, "
    "array_position(i.indkey::int2[], a.attnum) "
    "FROM pg_class c JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped "
    "LEFT JOIN pg_index i ON i.indrelid = c.oid AND i.indisprimary "
    "WHERE c.relnamespace = 'kyn'::regnamespace AND c.relkind = 'r' ORDER BY c.relname, a.attnum";

constexpr auto Indexes = "SELECT table_name::text, index_name, field_name, ignore_case FROM index_def "
                         "ORDER BY table_name, index_name, field_no";

} // namespace

QList<Request> TableRequests()
{
    return {{Columns, {}}, {Indexes, {}}};
}

TableShapes ReadTableShapes(Engine& engine)
{
    engine.ReadAhead(TableRequests());
    QHash<QString, std::vector<QVariantList>> indexes;
    for (QVariantList& row : engine.AllRows(Indexes)) {
        const QString table = row.takeFirst().toString();
        indexes[table].push_back(row);
    }
    TableShapes shapes;
    const auto rows = engine.AllRows(Columns);
    for (auto row = rows.begin(); row != rows.end();) {
        const QString table = row->front().toString();
        QList<TableShape::Column> columns;
        QMap<int, QString> key;
        for (; row != rows.end() && row->front() == table; ++row) {
            columns.append({(*row)[1].toString(), TypeOf((*row)[2].toUInt()), (*row)[3].toInt()});
            if ((*row)[4].isValid())
                key.insert((*row)[4].toInt(), columns.last().name);
        }
        if (!key.isEmpty())
            shapes.insert(table.toLower(), std::make_shared<const TableShape>(table, columns, key.values(),
                                                                              indexes.value(table)));
    }
    return shapes;
}

} // namespace dao::postgresql
