#pragma once

#include "dao/base/MigrationProgress.h"
#include "dao/base/SchemaScripts.h"
#include "dao/sqlite/Files.h"
#include <QList>
#include <QString>
#include <chrono>

namespace dao::sqlite {

// The scripts compiled into the program, numbered from 1 without a gap.
QList<Migration> MigrationsOf(FileKind kind);

// Builds the newest schema in an empty file, in one transaction.
void BuildSchema(Connection& connection, FileKind kind, const QList<Migration>& migrations,
                 const QString& databaseId);

struct MigrationResult {
    int fromVersion;
    int toVersion;
    QString copy; // the file as it was before; empty when there was nothing to do
};

// Brings a file to the newest version, in one transaction, after copying it to "<path>.v<version>.bak" (or
// "-2.bak" and so on when that exists). Kind::Newer for a file from a newer program; Kind::MigrationFailed
// leaves file as it was, without a copy; Kind::Locked when others keep it. A process that is killed meanwhile
// leaves the file as it was, or migrated.
MigrationResult Migrate(const QString& path, FileKind kind, const QList<Migration>& migrations,
                        std::chrono::milliseconds busyTimeout, const MigrationProgress& told = {});

} // namespace dao::sqlite
