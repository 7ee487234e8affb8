#include "dao/records/AppendRecordset.h"
#include "dao/base/Error.h"
#include "dao/base/Names.h"
#include "dao/records/Engine.h"

namespace dao {

AppendRecordset::AppendRecordset(std::shared_ptr<Engine> engine, std::shared_ptr<const TableShape> table)
    : m_engine(std::move(engine)),
      m_table(table),
      m_edit(std::move(table))
{
}

Engine& AppendRecordset::Open() const
{
    if (!m_engine || !m_engine->IsOpen())
        throw Error(Kind::Closed);
    return *m_engine;
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

} // namespace dao
