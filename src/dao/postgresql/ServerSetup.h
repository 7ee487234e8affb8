#pragma once

#include "dao/base/SchemaScripts.h"
#include "dao/postgresql/Connection.h"

namespace dao::postgresql {

// A connection for the administrator of the server: user and password are those of the address, or what libpq
// finds otherwise. `database` empty: that of the address.
std::shared_ptr<Connection> ConnectAsServerAdministrator(const ServerAddress& address,
                                                         const QByteArray& database = {});

// The names of a database's roles, between double quotes.
QString OwnerRole(const QString& database);
QString AdminsRole(const QString& database);
QString UsersRole(const QString& database);

// Kind::NotADatabase for a database that is none of this program.
QList<Request> SchemaRequests(); // what that asks the server
int SchemaVersionOf(Connection& connection);

// Makes the database `address.Database()` with its roles and schema and, unless `adminUser` is empty, a first
// administrator. Needs a role that may make databases and roles. On failure nothing is left.
// Kind::FileExists, Kind::BadDatabaseName, Kind::BadUserName, Kind::BadPassword.
void CreateServerDatabase(const ServerAddress& address, const QString& adminUser,
                          const QString& adminPassword);

// Removes a database and its roles.
void DropServerDatabase(const ServerAddress& address);

// Runs the scripts after version `from` as the owner of the database, within the open transaction. `told` is
// called before each of them.
void RunScripts(Connection& connection, const QString& database, const QList<Migration>& migrations, int from,
                const std::function<void(int done, int steps)>& told);

} // namespace dao::postgresql
