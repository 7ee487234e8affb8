#pragma once

#include "dao/records/EditBuffer.h"
#include "dao/records/Recordset.h"
#include <optional>
#include <vector>

namespace dao {

// Which records a KeysetRecordset shows.
struct KeysetSource {
    std::shared_ptr<const TableShape> table; // the table that is edited
    QStringList fields;                      // shown fields, those of the table's key among them
    QString sql;                             // the records; empty: the whole table
};

// Table-type recordsets and dynasets. Holds no statement and so no lock between two calls: it keeps the
// identities of its records, read when a move first needs them, and the values of the current one.
class KeysetRecordset : public Recordset {
public:
    KeysetRecordset(std::shared_ptr<Engine> engine, KeysetSource source);

    bool Eof() override;
    bool Bof() override;
    bool NoMatch() const override { return m_noMatch; }
    QStringList FieldNames() const override { return m_source.fields; }
    QVariant Field(const QString& name) override;
    void SetField(const QString& name, const QVariant& value) override;
    void AddNew() override;
    void Edit() override;
    void Update() override;
    void CancelUpdate() override { m_edit.Clear(); }
    void Delete() override;
    void MoveFirst() override;
    void MoveNext() override;
    void FindFirst(const QString& criterion) override;
    void SetIndex(const QString& name) override;
    void SeekKey(const QVariantList& key) override;
    void Close() noexcept override;

private:
    enum class Place { Unknown, OnRecord, NoRecord, AtEnd };

    bool IsTableType() const { return m_source.sql.isEmpty(); }
    Engine& Open() const;
    void EnsurePlace();
    void RequireRecord();
    void ReadKeys();
    void MoveTo(std::size_t position);
    void Find(const QString& sql, const QVariantList& values);
    void ChangeRecord(Engine& engine);
    void Take(QVariantList record);
    bool ReadRecord(const QString& sql, const QVariantList& values);
    QString RowSql() const;

    std::shared_ptr<Engine> m_engine;
    KeysetSource m_source;
    const TableShape::Index* m_index = nullptr;
    EditBuffer m_edit;
    std::vector<int> m_keyColumns;   // positions of the key's fields among the shown ones
    std::vector<int> m_tableColumns; // of each shown field its position in the table; -1 for a computed one
    Place m_place = Place::Unknown;
    bool m_noMatch = false;
    std::optional<std::vector<QVariantList>> m_keys;
    std::size_t m_next = 0; // the key after the current record's
    QVariantList m_key;
    QVariantList m_record;
};

} // namespace dao
