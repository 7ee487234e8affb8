#pragma once

#include "dao/records/EditBuffer.h"
#include "dao/records/Recordset.h"

namespace dao {

// A table opened for appending: no statement of it ever reads a record.
class AppendRecordset : public Recordset {
public:
    AppendRecordset(std::shared_ptr<Engine> engine, std::shared_ptr<const TableShape> table);

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
    void Close() noexcept override { m_engine.reset(); }

private:
    Engine& Open() const;

    std::shared_ptr<Engine> m_engine;
    std::shared_ptr<const TableShape> m_table;
    EditBuffer m_edit;
};

} // namespace dao
