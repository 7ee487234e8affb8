#pragma once

#include "ctl/files/CsvTable.h"
#include "ctl/program/Command.h"
#include "dao/Workspace.h"

#include <functional>
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

// Checks every row: `check` gives the reason why one cannot be imported, empty when it can. Reports each bad
// row with its line. Without --skip-bad one bad row ends in Error and nothing is stored. Then stores the good
// rows, all or none, and returns the exit code.
int Run(const Request& request, dao::Workspace& workspace, const CsvTable& table,
        const std::function<QString(const CsvTable::Row&)>& check, const std::function<void()>& store);

} // namespace ImportRun
