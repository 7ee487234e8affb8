#include "dao/postgresql/Session.h"
#include "dao/base/SchemaScripts.h"
#include "dao/postgresql/Accounts.h"
#include "dao/postgresql/ServerSetup.h"
#include "dao/postgresql/TableReader.h"
#include "dao/records/QueryDef.h"

namespace dao::postgresql {

namespace {

// A restart changes none of these; a promotion begins a new timeline, which the last checkpoint does not know
// at once but the name of the log file in use does, and a restored dump makes another database.
constexpr auto IdentityQuery =
    "SELECT s.system_identifier || '/' || left(pg_walfile_name(pg_current_wal_lsn()), 8)"
    " || '/' || d.oid, (SELECT value FROM file_info WHERE name = 'database_id')"
    " FROM pg_control_system() s, pg_database d WHERE d.datname = current_database()";

class Identity {
public:
    explicit Identity(std::shared_ptr<Connection> connection) : m_connection(std::move(connection)) {}

    QString operator()()
    {
        ServerLink& link = m_connection->Link();
        link.Handle();
        while (m_generation != link.Generation()) {
            const int asked = link.Generation();
            const auto row = Ask();
            if (asked != link.Generation())
                continue; // it is not known who has answered
            if (row) {
                const QString database = row->at(1).toString();
                if (!m_database.isEmpty() && database != m_database)
                    throw Error(Kind::Replaced, {link.Server()});
                m_database = database;
            }
            m_identity = row ? row->at(0).toString() : QString();
            m_generation = asked;
        }
        return m_identity;
    }

private:
    // Nothing where the server has been told to tell nobody: that must not keep records from being stored.
    std::optional<QVariantList> Ask() const
    {
        try {
            return m_connection->FirstRow(IdentityQuery);
        } catch (const Error& error) {
            if (error.kind == Kind::ServerAway)
                throw;
            return {};
        }
    }

    std::shared_ptr<Connection> m_connection;
    int m_generation = 0; // of the connection that was asked
    QString m_identity;
    QString m_database;
};

// What the opening asks, and what everybody asks then.
QList<Request> FirstRequests()
{
    return QList<Request>{{"SELECT kyn_user()", {}},
                          {"SELECT value FROM file_info WHERE name=?", {"database_id"}},
                          {StoredQuery::AllSql, {}}} +
           SchemaRequests() + Accounts::FirstRequests() + TableRequests();
}

// `watched`: its watcher will want to hear of every change from the first reading on.
EngineSession OpenAs(const Logon& logon, const Connection::Now& now, bool watched)
{
    const auto connection = Connection::Open(logon, now);
    connection->ReadAhead(FirstRequests(), watched);
    const int version = SchemaVersionOf(*connection);
    const int known = SchemaScripts("postgresql/").last().version;
    if (version != known)
        throw Error(version > known ? Kind::Newer : Kind::Older,
                    {logon.address.Shown(), QString::number(version), QString::number(known)});
    const QString name = connection->Value("SELECT kyn_user()").toString();
    return {connection,
            std::make_shared<Accounts>(connection, name),
            [connection](const WorkspaceWatcher& watcher) {
                connection->Link().Listen(watcher.changed, watcher.away);
            },
            {},
            [logon, now] { return OpenAs(logon, now, false); },
            Identity(connection)};
}

} // namespace

EngineSession OpenSession(const ServerAddress& address, const QString& user, const QString& password,
                          const OpenOptions& options)
{
    return OpenAs({address, address.Database().toUtf8(), RoleName(address.Database(), user),
                   PasswordBytes(password), options.busyTimeout},
                  options.now, true);
}

} // namespace dao::postgresql
