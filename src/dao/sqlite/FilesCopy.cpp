#include "dao/sqlite/FilesCopy.h"
#include "dao/base/Names.h"
#include "dao/base/Passwords.h"
#include "dao/sqlite/Accounts.h"
#include "dao/sqlite/Session.h"
#include <QFileInfo>

namespace dao::sqlite {

namespace {

void CopyBoth(const Location& from, const Location& to)
{
    const OpenOptions options;
    NewFile database(to.database);
    NewFile workgroup(to.workgroup);
    database.Make(AccessOfCopy(from.database));
    workgroup.Make(AccessOfCopy(from.workgroup));
    CopyContents(from.database, database.TemporaryPath(), options.busyTimeout);
    CopyContents(from.workgroup, workgroup.TemporaryPath(), options.busyTimeout);
    workgroup.Publish();
    database.Publish();
    workgroup.Keep();
    database.Keep();
}

} // namespace

void CopyFiles(const Location& from, const Location& to)
{
    const auto files = AttachFiles(from, {});
    // Reading in one transaction keeps writers out, so that both copies are of the same moment.
    files.connection->Execute("BEGIN; SELECT 1 FROM main.file_info; SELECT 1 FROM workgroup.file_info;");
    CopyBoth(from, to);
}

void CopyRestingFiles(const Location& from, const Location& to)
{
    if (!QFileInfo::exists(from.database))
        throw Error(Kind::NoSuchFile, {from.database});
    if (!QFileInfo::exists(from.workgroup))
        throw Error(Kind::WorkgroupMissing, {from.workgroup});
    CopyBoth(from, to);
}

void RequireAdministrator(const Location& location, const QString& name, const QString& password)
{
    const auto connection = AttachFiles(location, {}).connection;
    const PasswordCost cost = PasswordCost::Interactive();
    Accounts(connection, CheckLogon(*connection, name, password, cost), cost).RequireAdministrator();
}

QList<QPair<QString, qlonglong>> CountRecords(const Location& location)
{
    const AttachedFiles files = AttachFiles(location, {});
    QList<QPair<QString, qlonglong>> counts;
    for (const char* table : {"address", "status", "event", "dynamic_regroup", "fleet", "user_profile",
                              "kyn_registry", "attention", "attention_act", "regroup_act"})
        counts.append(
            {table, files.connection->Value("SELECT count(*) FROM main." + Quoted(table)).toLongLong()});
    return counts;
}

} // namespace dao::sqlite
