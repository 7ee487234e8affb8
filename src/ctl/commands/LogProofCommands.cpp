// The commands "log verify" and "log receipt".

#include "core/base/AppPaths.h"
#include "core/eventlog/ChainCheck.h"
#include "core/eventlog/ConsoleName.h"
#include "core/eventlog/LogHeads.h"
#include "core/eventlog/LogKey.h"
#include "core/texts/Errors.h"
#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "dao/tables/EventTable.h"
#include "exchange/InputFile.h"
#include "exchange/OutputFile.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace {

constexpr int PageSize = 2000;

using Promise = ChainCheck::Promise;

std::unique_ptr<dao::Workspace> Open(const Request& request)
{
    PasswordReader passwords(request.options.isSet("password-stdin"));
    return AccountOptions::OpenAs(request.options.value("as"), request, passwords);
}

QString Plural(qlonglong count, const QString& what)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(what, count == 1 ? QString() : QStringLiteral("s"));
}

QString Shown(const QDateTime& time)
{
    return time.toUTC().toString(Qt::ISODate);
}

// Texts of a database that somebody may have changed reach a terminal.
QString Safe(const QString& text)
{
    QString safe = text;
    for (QChar& sign : safe)
        if (!sign.isPrint())
            sign = u'?';
    return safe;
}

// Keys, and what lies beside them: whose consoles they are, and how far these had come.
struct Witness {
    std::vector<LogChain> keys;
    QStringList identities;
    QList<Promise> promises;

