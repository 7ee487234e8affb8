#include "dao/postgresql/Accounts.h"
#include "dao/TextMatch.h"

namespace dao::postgresql {

namespace {

constexpr auto WhereUser = " WHERE kyn_fold(user_name)=kyn_fold(?)";

QStringList FirstColumn(Connection& connection, const QString& sql, const QVariantList& values = {})
{
    QStringList column;
    for (const QVariantList& row : connection.AllRows(sql, values))
        column.append(row.first().toString());
    return column;
}

// The groups of one account.
class UserGroups : public GroupList {
public:
    UserGroups(std::shared_ptr<Session> session, QString user)
        : m_session(std::move(session)),
          m_user(std::move(user))
    {
    }

    QStringList Names() const override
    {
        return FirstColumn(*m_session->connection,
                           QString("SELECT group_name FROM membership JOIN account USING (account_id)") +
                               WhereUser + " ORDER BY group_name",
                           {m_user});
    }
    bool Contains(const QString& group) const override { return Names().contains(group); }
    void Append(const QString& group) override
    {
        m_session->Call("SELECT kyn_join(?, ?)", {m_user, group}, m_user, group);
    }
    void Delete(const QString& group) override
    {
        m_session->Call("SELECT kyn_leave(?, ?)", {m_user, group}, m_user, group);
    }

private:
    std::shared_ptr<Session> m_session;
    QString m_user;
};

} // namespace

bool Session::IsOwn(const QString& user) const
{
    return Fold(user) == Fold(userName);
}

void Session::RequireAdministrator() const
{
    if (!connection->Value("SELECT kyn_is_admin()").toBool())
        throw Error(Kind::NotPermitted);
}

void Session::Call(const QString& call, const QVariantList& values, const QString& user,
                   const QString& group) const
{
    try {
        connection->Change(call, values);
    } catch (const Error& error) {
        switch (error.kind) {
        case Kind::NoSuchUser:
        case Kind::UserExists:
        case Kind::LastAdministrator:
            throw Error(error.kind, {user}, error.engineText);
        case Kind::NoSuchGroup:
        case Kind::GroupExists:
            throw Error(error.kind, {group}, error.engineText);
        case Kind::AlreadyMember:
        case Kind::NotAMember:
            throw Error(error.kind, {user, group}, error.engineText);
        default:
            throw;
        }
    }
}

QByteArray PasswordVerifier(ServerLink& link, const QByteArray& role, const QString& password)
{
    const std::unique_ptr<char, decltype(&PQfreemem)> verifier(
        PQencryptPasswordConn(link.Handle(), PasswordBytes(password), role, "scram-sha-256"), PQfreemem);
    if (!verifier)
        throw Error(Kind::Engine, {"SCRAM"}, "no SCRAM verifier can be made");
    return QByteArray(verifier.get());
}

ServerUser::ServerUser(std::shared_ptr<Session> session, QString name, QString pid, QByteArray verifier)
    : m_session(std::move(session)),
      m_name(std::move(name)),
      m_pid(std::move(pid)),
      m_verifier(std::move(verifier)),
      m_groups(std::make_unique<UserGroups>(m_session, m_name))
{
}

void ServerUser::NewPassword(const QString& oldPassword, const QString& newPassword)
{
    ServerLink& link = m_session->connection->Link();
    Logon logon = link.LogonData();
    const bool own = m_session->IsOwn(m_name);
    if (own) {
        logon.password = PasswordBytes(oldPassword);
        Connect(logon); // proves the old one
        if (newPassword.isEmpty())
            throw Error(Kind::BadPassword);
    } else {
        m_session->RequireAdministrator();
    }
    if (newPassword == QLatin1String(EmptyPassword))
        throw Error(Kind::BadPassword);
    const QByteArray role = RoleName(logon.address.Database(), m_name);
    m_session->Call("SELECT kyn_set_password(?, ?)",
                    {m_name, QString::fromLatin1(PasswordVerifier(link, role, newPassword))}, m_name, {});
    if (own)
        link.SetPassword(PasswordBytes(newPassword));
}

QStringList ServerUserList::Names() const
{
    return FirstColumn(*m_session->connection, "SELECT user_name FROM account ORDER BY kyn_fold(user_name)");
}

bool ServerUserList::Contains(const QString& name) const
{
    return m_session->connection->FirstRow(QString("SELECT 1 FROM account") + WhereUser, {name}).has_value();
}

std::unique_ptr<User> ServerUserList::Item(const QString& name) const
{
    const auto account =
        m_session->connection->FirstRow(QString("SELECT user_name, pid FROM account") + WhereUser, {name});
    if (!account)
        throw Error(Kind::NoSuchUser, {name});
    return std::make_unique<ServerUser>(m_session, (*account)[0].toString(), (*account)[1].toString(),
                                        QByteArray());
}

void ServerUserList::Append(const User& user)
{
    m_session->RequireAdministrator();
    const auto* made = dynamic_cast<const ServerUser*>(&user);
    if (!made || made->Verifier().isEmpty())
        throw Error(Contains(user.Name()) ? Kind::UserExists : Kind::NoSuchUser, {user.Name()});
    m_session->Call("SELECT kyn_add_account(?, ?, ?)",
                    {made->Name(), made->Pid(), QString::fromLatin1(made->Verifier())}, user.Name(), {});
}

void ServerUserList::Delete(const QString& name)
{
    m_session->Call("SELECT kyn_drop_account(?)", {name}, name, {});
}

QStringList DatabaseGroups::Names() const
{
    return FirstColumn(*m_session->connection, "SELECT group_name FROM account_group ORDER BY group_name");
}

bool DatabaseGroups::Contains(const QString& group) const
{
    return Names().contains(group);
}

void DatabaseGroups::Append(const QString& group)
{
    m_session->Call("SELECT kyn_add_group(?)", {group}, {}, group);
}

void DatabaseGroups::Delete(const QString& group)
{
    m_session->Call("SELECT kyn_drop_group(?)", {group}, {}, group);
}

} // namespace dao::postgresql
