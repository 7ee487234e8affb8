#pragma once

#include "dao/base/Location.h"
#include "dao/tables/EventTable.h"
#include <QString>
#include <QStringList>

namespace dao {

// A way back in for whoever has the database itself: the owner of its files, root, or a user of the server
// that may act as the database's owner. No account's password is asked for.

// The accounts in "Admins", sorted.
QStringList AdministratorsOf(const Location& location);

// Gives an account a new password, and the log a record of the signer that says so, with `note` as its text.
// Returns the name as it was spelled at its creation. Kind::NoSuchUser, Kind::BadPassword, Kind::NotOwner,
// the kinds of OpenWorkspace.
QString RecoverAccount(const Location& location, const QString& user, const QString& password,
                       const QString& note, const EventTable::Signer& signer = {});

} // namespace dao
