#include "dao/Workspace.h"
#include "dao/base/UserName.h"
#include "dao/postgresql/ServerSetup.h"
#include "dao/postgresql/Session.h"
#include "dao/records/Engine.h"
#include "dao/sqlite/Session.h"

namespace dao {

using postgresql::ServerAddress;

Workspace::Workspace(EngineSession session)
    : m_session(std::move(session)),
      m_database(m_session.engine),
      m_users(m_session.accounts),
      m_groups(m_session.accounts)
{
}

std::unique_ptr<User> Workspace::CreateUser(const QString& name, const QString& pid, const QString& password)
{
    AccountStore& accounts = *m_session.accounts;
    accounts.RequireAdministrator();
    RequireUserName(name);
    if (password.isEmpty())
        throw Error(Kind::BadPassword);
    return std::make_unique<User>(m_session.accounts, AccountStore::Account{name, pid},
                                  accounts.Secret(name, password));
}

void Workspace::BeginTrans()
{
    m_session.engine->Begin();
}

void Workspace::BeginTogether()
{
    m_session.engine->BeginTogether();
}

void Workspace::CommitTrans()
{
    m_session.engine->Commit();
}

void Workspace::Rollback()
{
    m_session.engine->Rollback();
}

void Workspace::Watch(const WorkspaceWatcher& watcher)
{
    if (m_session.watch)
        m_session.watch(watcher);
}

QStringList Workspace::ChangedElsewhere()
{
    return m_session.changedElsewhere ? m_session.changedElsewhere() : QStringList();
}

std::function<std::unique_ptr<Workspace>()> Workspace::Again() const
{
    return [again = m_session.again] { return std::make_unique<Workspace>(again()); };
}

QString Workspace::ServerIdentity() const
{
    return IsOnServer() ? m_session.serverIdentity() : QString();
}

int Workspace::Waits() const
{
    return m_session.engine->Waits();
}

void Workspace::Close() noexcept
{
    m_session.engine->Close();
}

std::unique_ptr<Workspace> OpenWorkspace(const Location& location, const QString& user,
                                         const QString& password, const OpenOptions& options)
{
    if (IsServerTarget(location.database))
        return std::make_unique<Workspace>(
            postgresql::OpenSession(ServerAddress::Parse(location.database), user, password, options));
    return std::make_unique<Workspace>(sqlite::OpenSession(location, user, password, options));
}

void CreateDatabase(const Location& location, const QString& adminUser, const QString& adminPassword,
                    const PasswordCost& cost, const QString& group)
{
    if (!IsServerTarget(location.database)) {
        sqlite::CreateFiles(location, adminUser, adminPassword, cost, group);
        return;
    }
    const ServerAddress address = ServerAddress::Parse(location.database);
    if (!group.isEmpty())
        throw Error(Kind::FilesOnly, {address.Shown()});
    postgresql::CreateServerDatabase(address, adminUser, adminPassword);
}

} // namespace dao
