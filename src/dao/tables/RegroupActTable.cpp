#include "dao/tables/RegroupActTable.h"

namespace dao {

namespace {

const QString Table = QStringLiteral("regroup_act");
const QString Columns = QStringLiteral("a.act_id, a.member_id, a.member, a.old_group_id, a.old_group, "
                                       "a.group_id, a.new_group, a.pos, a.time_stamp, a.operator, a.console");

QVariant OrNull(const QString& text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

QVariant OrNull(qint32 id)
{
    return id == 0 ? QVariant() : QVariant(id);
}

std::vector<RegroupActRecord> ReadAll(Database& database, const QString& sql)
{
    std::vector<RegroupActRecord> records;
    const auto rows = database.OpenSnapshot(sql);
    for (; !rows->Eof(); rows->MoveNext())
        records.push_back({.id = rows->Field("act_id").toString(),
                           .memberId = rows->Field("member_id").toInt(),
                           .member = rows->Field("member").toString(),
                           .oldGroupId = rows->Field("old_group_id").toInt(),
                           .oldGroup = rows->Field("old_group").toString(),
                           .groupId = rows->Field("group_id").toInt(),
                           .group = rows->Field("new_group").toString(),
                           .pos = rows->Field("pos").toInt(),
                           .time = rows->Field("time_stamp").toDateTime(),
                           .operatorName = rows->Field("operator").toString(),
                           .console = rows->Field("console").toString()});
    return records;
}

} // namespace

void RegroupActTable::Append(Database& database, const RegroupActRecord& record)
{
    const auto rows = database.OpenTable(Table);
    rows->SetIndex(QStringLiteral("PrimaryKey"));
    rows->Seek(record.id, record.memberId);
    if (!rows->NoMatch())
        return;
    rows->AddNew();
    rows->SetField("act_id", record.id);
    rows->SetField("member_id", record.memberId);
    rows->SetField("member", record.member);
    rows->SetField("old_group_id", OrNull(record.oldGroupId));
    rows->SetField("old_group", OrNull(record.oldGroup));
    rows->SetField("group_id", OrNull(record.groupId));
    rows->SetField("new_group", OrNull(record.group));
    rows->SetField("pos", record.pos);
    rows->SetField("time_stamp", record.time);
    rows->SetField("operator", OrNull(record.operatorName));
    rows->SetField("console", OrNull(record.console));
    rows->Update();
}

std::vector<RegroupActRecord> RegroupActTable::Newest(Database& database, std::optional<qint32> addressId,
                                                      int most)
{
    const QString of =
        addressId ? QStringLiteral("WHERE %1 IN (a.member_id, a.old_group_id, a.group_id) ").arg(*addressId)
                  : QString();
    return ReadAll(database, "SELECT " + Columns + " FROM regroup_act AS a " + of +
                                 "ORDER BY a.time_stamp DESC, a.member LIMIT " + QString::number(most));
}

std::vector<RegroupActRecord> RegroupActTable::LastOfRegrouped(Database& database)
{
    return ReadAll(database,
                   "SELECT " + Columns +
                       " FROM dynamic_regroup AS r JOIN regroup_act AS a ON a.member_id = r.member_id AND "
                       "a.pos = r.pos WHERE a.time_stamp = (SELECT max(l.time_stamp) FROM regroup_act AS l "
                       "WHERE l.member_id = r.member_id AND l.pos = r.pos)");
}

} // namespace dao
