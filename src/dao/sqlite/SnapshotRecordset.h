#pragma once

#include "dao/records/Recordset.h"
#include "dao/sqlite/Statement.h"
#include <optional>

namespace dao::sqlite {

// The rows of a running statement, forward-only; fields are taken from the statement when they are asked for.
class SnapshotRecordset : public Recordset {
public:
    // The statement has its parameters bound. The first row is read at once, so that failures show at
    // opening.
    explicit SnapshotRecordset(StatementUse statement);

    bool Eof() override;
    bool Bof() override;
    bool NoMatch() const override { return true; }
    QStringList FieldNames() const override;
    QVariant Field(const QString& name) override;
    QString TextAt(int position) override { return Row().Text(position); }
    qlonglong NumberAt(int position) override { return Row().Number(position); }
    std::string_view Utf8At(int position) override { return Row().Utf8(position); }
    // Only as long as the first row is current.
    void MoveFirst() override;
    void MoveNext() override;
    void Close() noexcept override { m_statement.reset(); }

private:
    void Advance();
    const StatementUse& Open() const;
    const Statement& Row() const;

    std::optional<StatementUse> m_statement;
    bool m_onRow = false;
    bool m_empty = false;
    bool m_moved = false;
    int m_expected = 0; // column after the one read last: rows are mostly read in the order of their columns
};

} // namespace dao::sqlite
