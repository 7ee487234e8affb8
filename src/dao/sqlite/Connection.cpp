#include "dao/sqlite/Connection.h"
#include "dao/sqlite/ErrorMapping.h"
#include "dao/sqlite/Functions.h"
#include "dao/sqlite/SnapshotRecordset.h"
#include "dao/sqlite/TableReader.h"
#include <QFile>
#include <sqlite3.h>

namespace dao::sqlite {

StatementUse::StatementUse(std::shared_ptr<Connection> connection, std::shared_ptr<StatementSlot> slot)
    : m_connection(std::move(connection)),
      m_slot(std::move(slot))
{
    m_slot->busy = true;
}

StatementUse::~StatementUse()
{
    if (!m_slot)
        return;
    m_slot->statement.Clear();
    m_slot->busy = false;
}

std::shared_ptr<Connection> Connection::Open(const QString& path, Mode mode,
                                             std::chrono::milliseconds busyTimeout, Now now)
{
    std::shared_ptr<Connection> connection(new Connection(path, std::move(now)));
    const int access = mode == Mode::ReadOnly
                           ? SQLITE_OPEN_READONLY
                           : SQLITE_OPEN_READWRITE | (mode == Mode::Create ? SQLITE_OPEN_CREATE : 0);
    // One thread uses a workspace, so the engine need not take a mutex for every value read.
    const int result = sqlite3_open_v2(path.toUtf8().constData(), &connection->m_handle,
                                       access | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    if (result != SQLITE_OK)
        throw connection->MakeError(result);
    sqlite3_busy_timeout(connection->m_handle, static_cast<int>(busyTimeout.count()));
    RegisterFunctions(connection->m_handle, *connection);
    // The rollback journal: it alone keeps a commit over two files atomic and works on a network share.
    connection->Execute("PRAGMA foreign_keys=ON; PRAGMA synchronous=FULL;");
    return connection;
}

Connection::Connection(const QString& path, Now now) : m_errorPath(path), m_now(std::move(now)) {}

Connection::~Connection()
{
    Close();
}

void Connection::Attach(const QString& path, const QString& schema)
{
    m_errorPath = path;
    const auto attach = Prepare("ATTACH ? AS " + schema);
    attach->Bind(0, path);
    attach->Step();
    Execute("PRAGMA " + schema + ".synchronous=FULL;");
    Value("SELECT count(*) FROM " + schema + ".sqlite_schema");
}

void Connection::Close() noexcept
{
    if (!m_handle)
        return;
    while (sqlite3_stmt* statement = sqlite3_next_stmt(m_handle, nullptr))
        sqlite3_finalize(statement);
    sqlite3_close_v2(m_handle);
    m_handle = nullptr;
    m_inTransaction = false;
}

sqlite3* Connection::Handle() const
{
    if (!m_handle)
        throw Error(Kind::Closed);
    return m_handle;
}

StatementUse Connection::Kept(const QString& sql)
{
    auto& kept = m_kept[sql];
    for (const auto& slot : kept)
        if (!slot->busy)
            return {shared_from_this(), slot};
    const auto slot = std::make_shared<StatementSlot>(*this, sql, true);
    kept.push_back(slot);
    return {shared_from_this(), slot};
}

StatementUse Connection::Prepare(const QString& sql)
{
    return {shared_from_this(), std::make_shared<StatementSlot>(*this, sql, false)};
}

int Connection::Change(const QString& sql, const QVariantList& values)
{
    CheckTransaction();
    const auto statement = Kept(sql);
    statement->Bind(values);
    while (statement->Step()) {
    }
    return sqlite3_changes(Handle());
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
    return ReadTableShape(*this, name);
}

QVariant Connection::Value(const QString& sql, const QVariantList& values)
{
    const auto statement = Kept(sql);
    statement->Bind(values);
    return statement->Step() ? statement->Column(0) : QVariant();
}

void Connection::Execute(const QString& script)
{
    const int result = sqlite3_exec(Handle(), script.toUtf8().constData(), nullptr, nullptr, nullptr);
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
    Handle();
    if (!m_inTransaction)
        throw Error(Kind::NoTransaction);
    CheckTransaction();
    Execute("COMMIT");
    m_inTransaction = false;
}

void Connection::Rollback()
{
    if (!m_inTransaction)
        throw Error(Kind::NoTransaction);
    m_inTransaction = false;
    if (sqlite3_get_autocommit(Handle()) == 0)
        Execute("ROLLBACK");
}

void Connection::CheckTransaction() const
{
    if (m_inTransaction && sqlite3_get_autocommit(Handle()) != 0)
        throw Error(Kind::Engine, {"transaction was rolled back"},
                    "the engine has rolled the transaction back");
}

Error Connection::MakeError(int code) const
{
    return sqlite::MakeError(m_handle, code, m_errorPath);
}

QDateTime Connection::CurrentTime() const
{
    return m_now ? m_now() : QDateTime::currentDateTimeUtc();
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
