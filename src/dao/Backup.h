#pragma once

#include "dao/Copy.h"
#include "dao/base/Location.h"
#include "dao/tables/EventTable.h"
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <optional>

namespace dao {

// Backups of a database. A folder holds the generations of one or several: each a folder of its own, named
// after the database and its time, with the two files of a whole database, of a server too, and
// a receipt that says how far each console's log had come. A generation gets
// its name when it is complete and was examined, so that one with a name can be trusted.

struct BackupReport : CopyReport {
    QString generation; // path of its folder
};

// Which generations of a database there are in a folder, the oldest first. Empty for a folder that is not
// there.
struct Generation {
    QString path;
    QDateTime time; // UTC
};
QList<Generation> GenerationsIn(const QString& folder, const Location& of);

// Adds a generation to a folder, which is made, for its owner alone, when it is missing. `admin` is an
// administrator of the database. Consoles may go on; of files, who wants to write waits until it is done.
// Kind::CannotCreate, Kind::DiskFull and the kinds of OpenWorkspace and CopyDatabase; Kind::Damaged when the
// copy is not sound. On failure nothing is left, and other generations stay.
BackupReport MakeBackup(const Location& from, const QString& folder, const QDateTime& time,
                        const QString& admin, const QString& password);

// The same for files, by whoever has opened them already.
BackupReport MakeBackupOfFiles(const Location& from, const QString& folder, const QDateTime& time);

// Makes a new database at `to`, files or on a server, of a generation, which is named by its folder or by the
// database file in it and is not changed. `admin` is an administrator in it. Nothing that exists is touched
// (Kind::FileExists); on failure there is nothing at `to`. Its log gets a record of the signer with `note` as
// its text. The kinds of CopyDatabase; Kind::Damaged when the backup is not sound.
CopyReport RestoreBackup(const QString& backup, const Location& to, const QString& admin,
                         const QString& password, const QString& note = {},
                         const EventTable::Signer& signer = {});

} // namespace dao
