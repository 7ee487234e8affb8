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

qlonglong EventTable::LastNumberOf(Database& database, const QString& console)
{
    const auto last = database.OpenSnapshot(
        QStringLiteral("select console_number from event where console = '%1' order by event_id desc limit 1")
            .arg(QString(console).replace(u'\'', QLatin1String("''"))));
    return last->Eof() ? 0 : last->NumberAt(0);
}

} // namespace dao
