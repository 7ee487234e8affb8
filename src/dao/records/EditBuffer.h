#pragma once

#include "dao/records/Engine.h"
#include "dao/records/TableShape.h"
#include <QVariant>
#include <QVariantList>
#include <memory>
#include <vector>

namespace dao {

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

    void Insert(Engine& engine) const;
    // Inserts, or changes the record that has the same key.
    void Put(Engine& engine) const;
    // Changes the record of that key whose `columns` still have the values `read`, and reads what is wanted
    // then. No record was changed when there is none.
    Engine::Changed Change(Engine& engine, const QVariantList& key, const QStringList& columns,
                           const QVariantList& read, const Request& wanted) const;

private:
    QVariantList Values() const;
    void CheckValues() const;
    void Explain(Error& error) const;

    std::shared_ptr<const TableShape> m_table;
    Kind m_state = Kind::None;
    quint64 m_fields = 0;
    std::vector<QVariant> m_values;
};

} // namespace dao
