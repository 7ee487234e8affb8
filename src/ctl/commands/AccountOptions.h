#pragma once

#include "ctl/program/Command.h"
#include "dao/Workspace.h"

#include <memory>

class PasswordReader;

// What the commands about databases and accounts share.
namespace AccountOptions {

inline constexpr auto DefaultAdministrator = "admin";

// --password-stdin
QCommandLineOption PasswordFromStdin();
// --as: the account to act as, "admin" unless given.
QCommandLineOption ActingAccount();

// What help says about TARGET, on a line of its own: where accounts of the database log on, and where a user
// of the server does.
QString AboutTarget();
QString AboutTargetWithUser();

// The database that TARGET, the first argument, names. UsageError when that is empty.
dao::Location TargetOf(const Request& request);

// TARGET as it may be printed: without a password.
QString ShownTarget(const Request& request);

// Opens the database TARGET with the password of `account`, which is asked for.
std::unique_ptr<dao::Workspace> OpenAs(const QString& account, const Request& request,
                                       PasswordReader& passwords);

// Prints which accounts are let in only after an administrator has reset their passwords, if any.
void TellWithoutPassword(const QStringList& accounts);

} // namespace AccountOptions
