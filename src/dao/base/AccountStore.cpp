#include "dao/base/AccountStore.h"
#include "dao/base/Error.h"
#include "dao/base/TextMatch.h"

namespace dao {

bool AccountStore::IsOwn(const QString& user) const
{
    return Fold(user) == Fold(m_ownName);
}

bool AccountStore::IsMember(const QString& user, const QString& group)
{
    const auto account = Find(user);
    if (!account)
        throw Error(Kind::NoSuchUser, {user});
    return GroupsOf(account->name).contains(group);
}

QHash<QString, QStringList> AccountStore::Memberships()
{
    QHash<QString, QStringList> memberships;
    for (const QString& user : UserNames())
        memberships.insert(Fold(user), GroupsOf(user));
    return memberships;
}

} // namespace dao
