#pragma once

#include "dao/records/QueryDef.h"
#include "dao/records/Recordset.h"
#include <QHash>
#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <memory>
#include <vector>

namespace dao {

class Engine;
class TableShape;
struct Request;

// What will be read next, see Database::ReadAhead.
struct Reading {
    QString source;              // as OpenSnapshot takes it, or a stored query with parameters, or a table
    QVariantMap parameters = {}; // of the stored query
    QString index = {};          // of the table, to Seek on
    QVariantList key = {};       // what is sought
};

// An open database, on any engine; owned by its Workspace. Statements are prepared once per recordset shape
// and stored query and kept.
class Database {
public:
    explicit Database(std::shared_ptr<Engine> engine);
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // The same for all consoles that share this database, and for no other database.
    QString Id() const { return m_id; }
    // False when the file that is open has been deleted, or another stands in its place: what is stored then
    // is lost.
    bool IsInPlace() const;

    // A table with its indexes. With `appendOnly` records can be added and nothing else, and none is read.
    std::unique_ptr<Recordset> OpenTable(const QString& name, bool appendOnly = false);

    // Adds records in one statement, all or none of them; each has a value for each field. Two or more, and
    // of few different numbers: each number makes a statement that is kept.
    void Append(const QString& table, const QStringList& fields, const std::vector<QVariantList>& records);

    // A stored query (without parameters), a table by its name, or a select statement. Snapshots are
    // forward-only.
    std::unique_ptr<Recordset> OpenSnapshot(const QString& queryNameOrSql);
    std::unique_ptr<Recordset> OpenDynaset(const QString& queryNameOrSql);

    // A stored query by name, ignoring case. Kind::NoSuchQuery when there is none.
    std::unique_ptr<dao::QueryDef> QueryDef(const QString& name);

    // These will be read next, each just so. A server is waited for once for all of them instead of once for
    // each; what others or this session change before is read again. Nothing on files. What cannot be read is
    // found out by who reads it.
    void ReadAhead(const QList<Reading>& readings);

    // Inserts a record, or changes these fields of the one that has the same key. Raises what Update does.
    void Put(const QString& table, const QList<QPair<QString, QVariant>>& fields);

    bool HasField(const QString& table, const QString& field);
    // Defined size of a text field in characters; 0 for one without a limit and for a field that is not text.
    int FieldSize(const QString& table, const QString& field);

    // A text as this engine's kyn_fold has it. The engines agree with dao::Fold but for U+0130.
    QString Fold(const QString& text);

private:
    QString Info(const QString& name);
    std::shared_ptr<const TableShape> Table(const QString& name);
    std::shared_ptr<const StoredQuery> Query(const QString& name); // empty when there is none
    Request RequestFor(const Reading& reading);
    std::unique_ptr<Recordset> OpenQueryDynaset(const StoredQuery& query);

    std::shared_ptr<Engine> m_engine;
    QString m_id;
    QHash<QString, std::shared_ptr<const TableShape>> m_tables;   // by lower-case name
    QHash<QString, std::shared_ptr<const StoredQuery>> m_queries; // by lower-case name
};

} // namespace dao
