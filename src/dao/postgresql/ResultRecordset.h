#pragma once

#include "dao/postgresql/Result.h"
#include "dao/records/Engine.h"
#include "dao/records/Recordset.h"
#include <optional>

namespace dao::postgresql {

// The rows of a statement that has run, forward-only. They are here already, so that it holds no lock and can
// be read on when the server has gone.
class ResultRecordset : public Recordset {
public:
    ResultRecordset(std::shared_ptr<const Engine> engine, Result result);

    bool Eof() override;
    bool Bof() override;
    bool NoMatch() const override { return true; }
    QStringList FieldNames() const override;
    QVariant Field(const QString& name) override;
    QString TextAt(int position) override { return Row().Text(m_row, position); }
    std::string_view Utf8At(int position) override { return Row().Utf8(m_row, position); }
    qlonglong NumberAt(int position) override { return Row().Number(m_row, position); }
    // Only as long as the first row is current.
    void MoveFirst() override;
    void MoveNext() override;
    void Close() noexcept override { m_result.reset(); }

private:
    const Result& Open() const;
    const Result& Row() const;

    std::shared_ptr<const Engine> m_engine; // the session that has to be open still
    std::optional<Result> m_result;
    QStringList m_names;
    int m_row = 0;
};

} // namespace dao::postgresql
