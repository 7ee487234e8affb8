#include "ctl/commands/AccountOptions.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "dao/Maintenance.h"

namespace {

// A line for each tenth that is done.
dao::MigrationProgress Tenths()
{
    return [last = QString()](const QString& database, int percent) mutable {
        const QString line = QStringLiteral("%1: %2 %").arg(database).arg(percent / 10 * 10);
        if (line == last)
            return;
        last = line;
        Console::Print(line);
    };
}

int Run(const Request& request)
{
    const dao::MigrationReport report = dao::MigrateDatabase(AccountOptions::TargetOf(request), Tenths());
    if (report.fromVersion == report.toVersion)
        Console::Print(QStringLiteral("The schema is up to date (%1)").arg(report.toVersion));
    else
        Console::Print(
            QStringLiteral("Schema %1 is now schema %2").arg(report.fromVersion).arg(report.toVersion));
    for (const QString& copy : report.copies)
        Console::Print(QStringLiteral("As it was before: %1").arg(copy));
    return exitOk;
}

} // namespace

Command DbMigrateCommand()
{
    return {.words = "db migrate",
            .synopsis = "TARGET",
            .summary = "bring a database to the schema of this version",
            .help =
                AccountOptions::AboutTargetWithUser() +
                R"(Files are copied beside themselves before; opening them with the console does the same. A
database on a server is migrated only by this command, by a USER that may act as its owner; back
it up with pg_dump before.)",
            .options = {},
            .fewestArguments = 1,
            .mostArguments = 1,
            .run = Run};
}
