// The commands "status export" and "status import".

#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/ImportRun.h"
#include "ctl/program/Console.h"
#include "exchange/OutputFile.h"
#include "exchange/StatusImport.h"

namespace {

int Export(const Request& request)
{
    const QString path = ImportRun::FileOf(request);
    const auto workspace = ImportRun::Open(request);
    int count = 0;
    WriteNewFile(path, StatusImport::Text(workspace->Database(), count));
    Console::Print(QStringLiteral("Exported %1 lines").arg(count));
    return exitOk;
}

int Import(const Request& request)
{
    CsvTable table = CsvTable::Read(ImportRun::FileOf(request), StatusImport::Columns(), request.strings);
    const auto workspace = ImportRun::Open(request);
    StatusImport import(workspace->Database(), std::move(table), request.strings);
    return ImportRun::Run(request, *workspace, import);
}

} // namespace

Command StatusExportCommand()
{
    return {.words = "status export",
            .synopsis = "TARGET FILE.csv [--as NAME] [--password-stdin]",
            .summary = "write the status messages to a file",
            .help = AccountOptions::AboutTarget() +
                    R"(FILE.csv must not exist yet; it is written in UTF-8 with the columns code, in, out and
emergency. Asks for the password of the account that does it.)",
            .options = ImportRun::ExportOptions(),
            .fewestArguments = 2,
            .mostArguments = 2,
            .run = Export};
}

Command StatusImportCommand()
{
    return {.words = "status import",
            .synopsis = "TARGET FILE.csv [--skip-bad] [--as NAME] [--password-stdin]",
            .summary = "read status messages from a file",
            .help =
                AccountOptions::AboutTarget() +
                R"(FILE.csv is UTF-8, its first line naming the columns code (0..31), in, out and, if wanted,
emergency (yes or no) in any order. A message takes the place of the one with its code, and keeps
its mark of an emergency without that column; others stay. All lines are checked first, and nothing
is imported unless all are good or --skip-bad is given. Asks for the password of the account that
does it.)",
            .options = ImportRun::ImportOptions(),
            .fewestArguments = 2,
            .mostArguments = 2,
            .run = Import};
}
