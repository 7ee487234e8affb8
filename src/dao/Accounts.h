#pragma once

#include "dao/base/AccountStore.h"
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

namespace dao {

// Names of groups: all that the workgroup has, or those that one account belongs to. Read afresh at each
// call, so that Refresh has nothing left to do; it is here for the callers' sake. Group names compare
// exactly. Changes need an administrator (Kind::NotPermitted).
class GroupList {
public:
    // Of the workgroup, or of the account named.
    explicit GroupList(std::shared_ptr<AccountStore> store, std::optional<QString> user = {});
    GroupList(const GroupList&) = delete;
    GroupList& operator=(const GroupList&) = delete;

    void Refresh() {}
    QStringList Names() const; // sorted
    bool Contains(const QString& group) const { return Names().contains(group); }
    // Of the workgroup: creates the group. Of an account: makes it a member.
    void Append(const QString& group);
    // Of the workgroup: deletes the group, with its memberships; "Admins" and "Users" stay
    // (Kind::NotPermitted). Of an account: ends the membership. The last account of "Admins" stays in it
    // (Kind::LastAdministrator).
    void Delete(const QString& group);

private:
    std::shared_ptr<AccountStore> m_store;
    std::optional<QString> m_user;
};

// One account. Names compare without regard to case.
class User {
public:
    // A stored account; `secret` is only there for one that is yet to be appended.
    User(std::shared_ptr<AccountStore> store, AccountStore::Account account, QByteArray secret = {});
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    QString Name() const { return m_account.name; }
    // Personal identifier, as it was given at creation.
    QString Pid() const { return m_account.pid; }
    GroupList& Groups() { return m_groups; }

    // Changes the password. The own one needs the old password (Kind::WrongPassword) and may not become empty
    // (Kind::BadPassword). An administrator changes another account's without its old password, which then is
    // ignored, and may reset it to an empty one. Everybody else: Kind::NotPermitted.
    void NewPassword(const QString& oldPassword, const QString& newPassword);

private:
    friend class UserList;

    std::shared_ptr<AccountStore> m_store;
    AccountStore::Account m_account;
    QByteArray m_secret;
    GroupList m_groups;
};

// All accounts. Read afresh at each call. Changes need an administrator.
class UserList {
public:
    explicit UserList(std::shared_ptr<AccountStore> store) : m_store(std::move(store)) {}
    UserList(const UserList&) = delete;
    UserList& operator=(const UserList&) = delete;

    void Refresh() {}
    QStringList Names() const; // sorted without regard to case
    bool Contains(const QString& name) const;
    // Kind::NoSuchUser.
    bool IsMember(const QString& name, const QString& group) const;
    // The groups of an account that is known to be there; of another one an empty list.
    GroupList GroupsOf(const QString& name) const { return GroupList(m_store, name); }
    // Those of all accounts, by their names as dao::Fold has them.
    QHash<QString, QStringList> Memberships() const { return m_store->Memberships(); }
    // Kind::NoSuchUser when there is none. The object refers to the account by name and may outlive it.
    std::unique_ptr<User> Item(const QString& name) const;
    // Stores an account that Workspace::CreateUser of this session made. Kind::UserExists.
    void Append(const User& user);
    // Kind::NoSuchUser, Kind::LastAdministrator.
    void Delete(const QString& name);

private:
    std::shared_ptr<AccountStore> m_store;
};

} // namespace dao
