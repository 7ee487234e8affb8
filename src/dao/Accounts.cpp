#include "dao/Accounts.h"
#include "dao/base/Error.h"

namespace dao {

GroupList::GroupList(std::shared_ptr<AccountStore> store, std::optional<QString> user)
    : m_store(std::move(store)),
      m_user(std::move(user))
{
}

QStringList GroupList::Names() const
{
    return m_user ? m_store->GroupsOf(*m_user) : m_store->Groups();
}

void GroupList::Append(const QString& group)
{
    if (m_user)
        m_store->Join(*m_user, group);
    else
        m_store->AddGroup(group);
}

void GroupList::Delete(const QString& group)
{
    if (m_user)
        m_store->Leave(*m_user, group);
    else
        m_store->DeleteGroup(group);
}

User::User(std::shared_ptr<AccountStore> store, AccountStore::Account account, QByteArray secret)
    : m_store(std::move(store)),
      m_account(std::move(account)),
      m_secret(std::move(secret)),
      m_groups(m_store, m_account.name)
{
}

void User::NewPassword(const QString& oldPassword, const QString& newPassword)
{
    if (m_store->IsOwn(m_account.name)) {
        m_store->ProveOwnPassword(oldPassword);
        if (newPassword.isEmpty())
            throw Error(Kind::BadPassword);
    }
    m_store->StorePassword(m_account.name, newPassword);
}

QStringList UserList::Names() const
{
    return m_store->UserNames();
}

bool UserList::Contains(const QString& name) const
{
    return m_store->Find(name).has_value();
}

bool UserList::IsMember(const QString& name, const QString& group) const
{
    return m_store->IsMember(name, group);
}

std::unique_ptr<User> UserList::Item(const QString& name) const
{
    const auto account = m_store->Find(name);
    if (!account)
        throw Error(Kind::NoSuchUser, {name});
    return std::make_unique<User>(m_store, *account);
}

void UserList::Append(const User& user)
{
    m_store->RequireAdministrator();
    // The secret of another session might be that of another engine.
    if (user.m_store != m_store || user.m_secret.isEmpty())
        throw Error(Contains(user.Name()) ? Kind::UserExists : Kind::NoSuchUser, {user.Name()});
    m_store->AddUser(user.m_account, user.m_secret);
}

void UserList::Delete(const QString& name)
{
    m_store->DeleteUser(name);
}

} // namespace dao
