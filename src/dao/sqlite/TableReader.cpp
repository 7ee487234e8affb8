#include "dao/sqlite/TableReader.h"
#include "dao/sqlite/Statement.h"

namespace dao::sqlite {

namespace {

TableShape::Column Described(const QString& name, const QString& declaration)
{
    const QString type = declaration.section('(', 0, 0).toUpper();
    if (type == "BOOLEAN")
        return {name, TableShape::Type::Boolean, 0};
    if (type == "DATETIME")
        return {name, TableShape::Type::Time, 0};
    if (type == "INTEGER" || type == "SMALLINT")
        return {name, TableShape::Type::Number, 0};
    return {name, TableShape::Type::Text, declaration.section('(', 1).section(')', 0, 0).toInt()};
}

} // namespace

std::shared_ptr<const TableShape> ReadTableShape(Engine& engine, const Handle& file, const QString& table)
{
    // Not kept: a table is described once.
    Statement named(file, "SELECT name FROM main.sqlite_schema WHERE type='table' AND name=? COLLATE NOCASE",
                    false);
    named.Bind(0, table);
    if (!named.Step())
        throw Error(Kind::NoSuchTable, {table});
    const QString name = named.Text(0);
    Statement described(file, "SELECT name, type, pk FROM main.pragma_table_info(?) ORDER BY cid", false);
    described.Bind(0, name);
    QList<TableShape::Column> columns;
    QStringList keyFields(16);
    while (described.Step()) {
        columns.append(Described(described.Text(0), described.Text(1)));
        if (const qlonglong place = described.Number(2); place > 0)
            keyFields[place - 1] = columns.last().name;
    }
    keyFields.removeAll(QString());
    return std::make_shared<const TableShape>(
        name, columns, keyFields,
        engine.AllRows("SELECT index_name, field_name, ignore_case FROM index_def WHERE table_name=? "
                       "ORDER BY index_name, field_no",
                       {name}));
}

} // namespace dao::sqlite
