#include "app/TourStage.h"

#include "app/Demonstration.h"
#include "core/texts/Errors.h"
#include "dao/Workspace.h"
#include "dao/base/Error.h"
#include "dao/base/Location.h"
#include "dao/tables/AddressTable.h"
#include "dao/tables/RegroupTable.h"
#include "dao/tables/UserProfileTable.h"
#include "tour/TourControls.h"

#include <QFile>

namespace {

using Values = const QStringList&;

dao::Location LocationOf(const Demonstration& demonstration)
{
    return {demonstration.DatabaseFile(), demonstration.WorkgroupFile()};
}

std::unique_ptr<dao::Workspace> AnotherConsole(const Demonstration& demonstration)
{
    const Demonstration::Account& account = Demonstration::Administrator;
    return dao::OpenWorkspace(LocationOf(demonstration), account.user, account.password);
}

dao::AddressRecord EntryOf(dao::Database& database, const QString& callsign)
{
    const auto entry = dao::AddressTable::FindCallsign(database, callsign);
    if (!entry)
        throw dao::Error(dao::Kind::RecordGone);
    return *entry;
}

void RegroupElsewhere(const Demonstration& demonstration, const QString& member, const QString& group)
{
    const auto workspace = AnotherConsole(demonstration);
    dao::Database& database = workspace->Database();
    const dao::AddressRecord to = EntryOf(database, group);
    dao::RegroupTable::Store(
        database, {.groupId = to.id, .memberId = EntryOf(database, member).id, .pos = to.position});
}

void UngroupElsewhere(const Demonstration& demonstration, const QString& member, const QString& group)
{
    const auto workspace = AnotherConsole(demonstration);
    dao::Database& database = workspace->Database();
    dao::RegroupTable::RemoveMember(database, EntryOf(database, member).id,
                                    EntryOf(database, group).position);
}

void LogOnElsewhere(const Demonstration& demonstration, const QString& user)
{
    const auto workspace = AnotherConsole(demonstration);
    const auto profile = dao::UserProfileTable::Find(workspace->Database(), user);
    if (!profile)
        throw dao::Error(dao::Kind::NoSuchUser, {user});
    dao::UserProfileTable::SetLoggedOn(*profile, true);
}

void TellRadio(Demonstration& demonstration, const QString& command)
{
    const QString answer = demonstration.TellRadio(command);
    if (!answer.startsWith(QLatin1String("ok")))
        throw Error(ErrorCode::General,
                    QStringLiteral("the radio answered \"%1\" to \"%2\"").arg(answer, command));
}

QString Compare(const QString& seen, const QString& pattern)
{
    return TourControls::IsLike(seen, pattern) ? QString() : QStringLiteral("\"%1\"").arg(seen);
}

QString FileHolds(const Demonstration& demonstration, const QString& name, const QString& pattern)
{
    QFile file(demonstration.Folder() + QLatin1Char('/') + name);
    return file.open(QIODevice::ReadOnly) ? Compare(QString::fromUtf8(file.readAll()), pattern)
                                          : file.errorString();
}

} // namespace

std::vector<TourWord> TourStageWords(Demonstration& d)
{
    return {
        {QStringLiteral("radio: REST"), [&d](Values v) { TellRadio(d, v[0]); }},
        {QStringLiteral("kill radio"), [&d](Values) { d.KillRadio(); }},
        {QStringLiteral("start radio"), [&d](Values) { d.RestartRadio(); }},
        {QStringLiteral("fill database"),
         [&d](Values) { Demonstration::Fill(LocationOf(d), Demonstration::Administrator); }},
        {QStringLiteral("elsewhere regroup NAME to NAME"),
         [&d](Values v) { RegroupElsewhere(d, v[0], v[1]); }},
        {QStringLiteral("elsewhere ungroup NAME from NAME"),
         [&d](Values v) { UngroupElsewhere(d, v[0], v[1]); }},
        {QStringLiteral("elsewhere log on NAME"), [&d](Values v) { LogOnElsewhere(d, v[0]); }},
        {QStringLiteral("radio TEXT answers TEXT"),
         {},
         [&d](Values v) { return Compare(d.TellRadio(v[0]), v[1]); }},
        {QStringLiteral("file NAME holds TEXT"), {}, [&d](Values v) { return FileHolds(d, v[0], v[1]); }},
    };
}

QMap<QString, QString> TourStageNames(const Demonstration& demonstration)
{
    return {
        {QStringLiteral("port"), demonstration.PortLink()},
        {QStringLiteral("database"), demonstration.DatabaseFile()},
        {QStringLiteral("workgroup"), demonstration.WorkgroupFile()},
        {QStringLiteral("operator"), Demonstration::Operator.user},
        {QStringLiteral("operator-password"), Demonstration::Operator.password},
        {QStringLiteral("administrator"), Demonstration::Administrator.user},
        {QStringLiteral("administrator-password"), Demonstration::Administrator.password},
    };
}
