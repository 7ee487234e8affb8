#pragma once

#include "ctl/program/Command.h"
#include "dao/Workspace.h"
#include "exchange/TableImport.h"

#include <memory>

// What the commands "... export" and "... import" share: options, the checking of all lines before any is
// stored, and the one transaction.
namespace ImportRun {

QList<QCommandLineOption> ExportOptions();
QList<QCommandLineOption> ImportOptions();

// FILE.csv, the second argument. UsageError when it is empty.
QString FileOf(const Request& request);
// The database TARGET with the account that does it.
std::unique_ptr<dao::Workspace> Open(const Request& request);

// Checks every line and reports each bad one. Unless bad ones are to be left out, one of them ends in Error
// and nothing is stored. Then stores the good lines, all or none, and returns what was done with each.
std::vector<ImportLine> Run(const Request& request, dao::Workspace& workspace, TableImport& import,
                            bool leaveOutBad);
// The same for the commands that have --skip-bad; says how many lines there were. Returns the exit code.
int Run(const Request& request, dao::Workspace& workspace, TableImport& import);

} // namespace ImportRun
