#pragma once

#include "dao/records/Engine.h"
#include "dao/sqlite/Functions.h"
#include "dao/sqlite/Handle.h"
#include "dao/sqlite/Statement.h"
#include <QHash>
#include <QString>
#include <QVariantList>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace dao::sqlite {

// An open SQLite file, to which a second one can be attached. Shared by the workspace and all that it handed
// out; Close ends it for all of them.
class Connection : public Engine {
public:
    enum class Mode { ReadOnly, ReadWrite, Create };
    using Now = SessionFacts::Now;

    // `now` feeds the SQL function kyn_now(); empty: the system's clock. Raises a Kind with the path.
    static std::shared_ptr<Connection> Open(const QString& path, Mode mode,
                                            std::chrono::milliseconds busyTimeout, Now now = {});
    ~Connection() override;

    // Adds a file under a schema name. From then on errors name it, until NameInErrors says otherwise.
    void Attach(const QString& path, const QString& schema);
    void NameInErrors(const QString& path) { m_file->NameInErrors(path); }

    // Closes the files whatever statements are still in use; an open transaction is rolled back.
    void Close() noexcept override;
    bool IsOpen() const override { return m_file->IsOpen(); }
    bool IsInPlace() const override { return m_file->IsInPlace(); }
    // False: locks are not waited for until it is said again.
    void WaitForLocks(bool wait) { m_file->WaitForLocks(wait); }
    sqlite3* File() const { return m_file->Get(); } // Kind::Closed

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
    // The same; `alive` is called many times a second meanwhile and must not raise.
    void Execute(const QString& script, const std::function<void()>& alive);

    // Takes the write locks of all attached files at once. Kind::InTransaction, Kind::NoTransaction,
    // Kind::Locked.
    void Begin() override;
    void Commit() override;
    void Rollback() override;
    bool InTransaction() const { return m_inTransaction; }
    // Within a transaction: raises when the engine has rolled it back by itself (disk full, for example),
    // since what follows would be stored although what went before is lost.
    void CheckTransaction() const;

    Error MakeError(int code) const { return m_file->MakeError(code); }

    // Called before each commit, and when it or the rollback that its failure leads to is over; must not
    // raise.
    struct CommitWatch {
        std::function<void(Connection&)> before;
        std::function<void(Connection&)> after;
    };
    void WatchCommits(const CommitWatch& watch) { m_commits = watch; }

    // The account whose session this is; feeds the SQL function kyn_user().
    void SetUser(const QString& user) { m_facts.user = user; }

private:
    Connection(const QString& path, Now now);

    int Run(const QString& sql, const QVariantList& values);
    void CommitWatched();

    std::shared_ptr<Handle> m_file;
    SessionFacts m_facts;
    bool m_inTransaction = false;
    CommitWatch m_commits;
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
