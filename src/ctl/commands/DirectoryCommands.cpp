// The commands "directory export" and "directory import".

#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/ImportRun.h"
#include "ctl/program/Console.h"
#include "dao/Workspace.h"
#include "exchange/DirectoryImport.h"
#include "exchange/OutputFile.h"

namespace {

// Presents an open workspace as the session that shared code expects; it asks nobody and keeps no paths.
class WorkspaceSession : public IDbSession {
public:
    explicit WorkspaceSession(dao::Workspace& workspace) : m_workspace(workspace) {}

    dao::Workspace& Workspace() override { return m_workspace; }
    dao::Database& Database() override { return m_workspace.Database(); }
    QString MakePID(const QString&, const QString&) override { return {}; }
    bool IsOpen() const override { return true; }
    bool IsMemberOf(const QString& group) override
    {
        return m_workspace.Users().Item(m_workspace.UserName())->Groups().Contains(group);
    }
    DatabaseChanges& Changes() override { return m_changes; }
    SessionMemory& Memory() override { return m_memory; }

private:
    dao::Workspace& m_workspace;
    DatabaseChanges m_changes;
    SessionMemory m_memory{*this, m_changes}; // never read: no logon is told
};

int Export(const Request& request)
{
    const QString path = ImportRun::FileOf(request);
    const auto workspace = ImportRun::Open(request);
    int count = 0;
    WriteNewFile(path, DirectoryImport::Text(workspace->Database(), count));
    Console::Print(QStringLiteral("Exported %1 lines").arg(count));
    return exitOk;
}

int Import(const Request& request)
{
    CsvTable table = CsvTable::Read(ImportRun::FileOf(request), DirectoryImport::Columns(), request.strings);
    const auto workspace = ImportRun::Open(request);
    WorkspaceSession session(*workspace);
    DirectoryImport import(workspace->Database(), std::move(table),
                           DirectoryImport::AddressingOf(session, request.strings), request.strings);
    return ImportRun::Run(request, *workspace, import);
}

} // namespace

Command DirectoryExportCommand()
{
    return {.words = "directory export",
            .synopsis = "TARGET FILE.csv [--as NAME] [--password-stdin]",
            .summary = "write the address directory to a file",
            .help =
                AccountOptions::AboutTarget() +
                R"(FILE.csv must not exist yet; it is written in UTF-8 with the columns type, callsign, ident,
name, note, dynamic and position. Asks for the password of the account that does it.)",
            .options = ImportRun::ExportOptions(),
            .fewestArguments = 2,
            .mostArguments = 2,
            .run = Export};
}

Command DirectoryImportCommand()
{
    return {.words = "directory import",
            .synopsis = "TARGET FILE.csv [--skip-bad] [--as NAME] [--password-stdin]",
            .summary = "read the address directory from a file",
            .help = AccountOptions::AboutTarget() +
                    R"(FILE.csv is UTF-8, its first line naming the columns in any order: type (individual or
talkgroup), callsign, ident (the number in full), name (individuals), note, dynamic (yes or no),
position (talkgroups, 1..16). An entry takes the place of the one with its callsign; others
stay. All lines are checked first, as the address editor does, and nothing is imported unless
all are good or --skip-bad is given. Asks for the password of the account that does it.)",
            .options = ImportRun::ImportOptions(),
            .fewestArguments = 2,
            .mostArguments = 2,
            .run = Import};
}
