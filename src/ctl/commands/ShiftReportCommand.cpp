// The command "shift report".

#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/LogOptions.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Console.h"
#include "exchange/OutputFile.h"
#include "logbook/query/LogLines.h"
#include "logbook/query/ShiftLines.h"

namespace {

void Print(const QString& line)
{
    Console::Print(LogLines::Printable(line));
}

// Each column as wide as its widest cell.
void PrintTable(const QList<QStringList>& rows)
{
    QList<qsizetype> widths;
    for (const QStringList& row : rows)
        for (qsizetype column = 0; column < row.size(); ++column)
            if (column < widths.size())
                widths[column] = std::max(widths[column], row[column].size());
            else
                widths.append(row[column].size());
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype column = 0; column < row.size(); ++column)
            line += row[column].leftJustified(widths[column] + 2);
        Print(line.trimmed());
    }
}

int Report(const Request& request)
{
    const QDateTime since = LogOptions::TimeOf(request, "from");
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QDateTime until = request.options.isSet("to") ? LogOptions::TimeOf(request, "to") : now;
    if (!since.isValid())
        throw UsageError(QStringLiteral("--from is missing: when the shift began"));
    if (since >= until)
        throw UsageError(QStringLiteral("--from is not before --to"));
    const QString path = request.options.value("csv");
    if (request.options.isSet("csv") && path.isEmpty())
        throw UsageError(QStringLiteral("--csv names no file"));
    PasswordReader passwords(request.options.isSet("password-stdin"));
    const auto workspace = AccountOptions::OpenAs(request.options.value("as"), request, passwords);
    const LogFacts facts = LogOptions::FactsOf(request, workspace->Database());
    const ShiftReport report = ShiftReport::Read(workspace->Database(), facts, since, until);
    if (!path.isEmpty())
        WriteNewFile(path, ShiftLines::Csv(report));
    const ShiftLines lines(request.strings);
    Print(lines.Title(report));
    for (const QString& line : lines.Summary(report))
        Print(line);
    if (report.Waits().empty())
        return exitOk;
    Console::Print({});
    QList<QStringList> rows{lines.Headings()};
    for (const ShiftWait& wait : report.Waits())
        rows.append(lines.Cells(wait));
    PrintTable(rows);
    return exitOk;
}

} // namespace

Command ShiftReportCommand()
{
    return {
        .words = "shift report",
        .synopsis =
            "TARGET --from TIME [--to TIME] [--csv FILE] [--radio NAME] [--as NAME] [--password-stdin]",
        .summary = "say what came in a shift and how it was answered",
        .help =
            AccountOptions::AboutTarget() +
            "Prints what came and went between the two times, who waited for an operator, who took it and\n"
            "when, and what was open before and after. --csv writes it into a new file as well, for\n"
            "spreadsheets: a line for each count and for each wait.\n" +
            LogOptions::About(),
        .options = {{"from", "the beginning of the shift", "TIME"},
                    {"to", "its end, exclusive (now)", "TIME"},
                    {"csv", "a file that does not exist yet", "FILE"},
                    {"radio", "the console's radio, callsign or number: for the direction in old records",
                     "NAME"},
                    AccountOptions::ActingAccount(),
                    AccountOptions::PasswordFromStdin()},
        .fewestArguments = 1,
        .mostArguments = 1,
        .run = Report};
}
