#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

namespace dao {

// Groups that every workgroup has: administrators and operators.
inline constexpr auto AdminsGroupName = "Admins";
inline constexpr auto UsersGroupName = "Users";

// The accounts and groups of a database as an engine keeps them, for the session of one account. Everything
// is read afresh at each call, since another workstation may have changed it. Each change checks the rights
// of that account by itself (Kind::NotPermitted) and raises the kinds that User, UserList and GroupList name.
// User names compare without regard to case, group names exactly.
class AccountStore {
public:
    struct Account {
        QString name;
        QString pid;
    };

    AccountStore(const AccountStore&) = delete;
    AccountStore& operator=(const AccountStore&) = delete;
    virtual ~AccountStore() = default;

    // The account whose session this is, as it was spelled at its creation.
    const QString& OwnName() const { return m_ownName; }
    bool IsOwn(const QString& user) const;
    // Kind::NotPermitted when the session's account is not in "Admins".
    virtual void RequireAdministrator() = 0;

    virtual QStringList UserNames() = 0; // sorted without regard to case
    virtual std::optional<Account> Find(const QString& user) = 0;
    virtual QStringList Groups() = 0; // sorted, as are those of an account
    virtual QStringList GroupsOf(const QString& user) = 0;
    // Kind::NoSuchUser.
    virtual bool IsMember(const QString& user, const QString& group);
    // The groups of all accounts, by their names without regard to case (see Fold).
    virtual QHash<QString, QStringList> Memberships();

    // What is stored in the place of a password. Kind::BadPassword for one that the engine cannot tell from
    // none.
    virtual QByteArray Secret(const QString& user, const QString& password) = 0;
    // Kind::WrongPassword, unless this is the password of the session's account.
    virtual void ProveOwnPassword(const QString& password) = 0;
    // Of the session's own account, or by an administrator.
    virtual void StorePassword(const QString& user, const QString& password) = 0;

    virtual void AddUser(const Account& account, const QByteArray& secret) = 0;
    virtual void DeleteUser(const QString& user) = 0;
    virtual void AddGroup(const QString& group) = 0;
    virtual void DeleteGroup(const QString& group) = 0;
    virtual void Join(const QString& user, const QString& group) = 0;
    virtual void Leave(const QString& user, const QString& group) = 0;

protected:
    explicit AccountStore(QString ownName) : m_ownName(std::move(ownName)) {}

private:
    QString m_ownName;
};

} // namespace dao
