#pragma once

#include "dao/Workspace.h"
#include "dao/postgresql/Connection.h"
#include <memory>

namespace dao::postgresql {

// Who is working on which database; shared by all account objects of a workspace.
struct Session {
    std::shared_ptr<Connection> connection;
    QString userName;

    bool IsOwn(const QString& user) const;
    // Asked each time, since another workstation may have changed it. Kind::NotPermitted.
    void RequireAdministrator() const;
    // Calls one of the schema's functions for accounts, which check the rights themselves. What it refuses is
    // raised with the names of user and group.
    void Call(const QString& call, const QVariantList& values, const QString& user,
              const QString& group) const;
};

// What the server stores instead of a password; made here, so that the password itself never crosses the
// wire.
QByteArray PasswordVerifier(ServerLink& link, const QByteArray& role, const QString& password);

// An account; `verifier` is only there for one that is yet to be appended.
class ServerUser : public User {
public:
    ServerUser(std::shared_ptr<Session> session, QString name, QString pid, QByteArray verifier);

    QString Name() const override { return m_name; }
    QString Pid() const override { return m_pid; }
    GroupList& Groups() override { return *m_groups; }
    void NewPassword(const QString& oldPassword, const QString& newPassword) override;
    const QByteArray& Verifier() const { return m_verifier; }

private:
    std::shared_ptr<Session> m_session;
    QString m_name;
    QString m_pid;
    QByteArray m_verifier;
    std::unique_ptr<GroupList> m_groups;
};

class ServerUserList : public UserList {
public:
    explicit ServerUserList(std::shared_ptr<Session> session) : m_session(std::move(session)) {}

    QStringList Names() const override;
    bool Contains(const QString& name) const override;
    std::unique_ptr<User> Item(const QString& name) const override;
    void Append(const User& user) override;
    void Delete(const QString& name) override;

private:
    std::shared_ptr<Session> m_session;
};

// All groups.
class DatabaseGroups : public GroupList {
public:
    explicit DatabaseGroups(std::shared_ptr<Session> session) : m_session(std::move(session)) {}

    QStringList Names() const override;
    bool Contains(const QString& group) const override;
    void Append(const QString& group) override;
    void Delete(const QString& group) override;

private:
    std::shared_ptr<Session> m_session;
};

} // namespace dao::postgresql
