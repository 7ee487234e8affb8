#include "dao/postgresql/Accounts.h"
#include "dao/base/TextMatch.h"

namespace dao::postgresql {

namespace {

constexpr auto WhereUser = " WHERE kyn_fold(user_name)=kyn_fold(?)";

// Empty: the session's own account.
constexpr auto Membership = "SELECT EXISTS (SELECT 1 FROM membership WHERE membership.account_id = "
                            "account.account_id AND group_name = ?) FROM account "
                            "WHERE kyn_fold(user_name)=kyn_fold(COALESCE(?, kyn_user()))";

} // namespace

QByteArray PasswordVerifier(ServerLink& link, const QByteArray& role, const QString& password)
{
    const std::unique_ptr<char, decltype(&PQfreemem)> verifier(
        PQencryptPasswordConn(link.Handle(), PasswordBytes(password), role, "scram-sha-256"), PQfreemem);
    if (!verifier)
        throw Error(Kind::Engine, {"SCRAM"}, "no SCRAM verifier can be made");
    return QByteArray(verifier.get());
}

Accounts::Accounts(std::shared_ptr<Connection> connection, const QString& ownName)
    : AccountStore(ownName),
      m_connection(std::move(connection))
{
}

void Accounts::Call(const QString& call, const QVariantList& values, const QString& user,
                    const QString& group)
{
    m_connection->ChangeLater(
        call, values,
        [user, group](Error& error) {
            switch (error.kind) {
            case Kind::NoSuchUser:
            case Kind::UserExists:
            case Kind::LastAdministrator:
                error = Error(error.kind, {user}, error.engineText);
                break;
            case Kind::NoSuchGroup:
            case Kind::GroupExists:
                error = Error(error.kind, {group}, error.engineText);
                break;
            case Kind::AlreadyMember:
            case Kind::NotAMember:
                error = Error(error.kind, {user, group}, error.engineText);
                break;
            default:
                break;
            }
        });
}

QStringList Accounts::Column(const QString& sql, const QVariantList& values)
{
    QStringList column;
    for (const QVariantList& row : m_connection->AllRows(sql, values))
        column.append(row.first().toString());
    return column;
}

void Accounts::RequireAdministrator()
{
    if (m_connection->IsTogether())
        m_connection->ChangeLater("SELECT kyn_require_admin()", {}, [](Error&) {});
    else if (!m_connection->Value("SELECT kyn_is_admin()").toBool())
        throw Error(Kind::NotPermitted);
}

QStringList Accounts::UserNames()
{
    return Column("SELECT user_name FROM account ORDER BY kyn_fold(user_name)");
}

std::optional<AccountStore::Account> Accounts::Find(const QString& user)
{
    const auto row =
        m_connection->FirstRow(QString("SELECT user_name, pid FROM account") + WhereUser, {user});
    if (!row)
        return {};
    return Account{(*row)[0].toString(), (*row)[1].toString()};
}

QStringList Accounts::Groups()
{
    return Column("SELECT group_name FROM account_group ORDER BY group_name");
}

QStringList Accounts::GroupsOf(const QString& user)
{
    return Column(QString("SELECT group_name FROM membership JOIN account USING (account_id)") + WhereUser +
                      " ORDER BY group_name",
                  {user});
}

bool Accounts::IsMember(const QString& user, const QString& group)
{
    const QVariant isMember =
        m_connection->Value(Membership, {group, IsOwn(user) ? QVariant() : QVariant(user)});
    if (!isMember.isValid())
        throw Error(Kind::NoSuchUser, {user});
    return isMember.toBool();
}

QHash<QString, QStringList> Accounts::Memberships()
{
    QHash<QString, QStringList> memberships;
    for (const QVariantList& row :
         m_connection->AllRows("SELECT user_name, group_name FROM membership JOIN account USING (account_id) "
                               "ORDER BY group_name"))
        memberships[Fold(row[0].toString())].append(row[1].toString());
    return memberships;
}

QList<Request> Accounts::FirstRequests()
{
    return {{Membership, {QString(AdminsGroupName), QVariant()}}};
}

QByteArray Accounts::Secret(const QString& user, const QString& password)
{
    if (password == QLatin1String(EmptyPassword))
        throw Error(Kind::BadPassword);
    ServerLink& link = m_connection->Link();
    return PasswordVerifier(link, RoleName(link.LogonData().address.Database(), user), password);
}

void Accounts::ProveOwnPassword(const QString& password)
{
    Logon logon = m_connection->Link().LogonData();
    logon.password = SharedPassword(PasswordBytes(password));
    Connect(logon);
}

void Accounts::StorePassword(const QString& user, const QString& password)
{
    if (!IsOwn(user))
        RequireAdministrator();
    Call("SELECT kyn_set_password(?, ?)", {user, QString::fromLatin1(Secret(user, password))}, user, {});
    if (IsOwn(user))
        m_connection->Link().SetPassword(PasswordBytes(password));
}

void Accounts::AddUser(const Account& account, const QByteArray& secret)
{
    Call("SELECT kyn_add_account(?, ?, ?)", {account.name, account.pid, QString::fromLatin1(secret)},
         account.name, {});
}

void Accounts::DeleteUser(const QString& user)
{
    Call("SELECT kyn_drop_account(?)", {user}, user, {});
}

void Accounts::AddGroup(const QString& group)
{
    Call("SELECT kyn_add_group(?)", {group}, {}, group);
}

void Accounts::DeleteGroup(const QString& group)
{
    Call("SELECT kyn_drop_group(?)", {group}, {}, group);
}

void Accounts::Join(const QString& user, const QString& group)
{
    Call("SELECT kyn_join(?, ?)", {user, group}, user, group);
}

void Accounts::Leave(const QString& user, const QString& group)
{
    Call("SELECT kyn_leave(?, ?)", {user, group}, user, group);
}

} // namespace dao::postgresql
