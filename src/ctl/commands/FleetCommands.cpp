// The commands "fleet export" and "fleet import".

#include "core/texts/Errors.h"
#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/ImportRun.h"
#include "ctl/files/CsvReader.h"
#include "ctl/files/FleetPlanFile.h"
#include "ctl/files/OutputFile.h"
#include "ctl/program/Console.h"
#include "dao/Transaction.h"
#include "numbering/FleetPlanTable.h"

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

auto Named(const QString& name)
{
    return [name](const FleetRecord& record) { return record.name == name; };
}

// The plan with the rows of the file in it, each in the place of the one with its name.
std::vector<FleetRecord> Merged(std::vector<FleetRecord> plan, const std::vector<FleetPlanRow>& rows,
                                const QString& path)
{
    QStringList names;
    for (const FleetPlanRow& row : rows) {
        const QString& name = row.record.name;
        if (names.contains(name) && !name.isEmpty())
            RaiseLineError(path, row.line, QStringLiteral("the fleet name \"%1\" comes twice").arg(name));
        names.append(name);
        const auto same = std::find_if(plan.begin(), plan.end(), Named(name));
        if (same == plan.end())
            plan.push_back(row.record);
        else
            *same = row.record;
    }
    return plan;
}

// Every row of the file has to pass the checks of the plan's editor, against the whole new plan.
void CheckRows(const std::vector<FleetRecord>& plan, const std::vector<FleetPlanRow>& rows,
               FleetPlanContext context, const Request& request)
{
    for (const FleetPlanRow& row : rows) {
        context.others = plan;
        std::erase_if(context.others, Named(row.record.name));
        if (const auto refusal = CheckFleetEntry(ToEntry(row.record), context, request.strings))
            RaiseLineError(FileOf(request), row.line, refusal->text);
    }
}

struct ImportCounts {
    int added = 0;
    int changed = 0;
    int removed = 0;
};

ImportCounts ImportRows(dao::Database& database, const std::vector<FleetPlanRow>& rows,
                        const Request& request)
{
    ImportCounts counts;
    FleetPlanTable table(database);
    FleetPlanContext context = table.ContextFor(std::nullopt);
    const std::vector<FleetRecord> before = context.others;
    const bool replace = request.options.isSet("replace");
    CheckRows(Merged(replace ? std::vector<FleetRecord>() : before, rows, FileOf(request)), rows, context,
              request);
    for (const FleetRecord& record : before) {
        const bool inFile = std::any_of(rows.begin(), rows.end(), [&](const FleetPlanRow& row) {
            return row.record.name == record.name;
        });
        if (replace && !inFile) {
            table.Delete(record.name);
            ++counts.removed;
        }
    }
    for (const FleetPlanRow& row : rows) {
        if (std::any_of(before.begin(), before.end(), Named(row.record.name))) {
            table.Change(row.record.name, row.record);
            ++counts.changed;
        } else {
            table.Add(row.record);
            ++counts.added;
        }
    }
    return counts;
}

// All rows or none.
int Import(const Request& request)
{
    const std::vector<FleetPlanRow> rows = ReadFleetPlan(FileOf(request), request.strings);
    const auto workspace = Open(request);
    dao::Transaction transaction(*workspace);
    const ImportCounts counts = ImportRows(workspace->Database(), rows, request);
    transaction.Commit();
    Console::Print(QStringLiteral("Imported %1 fleets: %2 new, %3 replaced, %4 removed")
                       .arg(rows.size())
                       .arg(counts.added)
                       .arg(counts.changed)
                       .arg(counts.removed));
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
