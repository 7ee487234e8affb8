#pragma once

#include "dao/Location.h"
#include <QList>
#include <QString>
#include <QStringList>

namespace dao {

// One thing that CheckDatabase found: a catalogue sentence and the values for its placeholders.
struct Finding {
    enum class Severity { Warning, Error };

    Severity severity;
    int textId;
    QStringList values;
};

// Examines both files without changing them and without a password: readable, sound, of a known schema
// version, belonging together, complete in tables, indexes and stored queries, at least one administrator,
// profiles and accounts in step. Empty when all is well. Never throws for what it finds.
QList<Finding> CheckDatabase(const Location& location);

// Copies both files as they are at one moment. Others can go on reading; who wants to write waits until it is
// done. Kind::FileExists when a target exists; on failure no target is left.
void BackupDatabase(const Location& from, const Location& to);

// What MigrateDatabase did. The versions are those of the database; `copies` lists the files copied before.
struct MigrationReport {
    int fromVersion;
    int toVersion;
    QStringList copies;
};

// Brings both files to the schema of this program; opening a workspace does the same. Kind::MigrationFailed
// leaves the files as they were.
MigrationReport MigrateDatabase(const Location& location);

} // namespace dao
