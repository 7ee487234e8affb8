#pragma once

#include "dao/Database.h"
#include "dao/Error.h"
#include "dao/Location.h"
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

namespace dao {

// Groups that every workgroup has: administrators and operators.
inline constexpr auto AdminsGroupName = "Admins";
inline constexpr auto UsersGroupName = "Users";

// What a new password's Argon2id hash costs. Stored passwords keep the cost that they were made with.
struct PasswordCost {
    unsigned long long operations;
    std::size_t memory; // bytes

    static PasswordCost Interactive(); // about 50 ms and 64 MiB
    static PasswordCost Lowest(); // the least that libsodium accepts; for trial databases that guard nothing
};

struct OpenOptions {
    // How long an operation waits for another program's lock before it raises Kind::Locked.
    std::chrono::milliseconds busyTimeout{2000};
    // The present time that queries over a period count from; empty: the system's clock.
    std::function<QDateTime()> now;
    PasswordCost passwordCost = PasswordCost::Interactive();
};

// Names of groups: all that the workgroup has, or those that one account belongs to. Read afresh at each
// call, so that Refresh has nothing left to do; it is here for the callers' sake. Group names compare
// exactly. Changes need an administrator (Kind::NotPermitted).
class GroupList {
public:
    virtual ~GroupList() = default;
    virtual void Refresh() {}
    virtual QStringList Names() const = 0; // sorted
    virtual bool Contains(const QString& group) const = 0;
    // Of the workgroup: creates the group. Of an account: makes it a member.
    virtual void Append(const QString& group) = 0;
    // Of the workgroup: deletes the group, with its memberships; "Admins" and "Users" stay
    // (Kind::NotPermitted). Of an account: ends the membership. The last account of "Admins" stays in it
    // (Kind::LastAdministrator).
    virtual void Delete(const QString& group) = 0;
};

// One account. Names compare without regard to case.
class User {
public:
    virtual ~User() = default;
    virtual QString Name() const = 0;
    // Personal identifier, as it was given at creation.
    virtual QString Pid() const = 0;
    virtual GroupList& Groups() = 0;

    // Changes the password. The own one needs the old password (Kind::WrongPassword) and may not become empty
    // (Kind::BadPassword). An administrator changes another account's without its old password, which then is
    // ignored, and may reset it to an empty one. Everybody else: Kind::NotPermitted.
    virtual void NewPassword(const QString& oldPassword, const QString& newPassword) = 0;
};

// All accounts. Read afresh at each call. Changes need an administrator.
class UserList {
public:
    virtual ~UserList() = default;
    virtual void Refresh() {}
    virtual QStringList Names() const = 0; // sorted without regard to case
    virtual bool Contains(const QString& name) const = 0;
    // Kind::NoSuchUser when there is none. The object refers to the account by name and may outlive it.
    virtual std::unique_ptr<User> Item(const QString& name) const = 0;
    // Stores an account that Workspace::CreateUser made. Kind::UserExists.
    virtual void Append(const User& user) = 0;
    // Kind::NoSuchUser, Kind::LastAdministrator.
    virtual void Delete(const QString& name) = 0;
};

// Who wants to know what other sessions do; called from the event loop.
struct WorkspaceWatcher {
    // Another session changed this table ("account" and the like for accounts); an empty name: nobody knows
    // what was changed.
    std::function<void(const QString& table)> changed;
    // The server does not answer any more, or answers again. The session goes on by itself.
    std::function<void(bool away)> away;
};

// A session of one account on a database, with its workgroup file or on a server. Closing (or destroying) it
// rolls an open transaction back and closes every recordset and query of the session; objects still held then
// raise Kind::Closed. Used by one thread only.
class Workspace {
public:
    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    // The account's name as it was spelled at its creation.
    virtual QString UserName() const = 0;
    virtual dao::Database& Database() = 0;

    virtual UserList& Users() = 0;
    virtual GroupList& Groups() = 0;

    // Makes an account that exists only once it is appended to Users(). Kind::BadUserName, Kind::BadPassword
    // (an empty one), Kind::NotPermitted.
    virtual std::unique_ptr<User> CreateUser(const QString& name, const QString& pid,
                                             const QString& password) = 0;

    // One transaction over database and workgroup file. It holds the write lock of both from the start
    // (Kind::Locked). Kind::InTransaction when one is open, Kind::NoTransaction when none is. A commit that
    // fails leaves the transaction open.
    virtual void BeginTrans() = 0;
    virtual void CommitTrans() = 0;
    virtual void Rollback() = 0;

    // Files tell nothing: their watcher is never called.
    virtual void Watch(const WorkspaceWatcher&) {}
    // What files can be asked instead: the tables of the directory, the groups, the statuses, the accounts
    // and the settings that other sessions have changed since the last call, or since the opening. Nothing on
    // a server.
    virtual QStringList ChangedElsewhere() { return {}; }

    virtual void Close() noexcept = 0;
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
