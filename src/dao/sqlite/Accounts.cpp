#include "dao/sqlite/Accounts.h"
#include "dao/base/Error.h"

namespace dao::sqlite {

namespace {

constexpr auto WhereUser = " WHERE kyn_fold(user_name)=kyn_fold(?)";

} // namespace

QString CheckLogon(Connection& connection, const QString& user, const QString& password,
                   const PasswordCost& cost)
{
    const auto account =
        connection.Prepare(QString("SELECT user_name, password_hash FROM workgroup.account") + WhereUser);
    account->Bind(0, user);
    if (!account->Step()) {
        HashPassword(password, cost); // so that the time taken does not tell which names exist
        throw Error(Kind::WrongPassword);
    }
    if (!PasswordMatches(account->Column(1).toString().toUtf8(), password))
        throw Error(Kind::WrongPassword);
    return account->Column(0).toString();
}

Accounts::Accounts(std::shared_ptr<Connection> connection, const QString& ownName, const PasswordCost& cost)
    : AccountStore(ownName),
      m_connection(std::move(connection)),
      m_passwordCost(cost)
{
}

QStringList Accounts::Column(const QString& sql, const QVariantList& values)
{
    QStringList column;
    for (const QVariantList& row : m_connection->AllRows(sql, values))
        column.append(row.first().toString());
    return column;
}

bool Accounts::IsMember(const QString& user, const QString& group)
{
    return m_connection
        ->Value(QString("SELECT 1 FROM workgroup.membership JOIN workgroup.account USING (account_id)") +
                    WhereUser + " AND group_name=?",
                {user, group})
        .isValid();
}

void Accounts::RequireAdministrator()
{
    if (!IsMember(OwnName(), AdminsGroupName))
        throw Error(Kind::NotPermitted);
}

// Kind::LastAdministrator when there is no other account in "Admins".
void Accounts::RequireOtherAdministrator(const QString& user)
{
    const QVariant others = m_connection->Value(
        "SELECT count(*) FROM workgroup.membership JOIN workgroup.account USING (account_id) "
        "WHERE group_name=? AND kyn_fold(user_name)<>kyn_fold(?)",
        {QString(AdminsGroupName), user});
    if (others.toInt() == 0)
        throw Error(Kind::LastAdministrator, {user});
}

qlonglong Accounts::IdOf(const QString& user)
{
    const QVariant id =
        m_connection->Value(QString("SELECT account_id FROM workgroup.account") + WhereUser, {user});
    if (!id.isValid())
        throw Error(Kind::NoSuchUser, {user});
    return id.toLongLong();
}

QStringList Accounts::UserNames()
{
    return Column("SELECT user_name FROM workgroup.account ORDER BY kyn_fold(user_name)");
}

std::optional<AccountStore::Account> Accounts::Find(const QString& user)
{
    const auto row =
        m_connection->FirstRow(QString("SELECT user_name, pid FROM workgroup.account") + WhereUser, {user});
    if (!row)
        return {};
    return Account{(*row)[0].toString(), (*row)[1].toString()};
}

QStringList Accounts::Groups()
{
    return Column("SELECT group_name FROM workgroup.account_group ORDER BY group_name");
}

QStringList Accounts::GroupsOf(const QString& user)
{
    return Column(
        QString("SELECT group_name FROM workgroup.membership JOIN workgroup.account USING (account_id)") +
            WhereUser + " ORDER BY group_name",
        {user});
}

QByteArray Accounts::Secret(const QString&, const QString& password)
{
    return HashPassword(password, m_passwordCost);
}

void Accounts::ProveOwnPassword(const QString& password)
{
    CheckLogon(*m_connection, OwnName(), password, m_passwordCost);
}

void Accounts::StorePassword(const QString& user, const QString& password)
{
    if (!IsOwn(user))
        RequireAdministrator();
    const QString hash = QString::fromLatin1(Secret(user, password));
    if (m_connection->Change(QString("UPDATE workgroup.account SET password_hash=?") + WhereUser,
                             {hash, user}) == 0)
        throw Error(Kind::NoSuchUser, {user});
}

void Accounts::AddUser(const Account& account, const QByteArray& secret)
{
    RequireAdministrator();
    try {
        m_connection->Change("INSERT INTO workgroup.account (user_name, pid, password_hash) VALUES (?, ?, ?)",
                             {account.name, account.pid, QString::fromLatin1(secret)});
    } catch (const Error& error) {
        if (error.kind == Kind::DuplicateKey)
            throw Error(Kind::UserExists, {account.name}, error.engineText);
        throw;
    }
}

void Accounts::DeleteUser(const QString& user)
{
    ChangeScope scope(*m_connection);
    RequireAdministrator();
    if (IsMember(user, AdminsGroupName))
        RequireOtherAdministrator(user);
    if (m_connection->Change(QString("DELETE FROM workgroup.account") + WhereUser, {user}) == 0)
        throw Error(Kind::NoSuchUser, {user});
    scope.Commit();
}

void Accounts::AddGroup(const QString& group)
{
    RequireAdministrator();
    try {
        m_connection->Change("INSERT INTO workgroup.account_group (group_name) VALUES (?)", {group});
    } catch (const Error& error) {
        if (error.kind == Kind::DuplicateKey)
            throw Error(Kind::GroupExists, {group}, error.engineText);
        throw;
    }
}

void Accounts::DeleteGroup(const QString& group)
{
    RequireAdministrator();
    if (group == AdminsGroupName || group == UsersGroupName)
        throw Error(Kind::NotPermitted);
    if (m_connection->Change("DELETE FROM workgroup.account_group WHERE group_name=?", {group}) == 0)
        throw Error(Kind::NoSuchGroup, {group});
}

void Accounts::Join(const QString& user, const QString& group)
{
    RequireAdministrator();
    try {
        m_connection->Change("INSERT INTO workgroup.membership (account_id, group_name) VALUES (?, ?)",
                             {IdOf(user), group});
    } catch (const Error& error) {
        if (error.kind == Kind::DuplicateKey)
            throw Error(Kind::AlreadyMember, {user, group}, error.engineText);
        if (error.kind == Kind::InUse)
            throw Error(Kind::NoSuchGroup, {group}, error.engineText);
        throw;
    }
}

void Accounts::Leave(const QString& user, const QString& group)
{
    ChangeScope scope(*m_connection);
    RequireAdministrator();
    if (group == AdminsGroupName && IsMember(user, group))
        RequireOtherAdministrator(user);
    if (m_connection->Change("DELETE FROM workgroup.membership WHERE account_id=? AND group_name=?",
                             {IdOf(user), group}) == 0)
        throw Error(Kind::NotAMember, {user, group});
    scope.Commit();
}

} // namespace dao::sqlite
