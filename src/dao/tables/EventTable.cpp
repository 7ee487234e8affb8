#include "dao/tables/EventTable.h"

#include <QUuid>
#include <algorithm>

namespace dao {

namespace {

constexpr qsizetype MostInStatement = 5000;

} // namespace

QSet<QString> EventTable::Stored(Database& database, const QStringList& recordIds)
{
    QSet<QString> stored;
    for (qsizetype first = 0; first < recordIds.size(); first += MostInStatement) {
        QStringList ids;
        for (const QString& id : recordIds.mid(first, MostInStatement))
            if (!QUuid(id).isNull())
                ids.append(u'\'' + QUuid(id).toString(QUuid::WithoutBraces) + u'\'');
        if (ids.isEmpty())
            continue;
        const auto rows = database.OpenSnapshot(
            QStringLiteral("SELECT record_id FROM event WHERE record_id IN (%1)").arg(ids.join(u',')));
        for (; !rows->Eof(); rows->MoveNext())
            stored.insert(rows->TextAt(0));
    }
    return stored;
}

std::optional<EventTable::Mark> EventTable::Newest(Database& database)
{
    const auto rows = database.OpenSnapshot(QStringLiteral(
        "SELECT record_id, time_stamp FROM event WHERE event_id = (SELECT max(event_id) FROM event)"));
    if (rows->Eof())
        return {};
    return Mark{rows->Field("record_id").toString(), rows->Field(TimeField).toDateTime()};
}

EventTable::Last EventTable::LastOf(Database& database, const QString& console)
{
    const QString newest =
        QStringLiteral(
            "select console_number, chain from event where console = '%1' %2 order by event_id desc limit 1")
            .arg(QString(console).replace(u'\'', QLatin1String("''")));
    const auto row = database.OpenSnapshot(newest.arg(QString()));
    if (row->Eof())
        return {};
    Last last{row->NumberAt(0), row->TextAt(1)};
    row->Close();
    if (last.chain.isEmpty())
        if (const auto chained = database.OpenSnapshot(newest.arg(QLatin1String("and chain is not null")));
            !chained->Eof())
            last.chain = chained->TextAt(1);
    return last;
}

LogReceipt EventTable::Receipt(Database& database, const QDateTime& time)
{
    LogReceipt receipt{database.Id(), time, {}};
    const auto rows = database.OpenSnapshot(QStringLiteral(
        "select console, console_number, chain from event where event_id in (select max(event_id) from event "
        "where console is not null and chain is not null group by console) order by console"));
    for (; !rows->Eof(); rows->MoveNext())
        receipt.heads.append({rows->TextAt(0), rows->NumberAt(1), ProofOf(rows->TextAt(2)), time});
    return receipt;
}

bool EventTable::HasChains(Database& database)
{
    return database.HasField(Table, QStringLiteral("chain"));
}

std::vector<EventRecord> EventTable::ReadChained(Database& database, qlonglong after, qlonglong last,
                                                 int most)
{
    std::vector<EventRecord> records;
    const auto rows = database.OpenSnapshot(
        QStringLiteral("select event_id, time_stamp, event_type, \"desc\", from_address, to_address, "
                       "from_number, to_number, direction, operator, console, console_number, record_id, "
                       "chain from event where event_id > %1 and event_id <= %2 order by event_id limit %3")
            .arg(after)
            .arg(last)
            .arg(most));
    for (; !rows->Eof(); rows->MoveNext()) {
        EventRecord& record = records.emplace_back();
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
        record.chain = rows->TextAt(column++);
    }
    return records;
}

void EventTable::AppendSigned(Database& database, EventRecord record, const Signer& signer)
{
    record.recordId = QUuid::createUuid().toString(QUuid::WithoutBraces);
    QVariant number;
    if (!signer.console.isEmpty()) {
        const Last last = LastOf(database, signer.console);
        record.console = signer.console;
        record.consoleNumber = last.number + 1;
        record.chain = signer.chain(database.Id(), last.chain, record);
        number = record.consoleNumber;
    }
    const auto orNull = [](const QString& text) { return text.isEmpty() ? QVariant() : QVariant(text); };
    const auto rows = database.OpenTable(Table, true);
    rows->AddNew();
    rows->SetField(TimeField, record.time);
    rows->SetField(TypeField, record.kind);
    rows->SetField(DescField, record.desc);
    rows->SetField("record_id", record.recordId);
    rows->SetField("console", orNull(record.console));
    rows->SetField("console_number", number);
    rows->SetField("chain", orNull(record.chain));
    rows->Update();
}

} // namespace dao
