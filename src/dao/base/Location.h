#pragma once

#include <QString>

namespace dao {

// Where a database and its accounts are. `database` is a file path (SQLite) and `workgroup` the path of the
// file that holds the accounts; or `database` is "postgresql://...", a database on a server, which has its
// accounts itself, and `workgroup` is not used.
struct Location {
    QString database;
    QString workgroup;

    bool operator==(const Location&) const = default;
};

// True for targets that name a database server.
bool IsServerTarget(const QString& database);

// A target, or a text with targets in it, as it may be shown: what stands between "//" and "@" is left out,
// and so is a password among the options.
QString WithoutPassword(QString text);

// The workgroup file that belongs to a database by convention: beside it, same base name, extension "kynw"
// ("/data/site.kyndb" -> "/data/site.kynw"). Empty for an empty path and for a server.
QString WorkgroupFileFor(const QString& database);

// A database with the workgroup file that belongs to it by convention.
Location LocationOf(const QString& database);

} // namespace dao