    void AddKey(const QString& file, const QString& databaseId)
    {
        keys.emplace_back(LogKey::Read(file), databaseId);
        const QString folder = QFileInfo(file).absolutePath();
        if (QFileInfo::exists(QDir(folder).filePath(QStringLiteral("console-identity"))))
            identities.append(ConsoleName(folder, 1).section(u'-', -2, -2));
        for (const LogHeads::Kept& kept : LogHeads::Read(folder, databaseId))
            promises.append(
                {kept.head, kept.isOld ? QStringLiteral("the console itself, before its numbers went down")
                                       : QStringLiteral("the console itself")});
    }
    void AddReceipt(const QString& file, const QString& source, const QString& databaseId)
    {
        const auto receipt = dao::LogReceipt::Parse(QString::fromUtf8(ReadInputFile(file)));
        if (!receipt)
            throw Error(ErrorCode::General, QStringLiteral("%1: this is no receipt of a log").arg(file));
        if (receipt->database != databaseId.toLower())
            throw Error(ErrorCode::General,
                        QStringLiteral("%1: this is the receipt of another database").arg(file));
        for (const dao::LogHead& head : receipt->heads)
            promises.append({head, source});
    }
    // One backup, or a folder of several, of which those of other databases are left out.
    void AddBackups(const QString& folder, const QString& databaseId)
    {
        const QString own = QDir(folder).filePath(dao::LogReceipt::FileName);
        if (QFileInfo::exists(own))
            return AddReceipt(own, QStringLiteral("a backup"), databaseId);
        int found = 0;
        for (const QFileInfo& entry :
             QDir(folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
            const QString file = QDir(entry.filePath()).filePath(dao::LogReceipt::FileName);
            if (!QFileInfo::exists(file))
                continue;
            const auto receipt = dao::LogReceipt::Parse(QString::fromUtf8(ReadInputFile(file)));
            if (receipt && receipt->database != databaseId.toLower())
                continue;
            AddReceipt(file, QStringLiteral("the backup %1").arg(entry.fileName()), databaseId);
            ++found;
        }
        if (found == 0)
            throw Error(ErrorCode::General,
                        QStringLiteral("%1: no backup of this database with a receipt").arg(folder));
    }
};

Witness WitnessOf(const Request& request, const QString& databaseId)
{
    Witness witness;
    const QString own = LogKey::FileIn(AppPaths::DataFolder());
    if (QFileInfo::exists(own))
        witness.AddKey(own, databaseId);
    for (const QString& file : request.options.values("key"))
        witness.AddKey(file, databaseId);
    if (request.options.isSet("backup"))
        witness.AddBackups(request.options.value("backup"), databaseId);
    for (const QString& file : request.options.values("receipt"))
        witness.AddReceipt(file, QStringLiteral("the receipt %1").arg(QFileInfo(file).fileName()),
                           databaseId);
    return witness;
}

void PrintFinding(const ChainCheck::Finding& finding, const QString& what, const QString& record = "record")
{
    if (finding.count > 0)
        Console::Print(QStringLiteral("  WRONG: %1 %2, first: number %3 (%4 %5 of %6)")
                           .arg(Plural(finding.count, "record"), what)
                           .arg(finding.first.number)
                           .arg(record)
                           .arg(finding.first.record)
                           .arg(Shown(finding.first.time)));
}

void PrintConsole(const ChainCheck::Console& console)
{
    QString state = QStringLiteral("no record has a chain");
    if (console.begin)
        state = QStringLiteral("chained from number %1 on (record %2 of %3)")
                    .arg(console.begin->number)
                    .arg(console.begin->record)
                    .arg(Shown(console.begin->time));
    if (console.begin && !console.isOurs)
        state += QStringLiteral(", NOT CHECKED: its key (%1) is not here, only the numbers were looked at")
                     .arg(Safe(console.check));
    Console::Print(QStringLiteral("%1: %2, up to number %3, %4")
                       .arg(Safe(console.name), Plural(console.records, "record"))
                       .arg(console.last.number)
                       .arg(state));
    if (console.begin && console.older > 0)
        Console::Print(QStringLiteral("  %1 older than the chain, which nothing protects")
                           .arg(Plural(console.older, "record")));
    PrintFinding(console.changed, "changed, or put in without the key");
    PrintFinding(console.takenOut, "taken out", "before record");
    PrintFinding(console.unproved, "behind a gap that cannot be proved");
    PrintFinding(console.putIn, "put in");
    PrintFinding(console.moved, "out of order");
    PrintFinding(console.unchained, "whose chain was taken away, or put in without one");
    PrintFinding(console.otherKey, "with another key");
}

void PrintPromise(const ChainCheck& check, const Promise& promise)
{
    const dao::LogHead& head = promise.head;
    const QString said = QStringLiteral("%1 had come to number %2, says %3 (%4)")
                             .arg(Safe(head.console))
                             .arg(head.number)
                             .arg(Safe(promise.source), Shown(head.time));
    switch (promise.state) {
    case Promise::State::Kept:
        break;
    case Promise::State::Missing:
        Console::Print(
            QStringLiteral("WRONG: %1: cut off, or lost with a server; the record is not there").arg(said));
        break;
    case Promise::State::Other:
        Console::Print(QStringLiteral("WRONG: %1: another record has this number now").arg(said));
        break;
    case Promise::State::Restored:
        Console::Print(
            QStringLiteral("%1: not there since the restore of %2; the backup had come to number %3")
                .arg(said, Shown(check.Restores()[promise.restore].place.time))
                .arg(check.Restores()[promise.restore].numbers.value(head.console)));
        break;
    }
}

void PrintReport(const ChainCheck& check)
{
    for (const ChainCheck::Console& console : check.Consoles())
        PrintConsole(console);
    if (check.OldRecords() > 0)
        Console::Print(QStringLiteral("%1 of no console, older than all chains, which nothing protects")
                           .arg(Plural(check.OldRecords(), "record")));
    if (const auto& nobodys = check.Nobodys(); nobodys.count > 0)
        Console::Print(
            QStringLiteral("WRONG: %1 of no console, put in or of an older program, first: record %2 of %3")
                .arg(Plural(nobodys.count, "record"))
                .arg(nobodys.first.record)
                .arg(Shown(nobodys.first.time)));
    for (const ChainCheck::Restore& restore : check.Restores())
        Console::Print(QStringLiteral("%1 (record %2 of %3)%4")
                           .arg(Safe(restore.text))
                           .arg(restore.place.record)
                           .arg(Shown(restore.place.time),
                                restore.isProven
                                    ? QString()
                                    : QStringLiteral(", NOT PROVEN: the key of who did it is not here")));
    for (const Promise& promise : check.Promises())
        PrintPromise(check, promise);
}

int Verify(const Request& request)
{
    const auto workspace = Open(request);
    dao::Database& database = workspace->Database();
    // How far they had come is read before what there is.
    Witness witness = WitnessOf(request, database.Id());
    const qlonglong newest = dao::EventIndex::StateOf(database).newest;
    ChainCheck check(std::move(witness.keys), witness.identities, witness.promises);
    qlonglong last = 0;
    for (bool more = true; more;) {
        const auto page = dao::EventTable::ReadChained(database, last, newest, PageSize);
        for (const dao::EventRecord& record : page)
            check.Take(record);
        more = !page.empty();
        last = more ? page.back().id : last;
    }
    check.End();
    PrintReport(check);
    const QList<ChainCheck::Console> consoles = check.Consoles();
    const auto isProved = [](const ChainCheck::Console& console) { return console.begin && console.isOurs; };
    const auto isStrange = [](const ChainCheck::Console& console) {
        return console.begin && !console.isOurs;
    };
    const bool anyProved = std::any_of(consoles.begin(), consoles.end(), isProved);
    const bool anyStrange = std::any_of(consoles.begin(), consoles.end(), isStrange);
    if (!check.IsWhole()) {
        Console::Print(QStringLiteral("The log is NOT whole"));
        return exitFailed;
    }
    if (anyStrange && !anyProved && check.Promises().isEmpty()) {
        Console::Print(QStringLiteral("Nothing could be checked but the numbers: no key is here (--key)"));
        return exitFailed;
    }
    Console::Print(anyStrange ? QStringLiteral("What could be checked is whole")
                              : QStringLiteral("The log is whole"));
    return exitOk;
}

int Receipt(const Request& request)
{
    const auto workspace = Open(request);
    const QString text =
        dao::EventTable::Receipt(workspace->Database(), QDateTime::currentDateTimeUtc()).Text();
    if (request.arguments.size() > 1)
        WriteNewFile(request.arguments[1], text);
    else
        Console::Print(text.chopped(1));
    return exitOk;
}

} // namespace

