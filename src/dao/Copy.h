#pragma once

#include "dao/base/Location.h"
#include <QList>
#include <QString>
#include <QStringList>

namespace dao {

// What CopyDatabase carried over.
struct CopyReport {
    struct Table {
        QString name;
        qlonglong records;
    };
    QList<Table> tables;
    // Passwords cannot be taken from one kind of place to the other: these accounts are let in only after an
    // administrator has reset theirs.
    QStringList withoutPassword;
    // Likewise, but files keep what a server needs to let them in again: a superuser of it was asked.
    QStringList serverPassword;
};

// Makes a new database at `to` with all records, accounts and groups of `from`; one of the two is on a
// server. `admin` is an administrator of `from` and keeps the password. What was written is read back and
// compared. What is changed in `from` meanwhile is not carried over; of files nobody may change any. On
// failure there is nothing at `to`. Kind::WrongPassword, Kind::NotPermitted, the kinds of OpenWorkspace and
// CreateDatabase; Kind::Damaged when the copy differs.
CopyReport CopyDatabase(const Location& from, const Location& to, const QString& admin,
                        const QString& password);

} // namespace dao
