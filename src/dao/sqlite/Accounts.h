#pragma once

#include "dao/Workspace.h"
#include "dao/sqlite/Connection.h"
#include <memory>

namespace dao::sqlite {

// Who is working on which files; shared by all account objects of a workspace.
struct Session {
    std::shared_ptr<Connection> connection; // the workgroup file is attached to it as "workgroup"
    QString userName;
    PasswordCost passwordCost;

    bool IsOwn(const QString& user) const;
    // Looked up each time, since another workstation may have changed it. Kind::NotPermitted.
    void RequireAdministrator() const;
};

// The account's name as spelled at its creation. Kind::WrongPassword.
QString CheckLogon(Connection& connection, const QString& user, const QString& password,
                   const PasswordCost& cost);

bool IsMember(Connection& connection, const QString& user, const QString& group);

class SqliteUser : public User {
public:
    // A stored account; `passwordHash` is only there for one that is yet to be appended.
    SqliteUser(std::shared_ptr<Session> session, QString name, QString pid, QByteArray passwordHash);

    QString Name() const override { return m_name; }
    QString Pid() const override { return m_pid; }
    GroupList& Groups() override { return *m_groups; }
    void NewPassword(const QString& oldPassword, const QString& newPassword) override;
    const QByteArray& PasswordHash() const { return m_passwordHash; }

private:
    std::shared_ptr<Session> m_session;
    QString m_name;
    QString m_pid;
    QByteArray m_passwordHash;
    std::unique_ptr<GroupList> m_groups;
};

class SqliteUserList : public UserList {
public:
    explicit SqliteUserList(std::shared_ptr<Session> session) : m_session(std::move(session)) {}

    QStringList Names() const override;
    bool Contains(const QString& name) const override;
    std::unique_ptr<User> Item(const QString& name) const override;
    void Append(const User& user) override;
    void Delete(const QString& name) override;

private:
    std::shared_ptr<Session> m_session;
};

// The groups of the workgroup.
class WorkgroupGroups : public GroupList {
public:
    explicit WorkgroupGroups(std::shared_ptr<Session> session) : m_session(std::move(session)) {}

    QStringList Names() const override;
    bool Contains(const QString& group) const override;
    void Append(const QString& group) override;
    void Delete(const QString& group) override;

private:
    std::shared_ptr<Session> m_session;
};

// The groups of one account.
class UserGroups : public GroupList {
public:
    UserGroups(std::shared_ptr<Session> session, QString user)
        : m_session(std::move(session)),
          m_user(std::move(user))
    {
    }

    QStringList Names() const override;
    bool Contains(const QString& group) const override;
    void Append(const QString& group) override;
    void Delete(const QString& group) override;

private:
    qlonglong AccountId() const;

    std::shared_ptr<Session> m_session;
    QString m_user;
};

} // namespace dao::sqlite
