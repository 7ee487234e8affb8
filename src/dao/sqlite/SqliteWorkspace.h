#pragma once

#include "dao/Workspace.h"
#include "dao/sqlite/Accounts.h"
#include "dao/sqlite/ChangeCounter.h"
#include "dao/sqlite/Files.h"

namespace dao::sqlite {

class SqliteWorkspace : public Workspace {
public:
    // Migrates, opens and attaches the files and checks the password.
    static std::unique_ptr<Workspace> Open(const Location& location, const QString& user,
                                           const QString& password, const OpenOptions& options);
    ~SqliteWorkspace() override { Close(); }

    QString UserName() const override { return m_session->userName; }
    dao::Database& Database() override { return m_database; }
    UserList& Users() override { return m_users; }
    GroupList& Groups() override { return m_groups; }
    std::unique_ptr<User> CreateUser(const QString& name, const QString& pid,
                                     const QString& password) override;
    void BeginTrans() override { m_session->connection->Begin(); }
    void CommitTrans() override { m_session->connection->Commit(); }
    void Rollback() override { m_session->connection->Rollback(); }
    QStringList ChangedElsewhere() override { return m_changes.ChangedElsewhere(); }
    void Close() noexcept override { m_session->connection->Close(); }

private:
    explicit SqliteWorkspace(std::shared_ptr<Session> session);

    std::shared_ptr<Session> m_session;
    dao::Database m_database;
    SqliteUserList m_users;
    WorkgroupGroups m_groups;
    ChangeCounter m_changes;
};

struct AttachedFiles {
    std::shared_ptr<Connection> connection;
    FileInfo database;
    FileInfo workgroup;
};

// Opens both files, the workgroup file attached, after checking that they are not newer than this program and
// belong together.
AttachedFiles AttachFiles(const Location& location, const OpenOptions& options);

// The same; files of an older schema are migrated first.
std::shared_ptr<Connection> OpenFiles(const Location& location, const OpenOptions& options);

// dao::CreateDatabase on files.
void CreateFiles(const Location& location, const QString& adminUser, const QString& adminPassword,
                 const PasswordCost& cost, const QString& group = {});

} // namespace dao::sqlite
