#include "dao/sqlite/TableShape.h"
#include "dao/Error.h"
#include "dao/sqlite/Connection.h"

namespace dao::sqlite {

namespace {

// "VARCHAR(255)" -> 255
int SizeOf(const QString& type)
{
    return type.section('(', 1).section(')', 0, 0).toInt();
}

} // namespace

QString Quoted(const QString& name)
{
    return '"' + QString(name).replace('"', "\"\"") + '"';
}

QString QuotedList(const QStringList& names)
{
    QStringList quoted;
    for (const QString& name : names)
        quoted.append(Quoted(name));
    return quoted.join(", ");
}

QString AllEqual(const QStringList& names)
{
    QStringList conditions;
    for (const QString& name : names)
        conditions.append(Quoted(name) + "=?");
    return conditions.join(" AND ");
}

int FieldPosition(const QStringList& names, const QString& name)
{
    // Callers mostly spell a name as the table does, and folding costs more than the rest of reading a field.
    for (qsizetype i = 0; i < names.size(); ++i)
        if (names[i] == name)
            return static_cast<int>(i);
    for (qsizetype i = 0; i < names.size(); ++i)
        if (names[i].compare(name, Qt::CaseInsensitive) == 0)
            return static_cast<int>(i);
    throw Error(Kind::NoSuchField, {name});
}

std::shared_ptr<const TableShape> TableShape::Read(Connection& connection, const QString& table)
{
    std::shared_ptr<TableShape> shape(new TableShape);
    shape->ReadColumns(connection, table);
    const QString from = " FROM main." + Quoted(shape->m_name) + " WHERE " + AllEqual(shape->m_keyFields);
    shape->m_deleteSql = "DELETE" + from;
    shape->m_rowSql = "SELECT " + QuotedList(shape->m_columnNames) + from;
    shape->ReadIndexes(connection);
    return shape;
}

void TableShape::ReadColumns(Connection& connection, const QString& table)
{
    const auto named = connection.Prepare(
        "SELECT name FROM main.sqlite_schema WHERE type='table' AND name=? COLLATE NOCASE");
    named->Bind(0, table);
    if (!named->Step())
        throw Error(Kind::NoSuchTable, {table});
    m_name = named->Column(0).toString();

    const auto columns =
        connection.Prepare("SELECT name, type, pk FROM main.pragma_table_info(?) ORDER BY cid");
    columns->Bind(0, m_name);
    QStringList keyFields(16);
    while (columns->Step()) {
        const QString name = columns->Column(0).toString();
        m_columns.append({name, SizeOf(columns->Column(1).toString())});
        m_columnNames.append(name);
        if (const int place = columns->Column(2).toInt(); place > 0)
            keyFields[place - 1] = name;
    }
    keyFields.removeAll(QString());
    m_keyFields = keyFields;
    // A record set's written fields are kept as bits, its records are told apart by the key.
    if (m_columns.size() > 64 || m_keyFields.isEmpty())
        throw Error(Kind::WrongUse, {table});
}

void TableShape::ReadIndexes(Connection& connection)
{
    const auto fields = connection.Prepare("SELECT index_name, field_name, ignore_case FROM main.index_def "
                                           "WHERE table_name=? ORDER BY index_name, field_no");
    fields->Bind(0, m_name);
    QList<QPair<Index, QStringList>> found; // with the expressions that the index is on
    while (fields->Step()) {
        const QString name = fields->Column(0).toString();
        if (found.isEmpty() || found.last().first.name != name)
            found.append({Index{name, {}, {}, {}}, {}});
        const QString field = fields->Column(1).toString();
        found.last().first.fields.append(field);
        found.last().second.append(fields->Column(2).toBool() ? "kyn_fold(" + Quoted(field) + ")"
                                                              : Quoted(field));
    }
    for (auto& [index, expressions] : found) {
        QStringList conditions;
        for (const QString& expression : expressions)
            conditions.append(expression + (expression.startsWith('"') ? "=?" : "=kyn_fold(?)"));
        index.seekSql = "SELECT " + QuotedList(m_columnNames) + " FROM main." + Quoted(m_name) + " WHERE " +
                        conditions.join(" AND ") + " LIMIT 1";
        index.keysSql = "SELECT " + QuotedList(m_keyFields) + " FROM main." + Quoted(m_name) + " ORDER BY " +
                        expressions.join(", ") + ", " + QuotedList(m_keyFields);
        m_indexes.append(index);
    }
}

const TableShape::Index& TableShape::IndexNamed(const QString& name) const
{
    for (const Index& index : m_indexes)
        if (index.name.compare(name, Qt::CaseInsensitive) == 0)
            return index;
    throw Error(Kind::NoSuchIndex, {m_name, name});
}

QString TableShape::IndexOf(const QString& fields) const
{
    for (const Index& index : m_indexes)
        if (index.fields.join(", ") == fields)
            return index.name;
    return fields;
}

QStringList TableShape::NamesOf(quint64 fields) const
{
    QStringList names;
    for (qsizetype i = 0; i < m_columnNames.size(); ++i)
        if (fields >> i & 1U)
            names.append(m_columnNames[i]);
    return names;
}

const QString& TableShape::InsertSql(quint64 fields) const
{
    QString& sql = m_insertSql[fields];
    if (sql.isEmpty()) {
        const QStringList names = NamesOf(fields);
        sql = "INSERT INTO main." + Quoted(m_name);
        sql += names.isEmpty() ? QString(" DEFAULT VALUES")
                               : " (" + QuotedList(names) + ") VALUES (" +
                                     QStringList(names.size(), "?").join(", ") + ")";
    }
    return sql;
}

const QString& TableShape::UpdateSql(quint64 fields) const
{
    QString& sql = m_updateSql[fields];
    if (sql.isEmpty())
        sql = "UPDATE main." + Quoted(m_name) + " SET " + AllEqual(NamesOf(fields)).replace(" AND ", ", ") +
              " WHERE " + AllEqual(m_keyFields);
    return sql;
}

} // namespace dao::sqlite
