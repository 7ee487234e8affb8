#pragma once

#include "dao/sqlite/RecordsetBase.h"

namespace dao::sqlite {

// A table opened for appending: no statement of it ever reads a record.
class AppendRecordset : public RecordsetBase {
public:
    AppendRecordset(std::shared_ptr<Connection> connection, std::shared_ptr<const TableShape> table);

    bool Eof() override { return true; }
    bool Bof() override { return true; }
    bool NoMatch() const override { return true; }
    QStringList FieldNames() const override { return m_table->ColumnNames(); }
    QVariant Field(const QString& name) override;
    void SetField(const QString& name, const QVariant& value) override;
    void AddNew() override;
    void Update() override;
    void CancelUpdate() override { m_edit.Clear(); }
    void MoveNext() override;
    void Close() noexcept override { m_connection.reset(); }

private:
    Connection& Open() const;

    std::shared_ptr<Connection> m_connection;
    std::shared_ptr<const TableShape> m_table;
    EditBuffer m_edit;
};

} // namespace dao::sqlite
