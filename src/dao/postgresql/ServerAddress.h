#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

namespace dao::postgresql {

// Where a database is on its server or servers, from "postgresql://host[:port]/name?option=value", libpq's
// own form. Several hosts are tried in their order; the first that can be written to is taken.
class ServerAddress {
public:
    using Option = QPair<QByteArray, QByteArray>;

    // Kind::BadServerAddress for what libpq does not understand and for an address without a database.
    static ServerAddress Parse(const QString& target);

    const QString& Database() const { return m_database; }
    // The address as it may be shown: without user and password.
    const QString& Shown() const { return m_shown; }
    // For each host what libpq needs to reach it, without database, user and password.
    const QList<QList<Option>>& Hosts() const { return m_hosts; }
    // User and password of the address; both may be empty. Only the commands of an administrator of the
    // server use them, an operator's are asked for.
    const QByteArray& User() const { return m_user; }
    const QByteArray& Password() const { return m_password; }

private:
    QString m_database;
    QString m_shown;
    QList<QList<Option>> m_hosts;
    QByteArray m_user;
    QByteArray m_password;
};

} // namespace dao::postgresql
