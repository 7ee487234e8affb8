#include "ctl/commands/ImportRun.h"

#include "core/texts/Errors.h"
#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Console.h"
#include "dao/Transaction.h"

namespace ImportRun {

QList<QCommandLineOption> ExportOptions()
{
    return {AccountOptions::ActingAccount(), AccountOptions::PasswordFromStdin()};
}

QList<QCommandLineOption> ImportOptions()
{
    return QList<QCommandLineOption>{
               QCommandLineOption("skip-bad", "leave bad lines out instead of importing nothing")} +
           ExportOptions();
}

QString FileOf(const Request& request)
{
    if (request.arguments[1].isEmpty())
        throw UsageError(QStringLiteral("FILE.csv is empty"));
    return request.arguments[1];
}

std::unique_ptr<dao::Workspace> Open(const Request& request)
{
    PasswordReader passwords(request.options.isSet("password-stdin"));
    return AccountOptions::OpenAs(request.options.value("as"), request, passwords);
}

int Run(const Request& request, dao::Workspace& workspace, const CsvTable& table,
        const std::function<QString(const CsvTable::Row&)>& check, const std::function<void()>& store)
{
    // Locked from here on, so that the rows are stored into what they were checked against.
    dao::Transaction transaction(workspace);
    int bad = 0;
    for (const CsvTable::Row& row : table.Rows()) {
        const QString problem = row.fields.isEmpty()
                                    ? QStringLiteral("another number of fields than the heading has")
                                    : check(row);
        if (problem.isEmpty())
            continue;
        ++bad;
        Console::PrintError(
            QStringLiteral("%1, line %2: %3").arg(FileOf(request)).arg(row.line).arg(problem));
    }
    if (bad > 0 && !request.options.isSet("skip-bad"))
        throw Error(
            ErrorCode::General,
            QStringLiteral("%1 of %2 lines are bad, nothing was imported").arg(bad).arg(table.Rows().size()));
    store();
    transaction.Commit();
    QString done = QStringLiteral("Imported %1 lines").arg(table.Rows().size() - bad);
    if (bad > 0)
        done += QStringLiteral(", left out %1").arg(bad);
    Console::Print(done);
    return exitOk;
}

} // namespace ImportRun
