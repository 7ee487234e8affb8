#pragma once

#include "dao/Workspace.h"
#include "dao/postgresql/Accounts.h"

namespace dao::postgresql {

class ServerWorkspace : public Workspace {
public:
    // Logs on as the account's role. Kind::NotADatabase, Kind::Newer, Kind::Older.
    static std::unique_ptr<Workspace> Open(const ServerAddress& address, const QString& user,
                                           const QString& password, const OpenOptions& options);
    ~ServerWorkspace() override { Close(); }

    QString UserName() const override { return m_session->userName; }
    dao::Database& Database() override { return m_database; }
    UserList& Users() override { return m_users; }
    GroupList& Groups() override { return m_groups; }
    std::unique_ptr<User> CreateUser(const QString& name, const QString& pid,
                                     const QString& password) override;
    void BeginTrans() override { m_session->connection->Begin(); }
    void CommitTrans() override { m_session->connection->Commit(); }
    void Rollback() override { m_session->connection->Rollback(); }
    void Watch(const WorkspaceWatcher& watcher) override;
    void Close() noexcept override { m_session->connection->Close(); }

private:
    explicit ServerWorkspace(std::shared_ptr<Session> session);

    std::shared_ptr<Session> m_session;
    dao::Database m_database;
    ServerUserList m_users;
    DatabaseGroups m_groups;
};

} // namespace dao::postgresql
