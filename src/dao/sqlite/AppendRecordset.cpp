#include "dao/sqlite/AppendRecordset.h"
#include "dao/Error.h"
#include "dao/sqlite/Connection.h"

namespace dao::sqlite {

AppendRecordset::AppendRecordset(std::shared_ptr<Connection> connection,
                                 std::shared_ptr<const TableShape> table)
    : m_connection(std::move(connection)),
      m_table(table),
      m_edit(std::move(table))
{
}

Connection& AppendRecordset::Open() const
{
    if (!m_connection || !m_connection->IsOpen())
        throw Error(Kind::Closed);
    return *m_connection;
}

QVariant AppendRecordset::Field(const QString& name)
{
    Open();
    const int column = FieldPosition(m_table->ColumnNames(), name);
    if (m_edit.State() == EditBuffer::Kind::None)
        throw Error(Kind::NoCurrentRecord);
    return m_edit.Value(column);
}

void AppendRecordset::SetField(const QString& name, const QVariant& value)
{
    Open();
    m_edit.Set(FieldPosition(m_table->ColumnNames(), name), value);
}

void AppendRecordset::AddNew()
{
    Open();
    m_edit.Begin(EditBuffer::Kind::Adding);
}

void AppendRecordset::Update()
{
    if (m_edit.State() == EditBuffer::Kind::None)
        throw Error(Kind::NotEditing);
    m_edit.Insert(Open());
    m_edit.Clear();
}

void AppendRecordset::MoveNext()
{
    throw Error(Kind::NoCurrentRecord);
}

} // namespace dao::sqlite
