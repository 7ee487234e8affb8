#include "dao/postgresql/Session.h"
#include "dao/base/SchemaScripts.h"
#include "dao/postgresql/Accounts.h"
#include "dao/postgresql/ServerSetup.h"

namespace dao::postgresql {

namespace {

EngineSession OpenAs(const Logon& logon, const Connection::Now& now)
{
    const auto connection = Connection::Open(logon, now);
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
            [logon, now] { return OpenAs(logon, now); }};
}

} // namespace

EngineSession OpenSession(const ServerAddress& address, const QString& user, const QString& password,
                          const OpenOptions& options)
{
    return OpenAs({address, address.Database().toUtf8(), RoleName(address.Database(), user),
                   PasswordBytes(password), options.busyTimeout},
                  options.now);
}

} // namespace dao::postgresql