Command LogVerifyCommand()
{
    return {
        .words = "log verify",
        .synopsis =
            "TARGET [--key FILE]... [--backup FOLDER] [--receipt FILE]... [--as NAME] [--password-stdin]",
        .summary = "prove that the log is whole, or say what was done to it",
        .help =
            AccountOptions::AboutTarget() +
            R"(Each console ties its records together with a key of its account of the computer, the file log-key
in ~/.local/share/VeltorKyn. With that key this tells what somebody without it has changed, taken out or put
in. The key of the account that runs the command is used, and those that --key names; consoles of others
are named as not checked. What lies beside a key says how far its consoles had come; so do a backup, or a
folder of them, and a receipt of "log receipt". What is older than the chain, and what is missing since
a restore whose record is proven, is named and not wrong.
The exit code is 0 when nothing is wrong, and 1 otherwise.)",
        .options = {AccountOptions::ActingAccount(),
                    AccountOptions::PasswordFromStdin(),
                    {"key", "a key of another account", "FILE"},
                    {"backup", "a backup, or the folder of the backups", "FOLDER"},
                    {"receipt", "what \"log receipt\" has printed", "FILE"}},
        .fewestArguments = 1,
        .mostArguments = 1,
        .run = Verify};
}

Command LogReceiptCommand()
{
    return {
        .words = "log receipt",
        .synopsis = "TARGET [FILE] [--as NAME] [--password-stdin]",
        .summary = "print how far the log has come, to be kept elsewhere",
        .help =
            AccountOptions::AboutTarget() +
            R"(A line for each console: its last number, and 24 digits that prove all its records up to there. Keep it
where nobody who can reach the database can: on paper, with somebody else. "log verify --receipt" compares
it; typed in again it need not have the same blanks. FILE must not exist yet.)",
        .options = {AccountOptions::ActingAccount(), AccountOptions::PasswordFromStdin()},
        .fewestArguments = 1,
        .mostArguments = 2,
        .run = Receipt};
}
