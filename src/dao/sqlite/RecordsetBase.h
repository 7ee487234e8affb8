#pragma once

#include "dao/Recordset.h"
#include "dao/sqlite/TableShape.h"
#include <memory>
#include <vector>

namespace dao::sqlite {

class Connection;

// The fields written since AddNew or Edit.
class EditBuffer {
public:
    enum class Kind { None, Adding, Changing };

    explicit EditBuffer(std::shared_ptr<const TableShape> table) : m_table(std::move(table)) {}
    Kind State() const { return m_state; }
    void Begin(Kind kind);
    void Clear() { Begin(Kind::None); }
    // `column` is a position in the table's columns.
    void Set(int column, const QVariant& value);
    bool IsSet(int column) const { return (m_fields >> column & 1U) != 0; }
    bool IsEmpty() const { return m_fields == 0; }
    QVariant Value(int column) const { return m_values[static_cast<std::size_t>(column)]; }

    void Insert(Connection& connection) const;
    // Changes the record of that key whose `columns` still have the values `read`. Returns false when there
    // is none.
    bool Change(Connection& connection, const QVariantList& key, const QStringList& columns,
                const QVariantList& read) const;

private:
    QVariantList Values() const;
    int Run(Connection& connection, const QString& sql, const QVariantList& values) const;

    std::shared_ptr<const TableShape> m_table;
    Kind m_state = Kind::None;
    quint64 m_fields = 0;
    std::vector<QVariant> m_values;
};

// What a kind of recordset does not offer, refused.
class RecordsetBase : public Recordset {
public:
    int Position(const QString& name) const override { return FieldPosition(FieldNames(), name); }
    QString TextAt(int position) override { return Field(FieldNames().at(position)).toString(); }
    qlonglong NumberAt(int position) override;
    std::string_view Utf8At(int position) override;
    void SetField(const QString& name, const QVariant& value) override;
    void AddNew() override;
    void Edit() override;
    void Update() override;
    void CancelUpdate() override;
    void Delete() override;
    void MoveFirst() override;
    void FindFirst(const QString& criterion) override;
    void SetIndex(const QString& name) override;
    void SeekKey(const QVariantList& key) override;

private:
    QByteArray m_utf8; // what Utf8At gave last
};

} // namespace dao::sqlite
