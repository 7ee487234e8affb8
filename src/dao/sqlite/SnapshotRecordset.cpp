#include "dao/sqlite/SnapshotRecordset.h"
#include "dao/base/Names.h"

namespace dao::sqlite {

SnapshotRecordset::SnapshotRecordset(StatementUse statement) : m_statement(std::move(statement))
{
    Advance();
    m_empty = !m_onRow;
}

const StatementUse& SnapshotRecordset::Open() const
{
    if (!m_statement)
        throw Error(Kind::Closed);
    (*m_statement)->CheckOpen();
    return *m_statement;
}

void SnapshotRecordset::Advance()
{
    m_onRow = false;
    m_expected = 0;
    m_onRow = (*m_statement)->Step();
    if (!m_onRow)
        (*m_statement)->Reset(); // gives the read lock back
}

bool SnapshotRecordset::Eof()
{
    Open();
    return !m_onRow;
}

bool SnapshotRecordset::Bof()
{
    Open();
    return m_empty;
}

QStringList SnapshotRecordset::FieldNames() const
{
    return Open()->ColumnNames();
}

QVariant SnapshotRecordset::Field(const QString& name)
{
    const StatementUse& statement = Open();
    const QStringList& names = statement->ColumnNames();
    if (m_expected >= names.size() || names[m_expected] != name)
        m_expected = FieldPosition(names, name);
    if (!m_onRow)
        throw Error(Kind::NoCurrentRecord);
    return statement->Column(m_expected++);
}

const Statement& SnapshotRecordset::Row() const
{
    const StatementUse& statement = Open();
    if (!m_onRow)
        throw Error(Kind::NoCurrentRecord);
    return *statement.operator->();
}

void SnapshotRecordset::MoveFirst()
{
    Open();
    if (m_moved)
        throw Error(Kind::WrongUse, {"MoveFirst"});
}

void SnapshotRecordset::MoveNext()
{
    Open();
    if (!m_onRow)
        throw Error(Kind::NoCurrentRecord);
    m_moved = true;
    Advance();
}

} // namespace dao::sqlite
