#pragma once

#include "dao/base/Error.h"
#include "dao/postgresql/Result.h"
#include "dao/postgresql/ServerLink.h"
#include "dao/postgresql/SqlText.h"
#include "dao/records/Engine.h"
#include <QDateTime>
#include <QHash>
#include <functional>

namespace dao::postgresql {

// A session on a server. Shared by the workspace and all that it handed out; Close ends it for all of them.
// It outlives the server's restarts: what only reads and is in no transaction is tried once more on a new
// connection, everything else raises Kind::ServerAway.
class Connection : public Engine, public std::enable_shared_from_this<Connection> {
public:
    using Now = std::function<QDateTime()>;

    // `now` feeds kyn_now() of the stored queries; empty: the system's clock. Errors as Connect.
    static std::shared_ptr<Connection> Open(const Logon& logon, Now now = {});

    bool IsOpen() const override { return m_link != nullptr; }
    int Waits() const override { return Link().Wait().Count(); }
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
    // An open rollback is left to the server. Nothing can be done with the session any more.
    void Close() noexcept override { m_link.reset(); }

    // A transaction excludes all other changes but log records, see the schema's kyn_share_changes.
    // Kind::InTransaction, Kind::NoTransaction, Kind::Locked.
    void Begin() override;
    void Commit() override;
    void Rollback() override;

    ServerLink& Link() const; // Kind::Closed

private:
    struct Prepared {
        SqlText text;
        QByteArray name; // on the server
        int generation = 0;
        std::vector<Oid> types;
        QStringList columns;
    };

    explicit Connection(Now now) : m_now(std::move(now)) {}
    PGconn* Live() const;
    Prepared& PreparedFor(const QString& sql);
    Result Run(const QString& sql, const QVariantList& values, bool changes);
    std::vector<QByteArray> Texts(const Prepared& prepared, const QVariantList& values) const;
    Result Send(const Prepared& prepared, const std::vector<QByteArray>& texts);
    Result SendScript(const char* script) const;
    [[noreturn]] void Raise(const Result& result);
    void ProtectTransaction();
    void RestoreTransaction();

    Now m_now;
    std::unique_ptr<ServerLink> m_link;
    QHash<QString, std::shared_ptr<Prepared>> m_prepared;
    int m_names = 0;
    bool m_inTransaction = false;
    int m_transactionGeneration = 0; // of the connection that it was begun on
    bool m_hasSavepoint = false;
};

} // namespace dao::postgresql
