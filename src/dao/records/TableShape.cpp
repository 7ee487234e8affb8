#include "dao/records/TableShape.h"
#include "dao/base/Error.h"
#include "dao/base/Names.h"

namespace dao {

TableShape::TableShape(const QString& name, const QList<Column>& columns, const QStringList& keyFields,
                       const std::vector<QVariantList>& indexes)
    : m_name(name),
      m_columns(columns),
      m_keyFields(keyFields)
{
    // A record set's written fields are kept as bits, its records are told apart by the key.
    if (m_columns.size() > 64 || m_keyFields.isEmpty())
        throw Error(Kind::WrongUse, {name});
    for (const Column& column : m_columns)
        m_columnNames.append(column.name);
    const QString from = " FROM " + Quoted(m_name) + " WHERE " + AllEqual(m_keyFields);
    m_deleteSql = "DELETE" + from;
    m_rowSql = "SELECT " + QuotedList(m_columnNames) + from;
    MakeIndexes(indexes);
}

void TableShape::MakeIndexes(const std::vector<QVariantList>& rows)
{
    QList<QPair<Index, QStringList>> found; // with the expressions that the index is on
    for (const QVariantList& row : rows) {
        const QString name = row[0].toString();
        if (found.isEmpty() || found.last().first.name != name)
            found.append({Index{name, {}, {}, {}}, {}});
        const QString field = row[1].toString();
        found.last().first.fields.append(field);
        found.last().second.append(row[2].toBool() ? "kyn_fold(" + Quoted(field) + ")" : Quoted(field));
    }
    for (auto& [index, expressions] : found) {
        QStringList conditions;
        for (const QString& expression : expressions)
            conditions.append(expression + (expression.startsWith('"') ? "=?" : "=kyn_fold(?)"));
        index.seekSql = "SELECT " + QuotedList(m_columnNames) + " FROM " + Quoted(m_name) + " WHERE " +
                        conditions.join(" AND ") + " LIMIT 1";
        index.keysSql = "SELECT " + QuotedList(m_keyFields) + " FROM " + Quoted(m_name) + " ORDER BY " +
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
        sql = "INSERT INTO " + Quoted(m_name);
        sql += names.isEmpty() ? QString(" DEFAULT VALUES")
                               : " (" + QuotedList(names) + ") VALUES (" +
                                     QStringList(names.size(), "?").join(", ") + ")";
    }
    return sql;
}

QString TableShape::PutSql(quint64 fields) const
{
    QStringList changes;
    for (const QString& field : NamesOf(fields))
        if (!m_keyFields.contains(field))
            changes.append(Quoted(field) + "=excluded." + Quoted(field));
    return InsertSql(fields) + " ON CONFLICT (" + QuotedList(m_keyFields) + ") DO UPDATE SET " +
           changes.join(", ");
}

const QString& TableShape::UpdateSql(quint64 fields) const
{
    QString& sql = m_updateSql[fields];
    if (sql.isEmpty())
        sql = "UPDATE " + Quoted(m_name) + " SET " + AllEqual(NamesOf(fields)).replace(" AND ", ", ") +
              " WHERE " + AllEqual(m_keyFields);
    return sql;
}

} // namespace dao
