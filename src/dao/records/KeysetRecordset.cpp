#include "dao/records/KeysetRecordset.h"
#include "dao/base/Error.h"
#include "dao/base/Names.h"
#include "dao/records/Criterion.h"
#include "dao/records/Engine.h"
#include <algorithm>

namespace dao {

KeysetRecordset::KeysetRecordset(std::shared_ptr<Engine> engine, KeysetSource source)
    : m_engine(std::move(engine)),
      m_source(std::move(source)),
      m_edit(m_source.table)
{
    for (const QString& field : m_source.table->KeyFields())
        m_keyColumns.push_back(FieldPosition(m_source.fields, field));
    for (const QString& shown : m_source.fields) {
        const auto& columns = m_source.table->Columns();
        const auto column =
            std::find_if(columns.begin(), columns.end(), [&](const TableShape::Column& candidate) {
                return candidate.name.compare(shown, Qt::CaseInsensitive) == 0;
            });
        m_tableColumns.push_back(column == columns.end() ? -1 : static_cast<int>(column - columns.begin()));
    }
    if (IsTableType())
        m_index = &m_source.table->IndexNamed("PrimaryKey");
}

Engine& KeysetRecordset::Open() const
{
    if (!m_engine || !m_engine->IsOpen())
        throw Error(Kind::Closed);
    return *m_engine;
}

void KeysetRecordset::Close() noexcept
{
    m_engine.reset();
    m_edit.Clear();
    m_keys.reset();
}

bool KeysetRecordset::Eof()
{
    EnsurePlace();
    return m_place == Place::AtEnd;
}

bool KeysetRecordset::Bof()
{
    EnsurePlace();
    return m_place == Place::AtEnd && m_keys && m_keys->empty();
}

// A recordset just opened has its first record current; it is read only when somebody asks.
void KeysetRecordset::EnsurePlace()
{
    Open();
    if (m_place == Place::Unknown) {
        ReadKeys();
        MoveTo(0);
    }
}

void KeysetRecordset::RequireRecord()
{
    EnsurePlace();
    if (m_place != Place::OnRecord)
        throw Error(Kind::NoCurrentRecord);
}

QVariant KeysetRecordset::Field(const QString& name)
{
    Open();
    const int shown = FieldPosition(m_source.fields, name);
    const int column = m_tableColumns[static_cast<std::size_t>(shown)];
    if (column >= 0 && m_edit.IsSet(column))
        return m_edit.Value(column);
    if (m_edit.State() == EditBuffer::Kind::Adding)
        return {};
    RequireRecord();
    return m_record[shown];
}

void KeysetRecordset::SetField(const QString& name, const QVariant& value)
{
    Open();
    const int column = m_tableColumns[static_cast<std::size_t>(FieldPosition(m_source.fields, name))];
    if (column < 0)
        throw Error(Kind::NotUpdatable);
    m_edit.Set(column, value);
}

void KeysetRecordset::AddNew()
{
    Open();
    m_edit.Begin(EditBuffer::Kind::Adding);
}

void KeysetRecordset::Edit()
{
    RequireRecord();
    m_edit.Begin(EditBuffer::Kind::Changing);
}

void KeysetRecordset::Update()
{
    Engine& engine = Open();
    switch (m_edit.State()) {
    case EditBuffer::Kind::None:
        throw Error(Kind::NotEditing);
    case EditBuffer::Kind::Adding:
        m_edit.Insert(engine);
        break;
    case EditBuffer::Kind::Changing: {
        if (m_edit.IsEmpty())
            break;
        ChangeRecord(engine);
        m_edit.Clear();
        return;
    }
    }
    m_edit.Clear();
}

void KeysetRecordset::ChangeRecord(Engine& engine)
{
    QStringList columns;
    QVariantList read;
    for (std::size_t i = 0; i < m_tableColumns.size(); ++i) {
        if (m_tableColumns[i] < 0)
            continue;
        columns.append(m_source.table->ColumnNames()[m_tableColumns[i]]);
        read.append(m_record[static_cast<qsizetype>(i)]);
    }
    QVariantList key = m_key;
    for (qsizetype i = 0; i < key.size(); ++i)
        if (const int column =
                m_tableColumns[static_cast<std::size_t>(m_keyColumns[static_cast<std::size_t>(i)])];
            m_edit.IsSet(column))
            key[i] = m_edit.Value(column);
    const Engine::Changed changed = m_edit.Change(engine, m_key, columns, read, {RowSql(), key});
    if (changed.records == 0) {
        const bool isThere = engine.FirstRow(m_source.table->RowSql(), m_key).has_value();
        throw Error(isThere ? Kind::RecordChanged : Kind::RecordGone);
    }
    if (m_keys && m_next > 0 && m_next <= m_keys->size() && (*m_keys)[m_next - 1] == m_key)
        (*m_keys)[m_next - 1] = key;
    if (changed.row)
        Take(*changed.row);
    else
        m_place = Place::NoRecord; // the change has moved it out of what the query shows
}

void KeysetRecordset::Take(QVariantList record)
{
    m_record = std::move(record);
    m_key.clear();
    for (const int column : m_keyColumns)
        m_key.append(m_record[column]);
    m_place = Place::OnRecord;
}

void KeysetRecordset::Delete()
{
    RequireRecord();
    m_edit.Clear();
    if (m_engine->Change(m_source.table->DeleteSql(), m_key) == 0)
        throw Error(Kind::RecordGone);
    m_place = Place::NoRecord;
}

void KeysetRecordset::MoveFirst()
{
    Open();
    m_edit.Clear();
    ReadKeys();
    MoveTo(0);
}

void KeysetRecordset::MoveNext()
{
    EnsurePlace();
    m_edit.Clear();
    if (m_place == Place::AtEnd || (m_place == Place::NoRecord && !m_keys))
        throw Error(Kind::NoCurrentRecord);
    if (!m_keys) { // found by Seek or FindFirst: go on from there
        ReadKeys();
        const auto current = std::find(m_keys->begin(), m_keys->end(), m_key);
        if (current == m_keys->end())
            throw Error(Kind::RecordGone);
        m_next = static_cast<std::size_t>(current - m_keys->begin()) + 1;
    }
    MoveTo(m_next);
}

// Makes the record at `position` current, or the next that still exists.
void KeysetRecordset::MoveTo(std::size_t position)
{
    const QString sql = RowSql();
    for (m_next = position; m_next < m_keys->size();)
        if (const QVariantList& key = (*m_keys)[m_next++]; ReadRecord(sql, key))
            return;
    m_place = Place::AtEnd;
}

void KeysetRecordset::ReadKeys()
{
    std::vector<QVariantList> keys = Open().AllRows(IsTableType() ? m_index->keysSql : m_source.sql);
    if (!IsTableType())
        for (QVariantList& row : keys) {
            QVariantList key;
            for (const int column : m_keyColumns)
                key.append(row[column]);
            row = std::move(key);
        }
    m_keys = std::move(keys);
    m_next = 0;
}

QString KeysetRecordset::RowSql() const
{
    if (IsTableType())
        return m_source.table->RowSql();
    return "SELECT * FROM (" + m_source.sql + ") AS q WHERE " + AllEqual(m_source.table->KeyFields());
}

bool KeysetRecordset::ReadRecord(const QString& sql, const QVariantList& values)
{
    auto record = Open().FirstRow(sql, values);
    if (!record)
        return false;
    Take(std::move(*record));
    return true;
}

void KeysetRecordset::Find(const QString& sql, const QVariantList& values)
{
    m_edit.Clear();
    m_keys.reset();
    m_noMatch = !ReadRecord(sql, values);
    if (m_noMatch)
        m_place = Place::NoRecord;
}

void KeysetRecordset::FindFirst(const QString& criterion)
{
    Open();
    QStringList conditions;
    QVariantList values;
    for (const Comparison& comparison : ParseCriterion(criterion)) {
        const QString& field = m_source.fields[FieldPosition(m_source.fields, comparison.field)];
        conditions.append(Quoted(field) + comparison.comparator + "?");
        values.append(comparison.value);
    }
    const QString from = IsTableType() ? Quoted(m_source.table->Name()) : "(" + m_source.sql + ") AS q";
    Find("SELECT " + QuotedList(m_source.fields) + " FROM " + from + " WHERE " + conditions.join(" AND ") +
             " LIMIT 1",
         values);
}

void KeysetRecordset::SetIndex(const QString& name)
{
    Open();
    if (!IsTableType())
        throw Error(Kind::WrongUse, {"SetIndex"});
    m_index = &m_source.table->IndexNamed(name);
    m_keys.reset();
    m_place = Place::Unknown;
    m_edit.Clear();
}

void KeysetRecordset::SeekKey(const QVariantList& key)
{
    Open();
    if (!IsTableType())
        throw Error(Kind::WrongUse, {"Seek"});
    if (key.size() != m_index->fields.size())
        throw Error(Kind::BadSeek, {m_index->name, QString::number(m_index->fields.size())});
    Find(m_index->seekSql, key);
}

} // namespace dao
