#include "dao/tables/UserProfileTable.h"

namespace dao {

namespace {

const QString Table = QStringLiteral("user_profile");
const QString UserIndex = QStringLiteral("i_user");
const QString IdField = QStringLiteral("profile_id");
const QString UserNameField = QStringLiteral("UserName");
const QString CallsignField = QStringLiteral("callsign");
const QString LoggedOnField = QStringLiteral("logged_on");
const QString AllowRegroupingField = QStringLiteral("allow_dr");

} // namespace

Reading UserProfileTable::ReadingOf(const QString& userName)
{
    return {.source = Table, .index = UserIndex, .key = {userName}};
}

std::unique_ptr<Recordset> UserProfileTable::Find(Database& database, const QString& userName)
{
    auto rows = database.OpenTable(Table);
    rows->SetIndex(UserIndex);
    rows->Seek(userName);
    return rows->NoMatch() ? nullptr : std::move(rows);
}

UserProfileRecord UserProfileTable::Read(Recordset& rows)
{
    return {.id = rows.Field(IdField).toLongLong(),
            .userName = rows.Field(UserNameField).toString(),
            .callsign = rows.Field(CallsignField).toString(),
            .loggedOn = rows.Field(LoggedOnField).toBool(),
            .allowRegrouping = rows.Field(AllowRegroupingField).toBool()};
}

void UserProfileTable::Add(Database& database, const UserProfileRecord& record)
{
    const auto rows = database.OpenTable(Table);
    rows->AddNew();
    rows->SetField(UserNameField, record.userName);
    rows->SetField(CallsignField, record.callsign);
    rows->SetField(AllowRegroupingField, record.allowRegrouping);
    rows->Update();
}

void UserProfileTable::SetLoggedOn(Recordset& rows, bool on)
{
    rows.Edit();
    rows.SetField(LoggedOnField, on);
    rows.Update();
}

} // namespace dao
