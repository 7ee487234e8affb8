#include "mainwindow/LogReader.h"

#include "core/DbSession.h"
#include "dao/Database.h"
#include "radio/Map27Executive.h"

void ReadEvents(dao::Database& database, const OwnRadio& own, const LogPeriod& period, int most,
                const std::function<void(const StoredEvent&)>& handOver)
{
    const auto query = database.QueryDef(QStringLiteral("get_events"));
    query->SetParameter(QStringLiteral("MyAdr"), own.address);
    query->SetParameter(QStringLiteral("MyCallsign"), own.callsign);
    query->SetParameter(QStringLiteral("TimeUnit"), period.unit);
    query->SetParameter(QStringLiteral("TimeVal"), period.count);

    const auto records = query->OpenSnapshot();
    const int time = records->Position(QStringLiteral("time_stamp"));
    const int type = records->Position(QStringLiteral("event_type"));
    const int from = records->Position(QStringLiteral("from_address"));
    const int to = records->Position(QStringLiteral("to_address"));
    const int desc = records->Position(QStringLiteral("Desc"));
    const int icon = records->Position(QStringLiteral("icon_key"));
    for (int count = 0; count < most && !records->Eof(); ++count) {
        StoredEvent event;
        event.time = QDateTime::fromMSecsSinceEpoch(records->NumberAt(time), Qt::UTC);
        event.eventType = static_cast<int>(records->NumberAt(type));
        event.from = records->TextAt(from);
        event.to = records->TextAt(to);
        event.desc = records->TextAt(desc);
        event.iconKey = records->TextAt(icon);
        handOver(event);
        records->MoveNext();
    }
    records->Close();
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

void LogReader::Read(const QString& unit, int period, int most,
                     const std::function<void(const StoredEvent&)>& handOver) const
{
    ReadEvents(m_session.Database(), Own(), {unit, period}, most, handOver);
}
