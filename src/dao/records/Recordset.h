#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <string_view>
#include <type_traits>

namespace dao {

// Records of a table, a stored query or an SQL text, one of them current. Opened by Database and QueryDef;
// closed by Close or its destruction. Use after Close, or after the workspace was closed, raises Kind::Closed
// (Close itself never does).
//
//  * table-type (Database::OpenTable): Seek on a chosen index, records in the order of that index, editable.
//    The records are not read before MoveFirst, MoveNext or Eof asks for them.
//  * append-only (Database::OpenTable with appendOnly): AddNew and Update only; no record is ever read.
//  * dynaset: editable when its stored query names the table that it edits; FindFirst.
//  * snapshot: forward-only and read-only. It keeps a read lock on the database until its end is reached or
//    it is closed.
//
// Field names ignore case. Null is an invalid QVariant, when reading and when writing; a QString, even a null
// one, is stored as text. Booleans are read as bool, time stamps as QDateTime in UTC with milliseconds.
//
// A kind of recordset overrides what it offers; everything else is refused here, by Kind::NotUpdatable or
// Kind::WrongUse.
//
// Update never overwrites what somebody else stored: Kind::RecordChanged when a field of the record is no
// longer as it was read, Kind::RecordGone when the record is deleted. Errors are dao::Error. After a failed
// Update the recordset is still being edited: correct the fields and call Update again, or CancelUpdate.
class Recordset {
public:
    Recordset() = default;
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;
    virtual ~Recordset() = default;

    // Past the last record; before the first. Both are true when there is none.
    virtual bool Eof() = 0;
    virtual bool Bof() = 0;
    // The last Seek or FindFirst found nothing.
    virtual bool NoMatch() const = 0;

    virtual QStringList FieldNames() const = 0;
    // The current record's value; while editing, the value written so far.
    virtual QVariant Field(const QString& name) = 0;
    // For reading many records: the position of a field, and the current record's value there. Null is an
    // empty text and 0; a number stands for a boolean (0, 1) and a time stamp (milliseconds since 1970), too.
    virtual int Position(const QString& name) const;
    virtual QString TextAt(int position) { return Field(FieldNames().at(position)).toString(); }
    virtual qlonglong NumberAt(int position);
    // The text in UTF-8; valid until the next use of the recordset.
    virtual std::string_view Utf8At(int position);
    virtual void SetField(const QString& name, const QVariant& value);

    // Begin a new record / change the current one; Update stores it, moving away or CancelUpdate drops it.
    // Only the fields written are stored. Adding leaves the current record where it was; the new one is met
    // from the next MoveFirst, Seek or FindFirst on.
    virtual void AddNew();
    virtual void Edit();
    virtual void Update();
    virtual void CancelUpdate();
    // Deletes the current record; there is no current record until the next move.
    virtual void Delete();

    virtual void MoveFirst();
    virtual void MoveNext() = 0;

    // Makes the first record current for which `criterion` holds: comparisons of a field with a number or a
    // 'text' (a quote in it doubled), joined by "and", for example "address_id=5". Not on snapshots.
    virtual void FindFirst(const QString& criterion);

    // Table-type only. The index that Seek and the order of the records follow; at first "PrimaryKey".
    virtual void SetIndex(const QString& name);
    // Makes the record current whose index fields equal `key`, one value for each field of the index in its
    // order.
    virtual void SeekKey(const QVariantList& key);
    template <typename... Value> void Seek(const Value&... values)
    {
        SeekKey(QVariantList{KeyValue(values)...});
    }

    virtual void Close() noexcept = 0;

private:
    template <typename Value> static QVariant KeyValue(const Value& value)
    {
        if constexpr (std::is_integral_v<Value> && !std::is_same_v<Value, bool>)
            return QVariant(static_cast<qlonglong>(value));
        else
            return QVariant(value);
    }

    QByteArray m_utf8; // what Utf8At gave last
};

} // namespace dao
