#include "dao/tables/AttentionTable.h"

#include "dao/tables/EventIndex.h"

namespace dao {

namespace {

const QString ActTable = QStringLiteral("attention_act");

QVariant OrNull(const QString& text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

AttentionRecord Read(Recordset& rows)
{
    return {.caller = rows.Field("caller").toString(),
            .kind = static_cast<AttentionRecord::Kind>(rows.Field("kind").toInt()),
            .id = rows.Field("entry_id").toString(),
            .what = rows.Field("what").toString(),
            .callBack = rows.Field("call_back").toString(),
            .again = static_cast<AttentionRecord::Again>(rows.Field("message_type").toInt()),
            .message = rows.Field("message").toString(),
            .since = rows.Field("since").toDateTime(),
            .last = rows.Field("last").toDateTime(),
            .lastConsole = rows.Field("last_console").toString(),
            .times = rows.Field("times").toInt(),
            .takenBy = rows.Field("taken_by").toString(),
            .takenOn = rows.Field("taken_on").toString(),
            .takenAt = rows.Field("taken_at").toDateTime(),
            .takenAway = rows.Field("taken_away").toBool()};
}

AttentionActRecord ReadAct(Recordset& rows)
{
    return {.id = rows.Field("act_id").toString(),
            .entry = rows.Field("entry_id").toString(),
            .act = static_cast<AttentionActRecord::Act>(rows.Field("act").toInt()),
            .caller = rows.Field("caller").toString(),
            .kind = static_cast<AttentionRecord::Kind>(rows.Field("kind").toInt()),
            .what = rows.Field("what").toString(),
            .time = rows.Field("time_stamp").toDateTime(),
            .operatorName = rows.Field("operator").toString(),
            .console = rows.Field("console").toString(),
            .away = rows.Field("away").toBool()};
}

// The engines write a time each in its own way, so the last log record before it stands for it.
QString TimeBefore(qlonglong firstRecord)
{
    return QStringLiteral("(SELECT max(time_stamp) FROM event WHERE time_stamp < "
                          "(SELECT time_stamp FROM event WHERE event_id = %1))")
        .arg(firstRecord);
}

std::unique_ptr<Recordset> Seek(Database& database, const QString& caller, AttentionRecord::Kind kind)
{
    auto rows = database.OpenTable(AttentionTable::Table);
    rows->SetIndex(QStringLiteral("PrimaryKey"));
    rows->Seek(caller, static_cast<int>(kind));
    return rows;
}

} // namespace

std::vector<AttentionRecord> AttentionTable::ReadAll(Database& database)
{
    std::vector<AttentionRecord> records;
    const auto rows = database.OpenSnapshot(Table);
    for (; !rows->Eof(); rows->MoveNext())
        records.push_back(Read(*rows));
    return records;
}

std::optional<AttentionRecord> AttentionTable::Find(Database& database, const QString& caller,
                                                    AttentionRecord::Kind kind)
{
    const auto rows = Seek(database, caller, kind);
    if (rows->NoMatch())
        return {};
    return Read(*rows);
}

void AttentionTable::Put(Database& database, const AttentionRecord& record)
{
    const auto rows = Seek(database, record.caller, record.kind);
    if (rows->NoMatch()) {
        rows->AddNew();
        rows->SetField("caller", record.caller);
        rows->SetField("kind", static_cast<int>(record.kind));
    } else {
        rows->Edit();
    }
    rows->SetField("entry_id", record.id);
    rows->SetField("what", record.what);
    rows->SetField("call_back", record.callBack);
    rows->SetField("message_type", static_cast<int>(record.again));
    rows->SetField("message", record.message);
    rows->SetField("since", record.since);
    rows->SetField("last", record.last);
    rows->SetField("last_console", record.lastConsole);
    rows->SetField("times", record.times);
    rows->SetField("taken_by", OrNull(record.takenBy));
    rows->SetField("taken_on", OrNull(record.takenOn));
    rows->SetField("taken_at", record.IsTaken() ? QVariant(record.takenAt) : QVariant());
    rows->SetField("taken_away", record.takenAway);
    rows->Update();
}

void AttentionTable::Remove(Database& database, const QString& caller, AttentionRecord::Kind kind)
{
    const auto rows = Seek(database, caller, kind);
    if (!rows->NoMatch())
        rows->Delete();
}

std::optional<QString> AttentionTable::EntryOf(Database& database, const QString& act)
{
    const auto rows = database.OpenTable(ActTable);
    rows->SetIndex(QStringLiteral("PrimaryKey"));
    rows->Seek(act);
    if (rows->NoMatch())
        return {};
    return rows->Field("entry_id").toString();
}

void AttentionTable::Append(Database& database, const AttentionActRecord& act)
{
    const auto rows = database.OpenTable(ActTable, true);
    rows->AddNew();
    rows->SetField("act_id", act.id);
    rows->SetField("entry_id", act.entry);
    rows->SetField("act", static_cast<int>(act.act));
    rows->SetField("caller", act.caller);
    rows->SetField("kind", static_cast<int>(act.kind));
    rows->SetField("what", act.what);
    rows->SetField("time_stamp", act.time);
    rows->SetField("operator", OrNull(act.operatorName));
    rows->SetField("console", OrNull(act.console));
    rows->SetField("away", act.away);
    rows->Update();
}

std::vector<AttentionActRecord> AttentionTable::ActsSince(Database& database, const QDateTime& since)
{
    const auto first = EventIndex::FirstSince(database, since);
    const QString from = first ? TimeBefore(*first) : QStringLiteral("(SELECT max(time_stamp) FROM event)");
    const QString sql = QStringLiteral(
        "SELECT act_id, entry_id, act, caller, kind, what, time_stamp, operator, console, away "
        "FROM attention_act WHERE time_stamp >= coalesce(%1, (SELECT min(time_stamp) FROM attention_act)) "
        "ORDER BY time_stamp, act");
    std::vector<AttentionActRecord> acts;
    const auto rows = database.OpenSnapshot(sql.arg(from));
    for (; !rows->Eof(); rows->MoveNext())
        acts.push_back(ReadAct(*rows));
    return acts;
}

std::optional<AttentionActRecord> AttentionTable::OpeningOf(Database& database, const QString& entry)
{
    const auto rows = database.OpenTable(ActTable);
    rows->SetIndex(QStringLiteral("PrimaryKey"));
    rows->Seek(entry);
    if (rows->NoMatch())
        return {};
    return ReadAct(*rows);
}

} // namespace dao
