// The commands "status export" and "status import".

#include "core/texts/CsvLine.h"
#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/ImportRun.h"
#include "ctl/files/OutputFile.h"
#include "ctl/program/Console.h"
#include "dao/tables/StatusTable.h"

#include <map>

namespace {

constexpr int LastCode = 31;
const QStringList Columns{"code", "in", "out"};

int Export(const Request& request)
{
    const QString path = ImportRun::FileOf(request);
    const auto workspace = ImportRun::Open(request);
    QString text = CsvLine(Columns);
    int count = 0;
    const auto rows = dao::StatusTable::Open(workspace->Database());
    for (; !rows->Eof(); rows->MoveNext(), ++count) {
        const dao::StatusRecord record = dao::StatusTable::Read(*rows);
        text += CsvLine({QString::number(record.code), record.in, record.out});
    }
    WriteNewFile(path, text);
    Console::Print(QStringLiteral("Exported %1 lines").arg(count));
    return exitOk;
}

// The status messages of a file by their codes.
class StatusImport {
public:
    explicit StatusImport(dao::Database& database)
        : m_database(database),
          m_longest(dao::StatusTable::LongestText(database))
    {
    }

    QString Check(const CsvTable::Row& row)
    {
        bool isNumber = false;
        const int code = row.fields[0].trimmed().toInt(&isNumber);
        if (!isNumber || code < 0 || code > LastCode)
            return QStringLiteral("the code is \"%1\", not a number from 0 to 31").arg(row.fields[0]);
        if (m_rows.contains(code))
            return QStringLiteral("the code %1 comes twice").arg(code);
        for (const int text : {1, 2})
            if (row.fields[text].size() > m_longest)
                return QStringLiteral("\"%1\" has more than %2 characters").arg(Columns[text]).arg(m_longest);
        m_rows.emplace(code, row.fields);
        return {};
    }

    void Store()
    {
        const auto records = dao::StatusTable::Open(m_database);
        for (const auto& [code, fields] : m_rows) {
            records->Seek(code);
            const bool emergency = !records->NoMatch() && dao::StatusTable::Read(*records).emergency;
            dao::StatusTable::Store(*records, {code, fields[1], fields[2], emergency});
        }
    }

private:
    dao::Database& m_database;
    int m_longest;
    std::map<int, QStringList> m_rows;
};

int Import(const Request& request)
{
    const CsvTable table(ImportRun::FileOf(request), Columns);
    const auto workspace = ImportRun::Open(request);
    StatusImport import(workspace->Database());
    return ImportRun::Run(
        request, *workspace, table, [&](const CsvTable::Row& row) { return import.Check(row); },
        [&] { import.Store(); });
}

} // namespace

Command StatusExportCommand()
{
    return {.words = "status export",
            .synopsis = "TARGET FILE.csv [--as NAME] [--password-stdin]",
            .summary = "write the status messages to a file",
            .help =
                AccountOptions::AboutTarget() +
                R"(FILE.csv must not exist yet; it is written in UTF-8 with the columns code, in and out. Asks
for the password of the account that does it.)",
            .options = ImportRun::ExportOptions(),
            .fewestArguments = 2,
            .mostArguments = 2,
            .run = Export};
}

Command StatusImportCommand()
{
    return {
        .words = "status import",
        .synopsis = "TARGET FILE.csv [--skip-bad] [--as NAME] [--password-stdin]",
        .summary = "read status messages from a file",
        .help =
            AccountOptions::AboutTarget() +
            R"(FILE.csv is UTF-8, its first line naming the columns code (0..31), in and out in any order. A
message takes the place of the one with its code; others stay. All lines are checked first, and
nothing is imported unless all are good or --skip-bad is given. Asks for the password of the
account that does it.)",
        .options = ImportRun::ImportOptions(),
        .fewestArguments = 2,
        .mostArguments = 2,
        .run = Import};
}
