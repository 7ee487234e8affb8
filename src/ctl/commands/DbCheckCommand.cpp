#include "core/texts/FormatMessage.h"
#include "ctl/commands/AccountOptions.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "dao/Maintenance.h"

namespace {

int Run(const Request& request)
{
    const QList<dao::Finding> findings = dao::CheckDatabase(AccountOptions::TargetOf(request));
    bool failed = false;
    for (const dao::Finding& finding : findings) {
        const bool isError = finding.severity == dao::Finding::Severity::Error;
        failed = failed || isError;
        Console::PrintError(QStringLiteral("%1: %2").arg(
            isError ? "error" : "warning", FormatMessage(request.strings, finding.textId, finding.values)));
    }
    if (findings.isEmpty())
        Console::Print(QStringLiteral("%1: no problems found").arg(AccountOptions::ShownTarget(request)));
    return failed ? exitFailed : exitOk;
}

} // namespace

Command DbCheckCommand()
{
    return {
        .words = "db check",
        .synopsis = "TARGET",
        .summary = "examine a database and its accounts",
        .help =
            AccountOptions::AboutTargetWithUser() +
            R"(Nothing is changed, and no account's password is needed. Of files both are read; on a server
USER has to be one that may read everything. Findings go to standard error. The exit code is 1
when one of them is an error, 0 when there are only warnings.)",
        .options = {},
        .fewestArguments = 1,
        .mostArguments = 1,
        .run = Run};
}
