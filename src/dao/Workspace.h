#pragma once

#include "dao/Accounts.h"
#include "dao/base/EngineSession.h"
#include "dao/base/Error.h"
#include "dao/base/Location.h"
#include "dao/base/OpenOptions.h"
#include "dao/records/Database.h"
#include <QString>
#include <QStringList>
#include <memory>

namespace dao {

// A session of one account on a database, with its workgroup file or on a server. Closing (or destroying) it
// rolls an open transaction back and closes every recordset and query of the session; objects still held then
// raise Kind::Closed. Used by one thread only.
class Workspace {
public:
    explicit Workspace(EngineSession session);
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    ~Workspace() { Close(); }

    // The account's name as it was spelled at its creation.
    QString UserName() const { return m_session.accounts->OwnName(); }
    dao::Database& Database() { return m_database; }

    UserList& Users() { return m_users; }
    GroupList& Groups() { return m_groups; }

    // Makes an account that exists only once it is appended to Users(). Kind::BadUserName, Kind::BadPassword
    // (an empty one), Kind::NotPermitted.
    std::unique_ptr<User> CreateUser(const QString& name, const QString& pid, const QString& password);

    // One transaction over database and workgroup file. It holds the write lock of both from the start
    // (Kind::Locked). Kind::InTransaction when one is open, Kind::NoTransaction when none is. A commit that
    // fails leaves the transaction open.
    void BeginTrans();
    // The same for a transaction whose changes are sent to a server together where nobody asks for an answer,
    // so that it is hardly waited for: a failure, that of the beginning included, is raised by this call, by
    // a later one or by CommitTrans, and leaves nothing to do but Rollback.
    void BeginTogether();
    void CommitTrans();
    void Rollback();

    // Files tell nothing: their watcher is never called.
    void Watch(const WorkspaceWatcher& watcher);
    // What files can be asked instead: the tables of the directory, the groups, the statuses, the accounts
    // and the settings that other sessions have changed since the last call, or since the opening.
    // Kind::Locked at once, without the wait for a lock. Nothing on a server.
    QStringList ChangedElsewhere();

    // What opens a workspace of the same account on the same database for another thread, without asking for
    // the password again: on a server it is the one that the account has by then, as far as this workspace
    // knows. May be called on any thread and outlives this workspace; the errors are those of OpenWorkspace.
    // Files are not migrated, and Kind::WorkgroupMismatch says that others have been put in their place.
    std::function<std::unique_ptr<Workspace>()> Again() const;

    // Whether the engine is a server, of which another one may take the place.
    bool IsOnServer() const { return m_session.serverIdentity != nullptr; }
    // The server, its database and since which promotion it can be written to: another text once a standby
    // has taken over or a backup was restored, but the same after a restart. Asks the server once for each
    // connection, and connects again if it has to (Kind::ServerAway). Kind::Replaced when what answers now is
    // not the database that was opened. Empty on files, and on a server that does not tell it.
    QString ServerIdentity() const;

    // How often it has waited for the server's answer; connecting is not counted. Always 0 with files.
    int Waits() const;

    void Close() noexcept;

private:
    EngineSession m_session;
    dao::Database m_database;
    UserList m_users;
    GroupList m_groups;
};

// Opens database and workgroup file and checks the password. An older schema is migrated first; each file is
// copied beside itself before. A QCoreApplication must exist. Errors: every Kind from NoSuchFile to
// WrongPassword.
std::unique_ptr<Workspace> OpenWorkspace(const Location& location, const QString& user,
                                         const QString& password, const OpenOptions& options = {});

// Creates both files with the groups "Admins", "Operators" and "Users" and one account that is in the first
// and the last and has a profile. Either both files are there afterwards or none; existing files are never
// touched (Kind::FileExists). Kind::BadUserName, Kind::BadPassword (empty), Kind::CannotCreate. The files are
// for the account of the system that makes them, or for those of a group of the system (see AccessFor in
// FileAccess.h; Kind::FilesOnly on a server).
void CreateDatabase(const Location& location, const QString& adminUser, const QString& adminPassword,
                    const PasswordCost& cost = PasswordCost::Interactive(), const QString& group = {});

} // namespace dao
