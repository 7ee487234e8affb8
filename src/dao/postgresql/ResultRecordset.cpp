#include "dao/postgresql/ResultRecordset.h"
#include "dao/base/Error.h"
#include "dao/base/Names.h"

namespace dao::postgresql {

ResultRecordset::ResultRecordset(std::shared_ptr<const Engine> engine, Result result)
    : m_engine(std::move(engine)),
      m_result(std::move(result)),
      m_names(m_result->ColumnNames())
{
}

const Result& ResultRecordset::Open() const
{
    if (!m_result || !m_engine->IsOpen())
        throw Error(Kind::Closed);
    return *m_result;
}

const Result& ResultRecordset::Row() const
{
    const Result& result = Open();
    if (m_row >= result.Rows())
        throw Error(Kind::NoCurrentRecord);
    return result;
}

bool ResultRecordset::Eof()
{
    return m_row >= Open().Rows();
}

bool ResultRecordset::Bof()
{
    return Open().Rows() == 0;
}

QStringList ResultRecordset::FieldNames() const
{
    Open();
    return m_names;
}

QVariant ResultRecordset::Field(const QString& name)
{
    Open();
    const int column = FieldPosition(m_names, name);
    return Row().Value(m_row, column);
}

void ResultRecordset::MoveFirst()
{
    Open();
    if (m_row > 0)
        throw Error(Kind::WrongUse, {"MoveFirst"});
}

void ResultRecordset::MoveNext()
{
    Row();
    ++m_row;
}

} // namespace dao::postgresql
