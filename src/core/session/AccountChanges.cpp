#include "core/session/AccountChanges.h"

#include "core/base/ProgramLog.h"
#include "dao/Transaction.h"
#include "dao/Workspace.h"
#include "dao/tables/UserProfileTable.h"

namespace {

void RequireChange(dao::QueryDef& query)
{
    if (query.Execute() == 0)
        throw dao::Error(dao::Kind::RecordGone);
}

} // namespace

void AddAccount(dao::Workspace& workspace, const NewAccount& account)
{
    dao::Transaction transaction(workspace, dao::Transaction::Changes::Together);
    dao::UserProfileTable::Add(workspace.Database(), {.userName = account.userName,
                                                      .callsign = account.callsign,
                                                      .allowRegrouping = account.allowRegrouping});
    const auto user = workspace.CreateUser(account.userName, account.pid, account.password);
    workspace.Users().Append(*user);
    user->Groups().Append(dao::UsersGroupName);
    if (!account.group.isEmpty())
        user->Groups().Append(account.group);
    transaction.Commit();
    ProgramLog::Write(QStringLiteral("Accounts: %1 added").arg(account.userName));
}

void ChangeAccount(dao::Workspace& workspace, const AccountChange& change)
{
    dao::Transaction transaction(workspace, dao::Transaction::Changes::Together);
    const auto query = workspace.Database().QueryDef("change_user_profile");
    query->SetParameter("id", change.profileId);
    query->SetParameter("cs", change.callsign);
    query->SetParameter("dr", change.allowRegrouping);
    RequireChange(*query);
    // Removing a group only to give it back would fail for the last administrator.
    if (!change.newGroup.isEmpty() && change.newGroup != change.oldGroup) {
        dao::GroupList groups = workspace.Users().GroupsOf(change.userName);
        if (!change.oldGroup.isEmpty())
            groups.Delete(change.oldGroup);
        groups.Append(change.newGroup);
    }
    transaction.Commit();
    ProgramLog::Write(QStringLiteral("Accounts: %1 changed").arg(change.userName));
}

void DeleteAccount(dao::Workspace& workspace, qlonglong profileId, const QString& userName)
{
    dao::Transaction transaction(workspace, dao::Transaction::Changes::Together);
    const auto query = workspace.Database().QueryDef("drop_user_profile");
    query->SetParameter("id", profileId);
    RequireChange(*query);
    workspace.Users().Delete(userName);
    transaction.Commit();
    ProgramLog::Write(QStringLiteral("Accounts: %1 deleted").arg(userName));
}

QString ShownGroup(const QStringList& groups)
{
    QString shown;
    for (const QString& group : groups)
        if (group != QLatin1String(dao::UsersGroupName))
            shown = group;
    return shown;
}
