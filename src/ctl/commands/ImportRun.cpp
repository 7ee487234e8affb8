#include "ctl/commands/ImportRun.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Console.h"
#include "dao/Transaction.h"
#include "exchange/TextIds.h"

#include <algorithm>

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

std::vector<ImportLine> Run(const Request& request, dao::Workspace& workspace, TableImport& import,
                            bool leaveOutBad)
{
    // Locked from here on, so that the lines are stored into what they were checked against.
    dao::Transaction transaction(workspace);
    if (const QString notice = import.Notice(); !notice.isEmpty())
        Console::PrintError(QStringLiteral("veltorkynctl: %1").arg(notice));
    const std::vector<ImportLine> lines = import.Check();
    int bad = 0;
    for (const ImportLine& line : lines) {
        if (line.outcome != ImportOutcome::Refused)
            continue;
        ++bad;
        Console::PrintError(FormatMessage(request.strings, ExchangeText::ProblemOfLine,
                                          {FileOf(request), QString::number(line.line), line.reason}));
    }
    if (bad > 0 && !leaveOutBad)
        throw Error(
            ErrorCode::General,
            QStringLiteral("%1 of %2 lines are bad, nothing was imported").arg(bad).arg(lines.size()));
    import.Store();
    transaction.Commit();
    return lines;
}

int Run(const Request& request, dao::Workspace& workspace, TableImport& import)
{
    const std::vector<ImportLine> lines = Run(request, workspace, import, request.options.isSet("skip-bad"));
    const auto bad = std::count_if(lines.begin(), lines.end(), [](const ImportLine& line) {
        return line.outcome == ImportOutcome::Refused;
    });
    QString done = QStringLiteral("Imported %1 lines").arg(static_cast<qsizetype>(lines.size()) - bad);
    if (bad > 0)
        done += QStringLiteral(", left out %1").arg(bad);
    Console::Print(done);
    return exitOk;
}

} // namespace ImportRun
