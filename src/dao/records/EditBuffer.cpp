#include "dao/records/EditBuffer.h"
#include "dao/base/Error.h"
#include "dao/base/Names.h"
#include "dao/records/Engine.h"
#include <QDateTime>

namespace dao {

namespace {

bool Fits(const TableShape::Column& column, const QVariant& value)
{
    if (!value.isValid() || value.typeId() == QMetaType::Nullptr)
        return true; // whether the field may be Null the table knows
    switch (column.type) {
    case TableShape::Type::Time:
        return value.typeId() == QMetaType::QDateTime;
    case TableShape::Type::Number: {
        bool whole = false;
        value.toLongLong(&whole);
        return whole;
    }
    case TableShape::Type::Text: {
        const QString text = value.toString();
        return column.size == 0 || text.size() <= column.size || text.toUcs4().size() <= column.size;
    }
    case TableShape::Type::Boolean:
        return true;
    }
    return true;
}

} // namespace

void EditBuffer::Begin(Kind kind)
{
    m_state = kind;
    m_fields = 0;
    m_values.assign(kind == Kind::None ? 0 : static_cast<std::size_t>(m_table->Columns().size()), QVariant());
}

void EditBuffer::Set(int column, const QVariant& value)
{
    if (m_state == Kind::None)
        throw Error(dao::Kind::NotEditing);
    m_fields |= quint64{1} << column;
    m_values[static_cast<std::size_t>(column)] = value;
}

QVariantList EditBuffer::Values() const
{
    QVariantList values;
    for (std::size_t i = 0; i < m_values.size(); ++i)
        if (IsSet(static_cast<int>(i)))
            values.append(m_values[i]);
    return values;
}

void EditBuffer::Insert(Engine& engine) const
{
    CheckValues();
    engine.ChangeLater(m_table->InsertSql(m_fields), Values(),
                       [buffer = *this](Error& error) { buffer.Explain(error); });
}

void EditBuffer::Put(Engine& engine) const
{
    CheckValues();
    engine.ChangeLater(m_table->PutSql(m_fields), Values(),
                       [buffer = *this](Error& error) { buffer.Explain(error); });
}

Engine::Changed EditBuffer::Change(Engine& engine, const QVariantList& key, const QStringList& columns,
                                   const QVariantList& read, const Request& wanted) const
{
    CheckValues();
    QString sql = m_table->UpdateSql(m_fields);
    for (const QString& column : columns)
        sql += " AND " + Quoted(column) + " IS NOT DISTINCT FROM ?";
    try {
        return engine.ChangeAndRead({sql, Values() + key + read}, wanted);
    } catch (Error& error) {
        Explain(error);
        throw;
    }
}

// The table refuses these, too, but not every engine tells then which field it was.
void EditBuffer::CheckValues() const
{
    for (int i = 0; i < static_cast<int>(m_values.size()); ++i)
        if (IsSet(i) && !Fits(m_table->Columns()[i], m_values[static_cast<std::size_t>(i)]))
            throw Error(dao::Kind::BadValue, {m_table->ColumnNames()[i]});
}

// Tells in an error about a key which index it was and what value stands there already.
void EditBuffer::Explain(Error& error) const
{
    if (error.kind != dao::Kind::DuplicateKey)
        return;
    const QString index = m_table->IndexOf(error.values.value(0));
    QStringList key;
    try {
        for (const QString& field : m_table->IndexNamed(index).fields)
            key.append(Value(FieldPosition(m_table->ColumnNames(), field)).toString());
    } catch (const Error&) {
        // A unique constraint that is no index of the table's description.
    }
    error = Error(dao::Kind::DuplicateKey, {index, key.join(", ")}, error.engineText);
}

} // namespace dao
