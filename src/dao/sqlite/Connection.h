#pragma once

#include "dao/Engine.h"
#include "dao/Error.h"
#include "dao/sqlite/Statement.h"
#include <QDateTime>
#include <QHash>
#include <QString>
#include <QVariantList>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

struct sqlite3;

namespace dao::sqlite {

class Connection;

struct StatementSlot {
    StatementSlot(Connection& connection, const QString& sql, bool kept) : statement(connection, sql, kept) {}

    Statement statement;
    bool busy = true;
};

// The use of a statement until the end of the scope; a kept one then goes back to its connection, reset and
// cleared.
class StatementUse {
public:
    StatementUse(std::shared_ptr<Connection> connection, std::shared_ptr<StatementSlot> slot);
    StatementUse(StatementUse&& other) noexcept = default;
    StatementUse& operator=(StatementUse&& other) = delete;
    ~StatementUse();

    Statement* operator->() const { return &m_slot->statement; }

private:
    std::shared_ptr<Connection> m_connection; // outlives the statement
    std::shared_ptr<StatementSlot> m_slot;
};

// An open SQLite file, to which a second one can be attached. Shared by the workspace and all that it handed
// out; Close ends it for all of them.
class Connection : public Engine, public std::enable_shared_from_this<Connection> {
public:
    enum class Mode { ReadOnly, ReadWrite, Create };
    using Now = std::function<QDateTime()>;

    // `now` feeds the SQL function kyn_now(); empty: the system's clock. Raises a Kind with the path.
    static std::shared_ptr<Connection> Open(const QString& path, Mode mode,
                                            std::chrono::milliseconds busyTimeout, Now now = {});
    ~Connection() override;

    // Adds a file under a schema name. From then on errors name it, until NameInErrors says otherwise.
    void Attach(const QString& path, const QString& schema);
    void NameInErrors(const QString& path) { m_errorPath = path; }

    // Closes the files whatever statements are still in use; an open transaction is rolled back.
    void Close() noexcept;
    bool IsOpen() const override { return m_handle != nullptr; }
    sqlite3* Handle() const; // Kind::Closed

    // A statement prepared once and kept, for SQL of which there are few; another one when it is already in
    // use.
    StatementUse Kept(const QString& sql);
    // A statement for this time only.
    StatementUse Prepare(const QString& sql);
    StatementShape Describe(const QString& sql) override;
    int Change(const QString& sql, const QVariantList& values = {}) override;
    std::optional<QVariantList> FirstRow(const QString& sql, const QVariantList& values = {}) override;
    std::vector<QVariantList> AllRows(const QString& sql, const QVariantList& values = {}) override;
    std::unique_ptr<Recordset> OpenSnapshot(const QString& sql, const QVariantList& values,
                                            bool keep) override;
    std::shared_ptr<const TableShape> ReadTable(const QString& name) override;
    // First column of the first row; invalid when there is none.
    QVariant Value(const QString& sql, const QVariantList& values = {});
    // Runs a script of many statements.
    void Execute(const QString& script);

    // Takes the write locks of all attached files at once. Kind::InTransaction, Kind::NoTransaction,
    // Kind::Locked.
    void Begin();
    void Commit();
    void Rollback();
    bool InTransaction() const { return m_inTransaction; }
    // Within a transaction: raises when the engine has rolled it back by itself (disk full, for example),
    // since what follows would be stored although what went before is lost.
    void CheckTransaction() const;

    Error MakeError(int code) const;
    QDateTime CurrentTime() const;

    // The account whose session this is; feeds the SQL function kyn_user().
    const QString& User() const { return m_user; }
    void SetUser(const QString& user) { m_user = user; }

private:
    Connection(const QString& path, Now now);

    sqlite3* m_handle = nullptr;
    QString m_errorPath;
    Now m_now;
    QString m_user;
    bool m_inTransaction = false;
    QHash<QString, std::vector<std::shared_ptr<StatementSlot>>> m_kept;
};

// Makes several changes one: a transaction of its own, or a savepoint within the open one. Undone unless
// Commit was reached.
class ChangeScope {
public:
    explicit ChangeScope(Connection& connection);
    ChangeScope(const ChangeScope&) = delete;
    ChangeScope& operator=(const ChangeScope&) = delete;
    ~ChangeScope();
    void Commit();

private:
    Connection& m_connection;
    bool m_nested;
    bool m_done = false;
};

} // namespace dao::sqlite
