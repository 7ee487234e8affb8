#pragma once

#include "dao/base/AccountStore.h"
#include "dao/postgresql/Connection.h"
#include <memory>

namespace dao::postgresql {

// What the server stores instead of a password; made here, so that the password itself never crosses the
// wire.
QByteArray PasswordVerifier(ServerLink& link, const QByteArray& role, const QString& password);

// The accounts of a database on a server. It is the schema's functions that change them and check the rights.
class Accounts : public AccountStore {
public:
    Accounts(std::shared_ptr<Connection> connection, const QString& ownName);

    void RequireAdministrator() override;
    QStringList UserNames() override;
    std::optional<Account> Find(const QString& user) override;
    QStringList Groups() override;
    QStringList GroupsOf(const QString& user) override;
    bool IsMember(const QString& user, const QString& group) override;
    QHash<QString, QStringList> Memberships() override;
    // What every session asks when it begins.
    static QList<Request> FirstRequests();
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
    // Calls one of the schema's functions for accounts. What it refuses is raised with the names of user and
    // group.
    void Call(const QString& call, const QVariantList& values, const QString& user, const QString& group);
    QStringList Column(const QString& sql, const QVariantList& values = {});

    std::shared_ptr<Connection> m_connection;
};

} // namespace dao::postgresql
