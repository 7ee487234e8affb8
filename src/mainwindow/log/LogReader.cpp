#include "mainwindow/log/LogReader.h"

#include "core/session/DbSession.h"
#include "dao/records/Database.h"
#include "dao/tables/EventTable.h"
#include "radio/facade/Map27Executive.h"

#include <limits>

namespace {

// How the stored query names the units.
QString StoredName(TimeUnit unit)
{
    switch (unit) {
    case TimeUnit::Minutes:
        return QStringLiteral("n");
    case TimeUnit::Hours:
        return QStringLiteral("h");
    case TimeUnit::Days:
        return QStringLiteral("d");
    }
    return {};
}

std::unique_ptr<dao::Recordset> OpenEvents(dao::Database& database, const OwnRadio& own,
                                           const LogPeriod& period)
{
    const auto query = database.QueryDef(QStringLiteral("get_events"));
    query->SetParameter(QStringLiteral("MyAdr"), own.address);
    query->SetParameter(QStringLiteral("MyCallsign"), own.callsign);
    query->SetParameter(QStringLiteral("TimeUnit"), StoredName(period.unit));
    query->SetParameter(QStringLiteral("TimeVal"), period.count);
    return query->OpenSnapshot();
}

void HandOver(dao::Recordset& records, int most, const std::function<void(const StoredEvent&)>& handOver)
{
    const int time = records.Position(dao::EventTable::TimeField);
    const int type = records.Position(dao::EventTable::TypeField);
    const int from = records.Position(dao::EventTable::FromField);
    const int to = records.Position(dao::EventTable::ToField);
    const int desc = records.Position(dao::EventTable::DescField);
    const int icon = records.Position(dao::EventTable::IconKeyField);
    for (int count = 0; count < most && !records.Eof(); ++count) {
        StoredEvent event;
        event.time = QDateTime::fromMSecsSinceEpoch(records.NumberAt(time), Qt::UTC);
        event.eventType = static_cast<int>(records.NumberAt(type));
        event.from = records.TextAt(from);
        event.to = records.TextAt(to);
        event.desc = records.TextAt(desc);
        event.iconKey = records.TextAt(icon);
        handOver(event);
        records.MoveNext();
    }
    records.Close();
}

qint64 Minutes(const LogPeriod& period)
{
    constexpr qint64 MinutesOfHour = 60;
    constexpr qint64 MinutesOfDay = 24 * MinutesOfHour;
    return period.count * (period.unit == TimeUnit::Days    ? MinutesOfDay
                           : period.unit == TimeUnit::Hours ? MinutesOfHour
                                                            : 1);
}

} // namespace

void ReadEvents(dao::Database& database, const OwnRadio& own, const LogPeriod& period, int most,
                const std::function<void(const StoredEvent&)>& handOver)
{
    HandOver(*OpenEvents(database, own, period), most, handOver);
}

int CountEvents(dao::Database& database, const OwnRadio& own, const LogPeriod& period, int atMost)
{
    const auto records = OpenEvents(database, own, period);
    int count = 0;
    for (; count < atMost && !records->Eof(); ++count)
        records->MoveNext();
    records->Close();
    return count;
}

// The query returns the oldest first. So the shortest period that still holds enough is searched for, in some
// twenty queries of no more records than are wanted, and any surplus at its beginning is skipped.
void ReadNewestEvents(dao::Database& database, const OwnRadio& own, const LogPeriod& period, int most,
                      const std::function<void(const StoredEvent&)>& handOver)
{
    const auto within = [](qint64 minutes) { return LogPeriod{TimeUnit::Minutes, minutes}; };
    qint64 shortest = 1;
    qint64 longest = Minutes(period);
    while (shortest < longest) {
        const qint64 middle = shortest + (longest - shortest) / 2;
        if (CountEvents(database, own, within(middle), most) >= most)
            longest = middle;
        else
            shortest = middle + 1;
    }
    const int held = CountEvents(database, own, within(longest), std::numeric_limits<int>::max());
    const auto records = OpenEvents(database, own, within(longest));
    for (int extra = held - most; extra > 0 && !records->Eof(); --extra)
        records->MoveNext();
    HandOver(*records, most, handOver);
}

LogReader::LogReader(IDbSession& session, const Map27Executive& executive)
    : m_session(session),
      m_executive(executive)
{
}

OwnRadio LogReader::Own() const
{
    return {m_executive.MyCallsign(), m_executive.MyAddress()};
}

void LogReader::Read(const LogPeriod& period, int most,
                     const std::function<void(const StoredEvent&)>& handOver) const
{
    ReadEvents(m_session.Database(), Own(), period, most, handOver);
}

void LogReader::ReadNewest(const LogPeriod& period, int most,
                           const std::function<void(const StoredEvent&)>& handOver) const
{
    ReadNewestEvents(m_session.Database(), Own(), period, most, handOver);
}

int LogReader::Count(const LogPeriod& period, int atMost) const
{
    return CountEvents(m_session.Database(), Own(), period, atMost);
}
