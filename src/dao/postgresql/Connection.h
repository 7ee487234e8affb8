#pragma once

#include "dao/base/Error.h"
#include "dao/postgresql/AnswersAhead.h"
#include "dao/postgresql/Batch.h"
#include "dao/postgresql/Result.h"
#include "dao/postgresql/ServerLink.h"
#include "dao/postgresql/TableReader.h"
#include "dao/records/Engine.h"
#include <QDateTime>
#include <QHash>
#include <exception>
#include <functional>

namespace dao::postgresql {

// A session on a server. Shared by the workspace and all that it handed out; Close ends it for all of them.
// It outlives the server's restarts: what only reads and is in no transaction is tried once more on a new
// connection, everything else raises Kind::ServerAway. Each call waits for the server once at most, and again
// when something failed.
class Connection : public Engine, public std::enable_shared_from_this<Connection> {
public:
    using Now = std::function<QDateTime()>;

    // `now` feeds kyn_now() of the stored queries; empty: the system's clock. Errors as Connect.
    static std::shared_ptr<Connection> Open(const Logon& logon, Now now = {});

    bool IsOpen() const override { return m_link != nullptr; }
    int Waits() const override { return Link().Wait().Count(); }
    StatementShape Describe(const QString& sql) override;
    QStringList Parameters(const QString& sql) override;
    bool IsSelect(const QString& sql) override;
    int Change(const QString& sql, const QVariantList& values = {}) override;
    void ChangeLater(const QString& sql, const QVariantList& values, const Explain& explain) override;
    Changed ChangeAndRead(const Request& change, const Request& read) override;
    std::optional<QVariantList> FirstRow(const QString& sql, const QVariantList& values = {}) override;
    std::vector<QVariantList> AllRows(const QString& sql, const QVariantList& values = {}) override;
    void ReadAhead(const QList<Request>& requests) override { ReadAhead(requests, false); }
    // `listening`: and the server is asked to tell from now on what others change, so that nothing that is
    // read here misses a change.
    void ReadAhead(const QList<Request>& requests, bool listening);
    std::unique_ptr<Recordset> OpenSnapshot(const QString& sql, const QVariantList& values,
                                            bool keep) override;
    std::shared_ptr<const TableShape> ReadTable(const QString& name) override;

    // First column of the first row; invalid when there is none.
    QVariant Value(const QString& sql, const QVariantList& values = {});
    // Runs a script of many statements.
    void Execute(const QString& script);
    // An open rollback is left to the server. Nothing can be done with the session any more.
    void Close() noexcept override { m_link.reset(); }

    // A transaction excludes all other changes but log records, see the schema's kyn_share_changes.
    // Kind::InTransaction, Kind::NoTransaction, Kind::Locked.
    void Begin() override;
    // Waits for nothing. What is changed later is gathered until somebody asks for an answer; the first
    // failure, that of the beginning included, is raised by that call and by all others until Rollback.
    void BeginTogether() override;
    bool IsTogether() const { return m_isTogether; }
    void Commit() override;
    void Rollback() override;

    ServerLink& Link() const; // Kind::Closed

private:
    using StatementPtr = std::shared_ptr<Statement>;
    // A change that is still to be sent.
    struct Later {
        StatementPtr statement;
        std::vector<QByteArray> texts;
        Explain explain;
    };

    explicit Connection(Now now) : m_now(std::move(now)) {}
    PGconn* Live();
    StatementPtr Known(const QString& sql);
    std::vector<QByteArray> Texts(const SqlText& text, const QVariantList& values) const;
    Result Read(const QString& sql, const QVariantList& values, bool keep = true);
    std::vector<Result> Ask(const QList<Request>& requests, bool changes, bool keep = true);
    std::vector<Result> AskOnce(const QList<Request>& requests, bool keep, bool last, bool& sent);
    Batch Begun();
    void Send(Batch& batch);
    void SendCommit(const QList<Later>& later);
    [[noreturn]] void RaiseFailure(Batch& batch, std::size_t failed, const QList<Later>& later);
    [[noreturn]] void Raise(const Result& result);
    [[noreturn]] void RaiseLost(const QString& text);
    void EndTogether();
    std::optional<Result> TakeAhead(const QString& sql, const QVariantList& values);
    Result SendScript(const char* script) const;
    void RestoreTransaction();

    Now m_now;
    std::unique_ptr<ServerLink> m_link;
    QHash<QString, StatementPtr> m_statements;
    int m_names = 0;
    AnswersAhead m_ahead;
    TableShapes m_tables;
    bool m_inTransaction = false;
    int m_transactionGeneration = 0; // of the connection that it was begun on
    bool m_hasSavepoint = false;
    // Of a transaction that is sent together.
    bool m_isTogether = false;
    bool m_isBegun = false; // the server knows of it
    QList<Later> m_later;
    std::exception_ptr m_failure;
};

} // namespace dao::postgresql
