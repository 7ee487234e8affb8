#include "mainwindow/LogReader.h"

#include "core/DbSession.h"
#include "dao/Database.h"
#include "radio/Map27Executive.h"

namespace {

StoredEvent CurrentEvent(dao::Recordset& records)
{
    StoredEvent event;
    event.time = records.Field(QStringLiteral("time_stamp")).toDateTime();
    event.eventType = records.Field(QStringLiteral("event_type")).toInt();
    event.from = records.Field(QStringLiteral("from_address")).toString();
    event.to = records.Field(QStringLiteral("to_address")).toString();
    event.desc = records.Field(QStringLiteral("Desc")).toString();
    event.iconKey = records.Field(QStringLiteral("icon_key")).toString();
    return event;
}

} // namespace

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
    const OwnRadio own = Own();
    const auto query = m_session.Database().QueryDef(QStringLiteral("get_events"));
    query->SetParameter(QStringLiteral("MyAdr"), own.address);
    query->SetParameter(QStringLiteral("MyCallsign"), own.callsign);
    query->SetParameter(QStringLiteral("TimeUnit"), unit);
    query->SetParameter(QStringLiteral("TimeVal"), period);

    const auto records = query->OpenSnapshot();
    for (int count = 0; count < most && !records->Eof(); ++count) {
        handOver(CurrentEvent(*records));
        records->MoveNext();
    }
    records->Close();
}
