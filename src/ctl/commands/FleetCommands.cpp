// The commands "fleet export" and "fleet import".

#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/ImportRun.h"
#include "ctl/program/Console.h"
#include "exchange/OutputFile.h"
#include "numbering/FleetImport.h"
#include "numbering/FleetPlanFile.h"

#include <algorithm>

namespace {

using ImportRun::FileOf;
using ImportRun::Open;

int Export(const Request& request)
{
    const QString path = FileOf(request);
    const auto workspace = Open(request);
    const std::vector<FleetRecord> plan = FleetPlanTable(workspace->Database()).Read();
    WriteNewFile(path, FormatFleetPlan(plan));
    Console::Print(QStringLiteral("Exported %1 fleets").arg(plan.size()));
    return exitOk;
}

// All fleets or none.
int Import(const Request& request)
{
    CsvTable table = CsvTable::Read(FileOf(request), FleetPlanColumns(), request.strings);
    const auto workspace = Open(request);
    const auto others =
        request.options.isSet("replace") ? FleetImport::Others::Remove : FleetImport::Others::Stay;
    FleetImport import(workspace->Database(), std::move(table), others, request.strings);
    const std::vector<ImportLine> lines = ImportRun::Run(request, *workspace, import, false);
    const auto count = [&](ImportOutcome outcome) {
        return std::count_if(lines.begin(), lines.end(),
                             [&](const ImportLine& line) { return line.outcome == outcome; });
    };
    const auto added = count(ImportOutcome::Added);
    const auto replaced = count(ImportOutcome::Changed) + count(ImportOutcome::Unchanged);
    Console::Print(QStringLiteral("Imported %1 fleets: %2 new, %3 replaced, %4 removed")
                       .arg(added + replaced)
                       .arg(added)
                       .arg(replaced)
                       .arg(count(ImportOutcome::Removed)));
    return exitOk;
}

} // namespace

Command FleetExportCommand()
{
    return {.words = "fleet export",
            .synopsis = "TARGET FILE.csv [--as NAME] [--password-stdin]",
            .summary = "write the MPT1343 fleet plan to a file",
            .help =
                AccountOptions::AboutTarget() +
                R"(FILE.csv must not exist yet; it is written in UTF-8 with the columns type, digits, prefix,
base_ident, max_ident, fleet_name and notes, which "fleet import" and "dial --plan" read. Asks
for the password of the account that does it.)",
            .options = {AccountOptions::ActingAccount(), AccountOptions::PasswordFromStdin()},
            .fewestArguments = 2,
            .mostArguments = 2,
            .run = Export};
}

Command FleetImportCommand()
{
    return {.words = "fleet import",
            .synopsis = "TARGET FILE.csv [--replace] [--as NAME] [--password-stdin]",
            .summary = "read the MPT1343 fleet plan from a file",
            .help =
                AccountOptions::AboutTarget() +
                R"(FILE.csv is UTF-8, its first line naming the columns in any order: type (units or groups),
digits (2 or 3), prefix (0..127), base_ident, max_ident, fleet_name, notes. A fleet takes the
place of the one with its name; with --replace fleets that are not in the file are removed. Each
fleet has to pass the checks of the plan's editor; either all are imported or none. Asks for the
password of the account that does it.)",
            .options = {QCommandLineOption("replace", "remove the fleets that are not in the file"),
                        AccountOptions::ActingAccount(), AccountOptions::PasswordFromStdin()},
            .fewestArguments = 2,
            .mostArguments = 2,
            .run = Import};
}
