#include "dao/sqlite/Connection.h"
#include "dao/sqlite/SnapshotRecordset.h"
#include "dao/sqlite/TableReader.h"
#include <sqlite3.h>

namespace dao::sqlite {

std::shared_ptr<Connection> Connection::Open(const QString& path, Mode mode,
                                             std::chrono::milliseconds busyTimeout, Now now)
{
    std::shared_ptr<Connection> connection(new Connection(path, std::move(now)));
    const int access = mode == Mode::ReadOnly
                           ? SQLITE_OPEN_READONLY
                           : SQLITE_OPEN_READWRITE | (mode == Mode::Create ? SQLITE_OPEN_CREATE : 0);
    // One thread uses a workspace, so the engine need not take a mutex for every value read.
    connection->m_file->Open(path, access | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE);
    connection->m_file->SetLockTimeout(busyTimeout);
    RegisterFunctions(*connection->m_file, connection->m_facts);
    // The rollback journal: it alone keeps a commit over two files atomic and works on a network share.
    // A power cut does not bring a journal back that a commit has removed, and take the commit back with it.
    connection->Execute("PRAGMA foreign_keys=ON; PRAGMA synchronous=EXTRA;");
    return connection;
}

Connection::Connection(const QString& path, Now now)
    : m_file(std::make_shared<Handle>(path)),
      m_facts{std::move(now), {}}
{
}

Connection::~Connection()
{
    Close();
}

void Connection::Attach(const QString& path, const QString& schema)
{
    NameInErrors(path);
    const auto attach = Prepare("ATTACH ? AS " + schema);
    attach->Bind(0, path);
    attach->Step();
    Execute("PRAGMA " + schema + ".synchronous=EXTRA;");
    Value("SELECT count(*) FROM " + schema + ".sqlite_schema");
}

void Connection::Close() noexcept
{
    m_file->Close();
    m_inTransaction = false;
}

StatementUse Connection::Kept(const QString& sql)
{
    auto& kept = m_kept[sql];
    for (const auto& slot : kept)
        if (!slot->busy)
            return {m_file, slot};
    const auto slot = std::make_shared<StatementSlot>(*m_file, sql, true);
    kept.push_back(slot);
    return {m_file, slot};
}

StatementUse Connection::Prepare(const QString& sql)
{
    return {m_file, std::make_shared<StatementSlot>(*m_file, sql, false)};
}

int Connection::Change(const QString& sql, const QVariantList& values)
{
    CheckTransaction();
    if (m_inTransaction || !m_commits.before)
        return Run(sql, values);
    // The same as without a transaction, but that the commit is seen.
    Execute("BEGIN");
    try {
        const int changed = Run(sql, values);
        CommitWatched();
        return changed;
    } catch (const Error&) {
        if (sqlite3_get_autocommit(File()) == 0)
            Execute("ROLLBACK");
        m_commits.after(*this);
        throw;
    }
}

int Connection::Run(const QString& sql, const QVariantList& values)
{
    const auto statement = Kept(sql);
    statement->Bind(values);
    while (statement->Step()) {
    }
    return sqlite3_changes(File());
}

void Connection::CommitWatched()
{
    if (!m_commits.before)
        return Execute("COMMIT");
    m_commits.before(*this);
    Execute("COMMIT");
    m_commits.after(*this);
}

StatementShape Connection::Describe(const QString& sql)
{
    const auto statement = Kept(sql);
    return {statement->IsSelect(), statement->ColumnNames(), statement->ParameterNames()};
}

std::optional<QVariantList> Connection::FirstRow(const QString& sql, const QVariantList& values)
{
    const auto statement = Kept(sql);
    statement->Bind(values);
    return statement->Step() ? std::optional(statement->Row()) : std::nullopt;
}

std::vector<QVariantList> Connection::AllRows(const QString& sql, const QVariantList& values)
{
    const auto statement = Kept(sql);
    statement->Bind(values);
    std::vector<QVariantList> rows;
    while (statement->Step())
        rows.push_back(statement->Row());
    return rows;
}

std::unique_ptr<Recordset> Connection::OpenSnapshot(const QString& sql, const QVariantList& values, bool keep)
{
    auto statement = keep ? Kept(sql) : Prepare(sql);
    if (!statement->IsSelect())
        throw Error(Kind::WrongUse, {sql});
    statement->Bind(values);
    return std::make_unique<SnapshotRecordset>(std::move(statement));
}

std::shared_ptr<const TableShape> Connection::ReadTable(const QString& name)
{
    return ReadTableShape(*this, *m_file, name);
}

QVariant Connection::Value(const QString& sql, const QVariantList& values)
{
    const auto statement = Kept(sql);
    statement->Bind(values);
    return statement->Step() ? statement->Column(0) : QVariant();
}

void Connection::Execute(const QString& script)
{
    Execute(script, {});
}

void Connection::Execute(const QString& script, const std::function<void()>& alive)
{
    constexpr int stepsBetween = 100000; // of the engine's machine, some milliseconds
    const auto call = [](void* function) {
        (*static_cast<const std::function<void()>*>(function))();
        return 0;
    };
    if (alive)
        sqlite3_progress_handler(File(), stepsBetween, call, const_cast<std::function<void()>*>(&alive));
    const int result = sqlite3_exec(File(), script.toUtf8().constData(), nullptr, nullptr, nullptr);
    sqlite3_progress_handler(File(), 0, nullptr, nullptr);
    if (result != SQLITE_OK)
        throw MakeError(result);
}

void Connection::Begin()
{
    if (m_inTransaction)
        throw Error(Kind::InTransaction);
    Execute("BEGIN IMMEDIATE");
    m_inTransaction = true;
}

void Connection::Commit()
{
    File();
    if (!m_inTransaction)
        throw Error(Kind::NoTransaction);
    CheckTransaction();
    CommitWatched();
    m_inTransaction = false;
}

void Connection::Rollback()
{
    if (!m_inTransaction)
        throw Error(Kind::NoTransaction);
    m_inTransaction = false;
    if (sqlite3_get_autocommit(File()) == 0)
        Execute("ROLLBACK");
    if (m_commits.after)
        m_commits.after(*this);
}

void Connection::CheckTransaction() const
{
    if (m_inTransaction && sqlite3_get_autocommit(File()) != 0)
        throw Error(Kind::Engine, {"transaction was rolled back"},
                    "the engine has rolled the transaction back");
}

ChangeScope::ChangeScope(Connection& connection)
    : m_connection(connection),
      m_nested(connection.InTransaction())
{
    connection.CheckTransaction();
    if (m_nested)
        connection.Execute("SAVEPOINT change");
    else
        connection.Begin();
}

ChangeScope::~ChangeScope()
{
    if (m_done)
        return;
    try {
        if (m_nested)
            m_connection.Execute("ROLLBACK TO change; RELEASE change");
        else
            m_connection.Rollback();
    } catch (const Error&) {
        // The engine has undone more than this scope already, or the workspace was closed.
    }
}

void ChangeScope::Commit()
{
    if (m_nested)
        m_connection.Execute("RELEASE change");
    else
        m_connection.Commit();
    m_done = true;
}

} // namespace dao::sqlite
