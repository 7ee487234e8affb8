#include "dao/sqlite/Accounts.h"
#include "dao/Passwords.h"
#include "dao/TextMatch.h"

namespace dao::sqlite {

namespace {

constexpr auto WhereUser = " WHERE kyn_fold(user_name)=kyn_fold(?)";

QStringList ColumnOf(Connection& connection, const QString& sql, const QVariantList& values = {})
{
    QStringList column;
    const auto statement = connection.Kept(sql);
    statement->Bind(values);
    while (statement->Step())
        column.append(statement->Column(0).toString());
    return column;
}

// Kind::LastAdministrator when there is no other account in "Admins".
void RequireOtherAdministrator(Connection& connection, const QString& user)
{
    const QVariant others = connection.Value(
        "SELECT count(*) FROM workgroup.membership JOIN workgroup.account USING (account_id) "
        "WHERE group_name=? AND kyn_fold(user_name)<>kyn_fold(?)",
        {QString(AdminsGroupName), user});
    if (others.toInt() == 0)
        throw Error(Kind::LastAdministrator, {user});
}

} // namespace

bool Session::IsOwn(const QString& user) const
{
    return Fold(user) == Fold(userName);
}

void Session::RequireAdministrator() const
{
    if (!IsMember(*connection, userName, AdminsGroupName))
        throw Error(Kind::NotPermitted);
}

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

bool IsMember(Connection& connection, const QString& user, const QString& group)
{
    return connection
        .Value(QString("SELECT 1 FROM workgroup.membership JOIN workgroup.account USING (account_id)") +
                   WhereUser + " AND group_name=?",
               {user, group})
        .isValid();
}

SqliteUser::SqliteUser(std::shared_ptr<Session> session, QString name, QString pid, QByteArray passwordHash)
    : m_session(std::move(session)),
      m_name(std::move(name)),
      m_pid(std::move(pid)),
      m_passwordHash(std::move(passwordHash)),
      m_groups(std::make_unique<UserGroups>(m_session, m_name))
{
}

void SqliteUser::NewPassword(const QString& oldPassword, const QString& newPassword)
{
    Connection& connection = *m_session->connection;
    if (m_session->IsOwn(m_name)) {
        CheckLogon(connection, m_name, oldPassword, m_session->passwordCost);
        if (newPassword.isEmpty())
            throw Error(Kind::BadPassword);
    } else {
        m_session->RequireAdministrator();
    }
    const QString hash = QString::fromLatin1(HashPassword(newPassword, m_session->passwordCost));
    if (connection.Change(QString("UPDATE workgroup.account SET password_hash=?") + WhereUser,
                          {hash, m_name}) == 0)
        throw Error(Kind::NoSuchUser, {m_name});
}

QStringList SqliteUserList::Names() const
{
    return ColumnOf(*m_session->connection,
                    "SELECT user_name FROM workgroup.account ORDER BY kyn_fold(user_name)");
}

bool SqliteUserList::Contains(const QString& name) const
{
    return m_session->connection->Value(QString("SELECT 1 FROM workgroup.account") + WhereUser, {name})
        .isValid();
}

std::unique_ptr<User> SqliteUserList::Item(const QString& name) const
{
    const auto account =
        m_session->connection->Kept(QString("SELECT user_name, pid FROM workgroup.account") + WhereUser);
    account->Bind(0, name);
    if (!account->Step())
        throw Error(Kind::NoSuchUser, {name});
    return std::make_unique<SqliteUser>(m_session, account->Column(0).toString(),
                                        account->Column(1).toString(), QByteArray());
}

void SqliteUserList::Append(const User& user)
{
    m_session->RequireAdministrator();
    const auto* made = dynamic_cast<const SqliteUser*>(&user);
    if (!made || made->PasswordHash().isEmpty())
        throw Error(Contains(user.Name()) ? Kind::UserExists : Kind::NoSuchUser, {user.Name()});
    try {
        m_session->connection->Change(
            "INSERT INTO workgroup.account (user_name, pid, password_hash) VALUES (?, ?, ?)",
            {made->Name(), made->Pid(), QString::fromLatin1(made->PasswordHash())});
    } catch (const Error& error) {
        if (error.kind == Kind::DuplicateKey)
            throw Error(Kind::UserExists, {user.Name()}, error.engineText);
        throw;
    }
}

void SqliteUserList::Delete(const QString& name)
{
    Connection& connection = *m_session->connection;
    ChangeScope scope(connection);
    m_session->RequireAdministrator();
    if (IsMember(connection, name, AdminsGroupName))
        RequireOtherAdministrator(connection, name);
    if (connection.Change(QString("DELETE FROM workgroup.account") + WhereUser, {name}) == 0)
        throw Error(Kind::NoSuchUser, {name});
    scope.Commit();
}

QStringList WorkgroupGroups::Names() const
{
    return ColumnOf(*m_session->connection,
                    "SELECT group_name FROM workgroup.account_group ORDER BY group_name");
}

bool WorkgroupGroups::Contains(const QString& group) const
{
    return m_session->connection->Value("SELECT 1 FROM workgroup.account_group WHERE group_name=?", {group})
        .isValid();
}

void WorkgroupGroups::Append(const QString& group)
{
    m_session->RequireAdministrator();
    try {
        m_session->connection->Change("INSERT INTO workgroup.account_group (group_name) VALUES (?)", {group});
    } catch (const Error& error) {
        if (error.kind == Kind::DuplicateKey)
            throw Error(Kind::GroupExists, {group}, error.engineText);
        throw;
    }
}

void WorkgroupGroups::Delete(const QString& group)
{
    m_session->RequireAdministrator();
    if (group == AdminsGroupName || group == UsersGroupName)
        throw Error(Kind::NotPermitted);
    if (m_session->connection->Change("DELETE FROM workgroup.account_group WHERE group_name=?", {group}) == 0)
        throw Error(Kind::NoSuchGroup, {group});
}

QStringList UserGroups::Names() const
{
    return ColumnOf(
        *m_session->connection,
        QString("SELECT group_name FROM workgroup.membership JOIN workgroup.account USING (account_id)") +
            WhereUser + " ORDER BY group_name",
        {m_user});
}

bool UserGroups::Contains(const QString& group) const
{
    return IsMember(*m_session->connection, m_user, group);
}

qlonglong UserGroups::AccountId() const
{
    const QVariant id = m_session->connection->Value(
        QString("SELECT account_id FROM workgroup.account") + WhereUser, {m_user});
    if (!id.isValid())
        throw Error(Kind::NoSuchUser, {m_user});
    return id.toLongLong();
}

void UserGroups::Append(const QString& group)
{
    m_session->RequireAdministrator();
    try {
        m_session->connection->Change(
            "INSERT INTO workgroup.membership (account_id, group_name) VALUES (?, ?)", {AccountId(), group});
    } catch (const Error& error) {
        if (error.kind == Kind::DuplicateKey)
            throw Error(Kind::AlreadyMember, {m_user, group}, error.engineText);
        if (error.kind == Kind::InUse)
            throw Error(Kind::NoSuchGroup, {group}, error.engineText);
        throw;
    }
}

void UserGroups::Delete(const QString& group)
{
    Connection& connection = *m_session->connection;
    ChangeScope scope(connection);
    m_session->RequireAdministrator();
    if (group == AdminsGroupName && Contains(group))
        RequireOtherAdministrator(connection, m_user);
    if (connection.Change("DELETE FROM workgroup.membership WHERE account_id=? AND group_name=?",
                          {AccountId(), group}) == 0)
        throw Error(Kind::NotAMember, {m_user, group});
    scope.Commit();
}

} // namespace dao::sqlite
