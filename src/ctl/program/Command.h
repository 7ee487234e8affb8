#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QList>
#include <QString>
#include <QStringList>
#include <stdexcept>

struct IStringSource;

// Exit codes of the program.
enum ExitCode {
    exitOk = 0,
    exitFailed = 1,         // the reason is on standard error
    exitWrongArguments = 2, // so is what would have been right
};

// What a command was called with.
struct Request {
    const QCommandLineParser& options;
    QStringList arguments; // without the command's own words; as many as the command asks for
    const IStringSource& strings;
};

// Thrown by a command for arguments that only it can judge.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const QString& reason) : std::runtime_error(reason.toStdString()) {}
};

// One command, such as "db create". What it throws besides UsageError is described and ends in exitFailed.
struct Command {
    QString words;
    QString synopsis; // arguments and options
    QString summary;  // for the overview
    QString help;     // everything else that its user has to know
    QList<QCommandLineOption> options;
    int fewestArguments = 0;
    int mostArguments = 0; // -1: any number
    int (*run)(const Request& request) = nullptr;
};

Command DbCreateCommand();
Command DbCheckCommand();
Command DirectoryExportCommand();
Command DirectoryImportCommand();
Command StatusExportCommand();
Command StatusImportCommand();
Command DbMigrateCommand();
Command DbCopyCommand();
Command DbBackupCommand();
Command DbRestoreCommand();
Command UserAddCommand();
Command UserListCommand();
Command UserPasswordCommand();
Command UserRecoverCommand();
Command SettingsShowCommand();
Command SettingsResetCommand();
Command DialCommand();
Command FleetExportCommand();
Command FleetImportCommand();
Command CatalogueCheckCommand();
Command TraceExplainCommand();
Command RadioCheckCommand();
Command LogShowCommand();
Command LogExportCommand();
Command LogFollowCommand();
Command LogVerifyCommand();
Command LogReceiptCommand();
Command ShiftReportCommand();
