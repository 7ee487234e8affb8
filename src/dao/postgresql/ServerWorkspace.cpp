#include "dao/postgresql/ServerWorkspace.h"
#include "dao/SchemaScripts.h"
#include "dao/UserName.h"
#include "dao/postgresql/ServerSetup.h"

namespace dao::postgresql {

std::unique_ptr<Workspace> ServerWorkspace::Open(const ServerAddress& address, const QString& user,
                                                 const QString& password, const OpenOptions& options)
{
    const Logon logon{address, address.Database().toUtf8(), RoleName(address.Database(), user),
                      PasswordBytes(password), options.busyTimeout};
    const auto connection = Connection::Open(logon, options.now);
    const int version = SchemaVersionOf(*connection);
    const int known = SchemaScripts("postgresql/").last().version;
    if (version != known)
        throw Error(version > known ? Kind::Newer : Kind::Older,
                    {address.Shown(), QString::number(version), QString::number(known)});
    const QString name = connection->Value("SELECT kyn_user()").toString();
    return std::unique_ptr<Workspace>(
        new ServerWorkspace(std::make_shared<Session>(Session{connection, name})));
}

ServerWorkspace::ServerWorkspace(std::shared_ptr<Session> session)
    : m_session(std::move(session)),
      m_database(m_session->connection),
      m_users(m_session),
      m_groups(m_session)
{
}

std::unique_ptr<User> ServerWorkspace::CreateUser(const QString& name, const QString& pid,
                                                  const QString& password)
{
    m_session->RequireAdministrator();
    RequireUserName(name);
    if (password.isEmpty() || password == QLatin1String(EmptyPassword))
        throw Error(Kind::BadPassword);
    ServerLink& link = m_session->connection->Link();
    const QByteArray role = RoleName(link.LogonData().address.Database(), name);
    return std::make_unique<ServerUser>(m_session, name, pid, PasswordVerifier(link, role, password));
}

void ServerWorkspace::Watch(const WorkspaceWatcher& watcher)
{
    m_session->connection->Link().Listen(watcher.changed, watcher.away);
}

} // namespace dao::postgresql
