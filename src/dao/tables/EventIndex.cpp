#include "dao/tables/EventIndex.h"

namespace dao {

namespace {

const QString FirstTime = QStringLiteral("1601-01-01T00:00:00Z");
const QString LastTime = QStringLiteral("9999-12-31T00:00:00Z");

QDateTime Or(const QDateTime& time, const QString& otherwise)
{
    return time.isValid() ? time : QDateTime::fromString(otherwise, Qt::ISODate);
}

} // namespace

EventIndex::State EventIndex::StateOf(Database& database)
{
    const auto row = database.QueryDef(QStringLiteral("event_index_state"))->OpenSnapshot();
    const State state{row->NumberAt(0), row->NumberAt(1)};
    row->Close();
    return state;
}

void EventIndex::Extend(Database& database, int most)
{
    const auto query = database.QueryDef(QStringLiteral("index_events"));
    query->SetParameter(QStringLiteral("most"), most);
    query->Execute();
}

std::vector<qlonglong> EventIndex::Blocks(Database& database, const Wanted& wanted, Order order,
                                          qlonglong bound, int most)
{
    const bool newest = order == Order::NewestFirst;
    const auto query =
        database.QueryDef(wanted.words.isEmpty() ? newest ? QStringLiteral("find_blocks_before")
                                                          : QStringLiteral("find_blocks_after")
                          : newest ? QStringLiteral("find_word_blocks_before")
                                                 : QStringLiteral("find_word_blocks_after"));
    if (!wanted.words.isEmpty())
        query->SetParameter(QStringLiteral("words"), wanted.words);
    query->SetParameter(QStringLiteral("since"), Or(wanted.since, FirstTime));
    query->SetParameter(QStringLiteral("until"), Or(wanted.until, LastTime));
    query->SetParameter(QStringLiteral("bound"), bound);
    query->SetParameter(QStringLiteral("most"), most);
    std::vector<qlonglong> blocks;
    const auto rows = query->OpenSnapshot();
    for (; !rows->Eof(); rows->MoveNext())
        blocks.push_back(rows->NumberAt(0));
    rows->Close();
    return blocks;
}

std::vector<EventRecord> EventIndex::Read(Database& database, qlonglong first, qlonglong last)
{
    const auto query = database.QueryDef(QStringLiteral("find_events"));
    query->SetParameter(QStringLiteral("first"), first);
    query->SetParameter(QStringLiteral("last"), last);
    std::vector<EventRecord> records;
    const auto rows = query->OpenSnapshot();
    for (; !rows->Eof(); rows->MoveNext()) {
        EventRecord record;
        int column = 0;
        record.id = rows->NumberAt(column++);
        record.time = QDateTime::fromMSecsSinceEpoch(rows->NumberAt(column++), Qt::UTC);
        record.kind = static_cast<int>(rows->NumberAt(column++));
        record.desc = rows->TextAt(column++);
        record.from = rows->TextAt(column++);
        record.to = rows->TextAt(column++);
        record.fromNumber = rows->TextAt(column++);
        record.toNumber = rows->TextAt(column++);
        record.direction = static_cast<int>(rows->NumberAt(column++));
        record.operatorName = rows->TextAt(column++);
        record.console = rows->TextAt(column++);
        record.consoleNumber = rows->NumberAt(column++);
        record.recordId = rows->TextAt(column++);
        records.push_back(record);
    }
    rows->Close();
    return records;
}

std::optional<qlonglong> EventIndex::FirstSince(Database& database, const QDateTime& time)
{
    const auto query = database.QueryDef(QStringLiteral("find_event_at"));
    query->SetParameter(QStringLiteral("since"), time);
    const auto rows = query->OpenSnapshot();
    if (rows->Eof())
        return {};
    const qlonglong id = rows->NumberAt(0);
    rows->Close();
    return id;
}

} // namespace dao
