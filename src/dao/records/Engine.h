#pragma once

#include "dao/base/Error.h"
#include "dao/records/Recordset.h"
#include <QVariantList>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace dao {

class TableShape;

// What an SQL text turned out to be.
struct StatementShape {
    bool isSelect; // returns rows and changes nothing
    QStringList columns;
    QStringList parameters; // names without their prefix, each once
};

// A statement with its parameters' values.
struct Request {
    QString sql;
    QVariantList values;
};

// What recordsets, stored queries and databases need of an open database, whichever engine it is. The SQL is
// the dialect that the engines share: double quotes around names, "?" or ":name" for a parameter. Values are
// bound in the order of StatementShape::parameters. Everything raises Kind::Closed once the workspace is
// closed, and otherwise the kind of the engine's failure.
class Engine {
public:
    Engine() = default;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    virtual ~Engine() = default;

    virtual bool IsOpen() const = 0;
    // False when what is open has been deleted, or another file stands in its place.
    virtual bool IsInPlace() const { return true; }
    // How often the session has waited for a server's answer since it was connected.
    virtual int Waits() const { return 0; }
    virtual StatementShape Describe(const QString& sql) = 0;
    // Parts of the same that need no server, or seldom.
    virtual QStringList Parameters(const QString& sql) { return Describe(sql).parameters; }
    virtual bool IsSelect(const QString& sql) { return Describe(sql).isSelect; }
    // Runs a changing statement; returns how many records it changed.
    virtual int Change(const QString& sql, const QVariantList& values = {}) = 0;
    // The same, where the number does not matter and `explain` completes the error: it may be raised by a
    // later call only, see Workspace::BeginTrans.
    using Explain = std::function<void(Error&)>;
    virtual void ChangeLater(const QString& sql, const QVariantList& values, const Explain& explain);
    // A change and, when it changed any record, what is then to be read: its first row.
    struct Changed {
        int records;
        std::optional<QVariantList> row;
    };
    virtual Changed ChangeAndRead(const Request& change, const Request& read);
    // The first row; nothing when there is none.
    virtual std::optional<QVariantList> FirstRow(const QString& sql, const QVariantList& values = {}) = 0;
    virtual std::vector<QVariantList> AllRows(const QString& sql, const QVariantList& values = {}) = 0;
    // These selects will be asked for next. A server is asked for all of them at once, and each answer is
    // kept for the first who asks for just this, unless anything is changed before.
    virtual void ReadAhead(const QList<Request>&) {}
    // A forward-only recordset. `keep`: the SQL is one of a few and comes again, so it is kept prepared.
    // Kind::WrongUse for SQL that is no select.
    virtual std::unique_ptr<Recordset> OpenSnapshot(const QString& sql, const QVariantList& values,
                                                    bool keep) = 0;
    // Kind::NoSuchTable.
    virtual std::shared_ptr<const TableShape> ReadTable(const QString& name) = 0;

    // The transaction that Workspace describes. Kind::InTransaction, Kind::NoTransaction, Kind::Locked.
    virtual void Begin() = 0;
    virtual void BeginTogether() { Begin(); }
    virtual void Commit() = 0;
    virtual void Rollback() = 0;
    // An open transaction is not stored. Nothing can be done with the session any more.
    virtual void Close() noexcept = 0;
};

} // namespace dao
