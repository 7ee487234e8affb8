#include "dao/sqlite/RecordsetBase.h"
#include "dao/Error.h"
#include "dao/sqlite/Connection.h"

namespace dao::sqlite {

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

void EditBuffer::Insert(Connection& connection) const
{
    Run(connection, m_table->InsertSql(m_fields), Values());
}

bool EditBuffer::Change(Connection& connection, const QVariantList& key, const QStringList& columns,
                        const QVariantList& read) const
{
    QString sql = m_table->UpdateSql(m_fields);
    for (const QString& column : columns)
        sql += " AND " + Quoted(column) + " IS ?";
    return Run(connection, sql, Values() + key + read) > 0;
}

// Tells in an error about a key which index it was and what value stands there already.
int EditBuffer::Run(Connection& connection, const QString& sql, const QVariantList& values) const
{
    try {
        return connection.Change(sql, values);
    } catch (Error& error) {
        if (error.kind != dao::Kind::DuplicateKey)
            throw;
        const QString index = m_table->IndexOf(error.values.value(0));
        QStringList key;
        try {
            for (const QString& field : m_table->IndexNamed(index).fields)
                key.append(Value(FieldPosition(m_table->ColumnNames(), field)).toString());
        } catch (const Error&) {
            // A unique constraint that is no index of the table's description.
        }
        throw Error(dao::Kind::DuplicateKey, {index, key.join(", ")}, error.engineText);
    }
}

qlonglong RecordsetBase::NumberAt(int position)
{
    const QVariant value = Field(FieldNames().at(position));
    return value.typeId() == QMetaType::QDateTime ? value.toDateTime().toMSecsSinceEpoch()
                                                  : value.toLongLong();
}

std::string_view RecordsetBase::Utf8At(int position)
{
    m_utf8 = TextAt(position).toUtf8();
    return {m_utf8.constData(), static_cast<std::size_t>(m_utf8.size())};
}

void RecordsetBase::SetField(const QString&, const QVariant&)
{
    throw Error(Kind::NotUpdatable);
}

void RecordsetBase::AddNew()
{
    throw Error(Kind::NotUpdatable);
}

void RecordsetBase::Edit()
{
    throw Error(Kind::NotUpdatable);
}

void RecordsetBase::Update()
{
    throw Error(Kind::NotUpdatable);
}

void RecordsetBase::CancelUpdate() {}

void RecordsetBase::Delete()
{
    throw Error(Kind::NotUpdatable);
}

void RecordsetBase::MoveFirst()
{
    throw Error(Kind::WrongUse, {"MoveFirst"});
}

void RecordsetBase::FindFirst(const QString&)
{
    throw Error(Kind::WrongUse, {"FindFirst"});
}

void RecordsetBase::SetIndex(const QString&)
{
    throw Error(Kind::WrongUse, {"SetIndex"});
}

void RecordsetBase::SeekKey(const QVariantList&)
{
    throw Error(Kind::WrongUse, {"Seek"});
}

} // namespace dao::sqlite
