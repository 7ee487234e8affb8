#pragma once

#include "dao/base/AccountStore.h"
#include "dao/base/Passwords.h"
#include "dao/sqlite/Connection.h"
#include <memory>

namespace dao::sqlite {

// The account's name as spelled at its creation. Kind::WrongPassword.
QString CheckLogon(Connection& connection, const QString& user, const QString& password,
                   const PasswordCost& cost);

// The accounts of a workgroup file.
class Accounts : public AccountStore {
public:
    // The workgroup file is attached to the connection as "workgroup".
    Accounts(std::shared_ptr<Connection> connection, const QString& ownName, const PasswordCost& cost);

    void RequireAdministrator() override;
    QStringList UserNames() override;
    std::optional<Account> Find(const QString& user) override;
    QStringList Groups() override;
    QStringList GroupsOf(const QString& user) override;
    QByteArray Secret(const QString& user, const QString& password) override;
    void ProveOwnPassword(const QString& password) override;
    void StorePassword(const QString& user, const QString& password) override;
    void AddUser(const Account& account, const QByteArray& secret) override;
    void DeleteUser(const QString& user) override;
    void AddGroup(const QString& group) override;
    void DeleteGroup(const QString& group) override;
    void Join(const QString& user, const QString& group) override;
    void Leave(const QString& user, const QString& group) override;

private:
    bool IsMember(const QString& user, const QString& group);
    void RequireOtherAdministrator(const QString& user);
    qlonglong IdOf(const QString& user); // Kind::NoSuchUser
    QStringList Column(const QString& sql, const QVariantList& values = {});

    std::shared_ptr<Connection> m_connection;
    PasswordCost m_passwordCost;
};

} // namespace dao::sqlite
