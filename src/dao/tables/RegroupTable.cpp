#include "dao/tables/RegroupTable.h"

namespace dao {

std::unique_ptr<Recordset> RegroupTable::OpenSnapshot(Database& database)
{
    return database.OpenSnapshot(Table);
}

RegroupRecord RegroupTable::Read(Recordset& rows)
{
    return {.groupId = rows.Field(GroupField).toInt(),
            .memberId = rows.Field(MemberField).toInt(),
            .pos = rows.Field(PosField).toInt()};
}

bool RegroupTable::Holds(Database& database, qint32 addressId)
{
    const auto rows =
        database.OpenSnapshot(QStringLiteral("select * from %1 where %2=%4 or %3=%4")
                                  .arg(Table, GroupField, MemberField, QString::number(addressId)));
    return !rows->Eof();
}

void RegroupTable::Store(Database& database, const RegroupRecord& record)
{
    const auto rows = database.OpenTable(Table);
    rows->SetIndex(QStringLiteral("MemberPos"));
    rows->Seek(record.memberId, record.pos);
    if (rows->NoMatch()) {
        rows->AddNew();
        rows->SetField(MemberField, record.memberId);
        rows->SetField(PosField, record.pos);
    } else {
        rows->Edit();
    }
    rows->SetField(GroupField, record.groupId);
    rows->Update();
}

bool RegroupTable::Move(Database& database, qint32 oldGroupId, const RegroupRecord& record)
{
    const auto rows = database.OpenTable(Table);
    rows->SetIndex(QStringLiteral("PrimaryKey"));
    rows->Seek(oldGroupId, record.memberId, record.pos);
    if (rows->NoMatch())
        return false;
    rows->Edit();
    rows->SetField(GroupField, record.groupId);
    rows->Update();
    return true;
}

void RegroupTable::RemoveMember(Database& database, qint32 memberId, int pos)
{
    const auto query = database.QueryDef(QStringLiteral("ind_ungroup"));
    query->SetParameter(QStringLiteral("mi"), memberId);
    query->SetParameter(QStringLiteral("p"), pos);
    query->Execute();
}

void RegroupTable::RemoveMembersOf(Database& database, qint32 groupId, int pos)
{
    const auto query = database.QueryDef(QStringLiteral("ungroup"));
    query->SetParameter(QStringLiteral("gi"), groupId);
    query->SetParameter(QStringLiteral("p"), pos);
    query->Execute();
}

} // namespace dao
