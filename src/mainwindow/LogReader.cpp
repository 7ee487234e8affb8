#include "mainwindow/LogReader.h"

#include "core/DbSession.h"
#include "dao/Database.h"
#include "radio/Map27Executive.h"

namespace {

// Where get_events has its fields.
struct Columns {
    explicit Columns(const dao::Recordset& records)
        : time(records.Position(QStringLiteral("time_stamp"))),
          type(records.Position(QStringLiteral("event_type"))),
          from(records.Position(QStringLiteral("from_address"))),
          to(records.Position(QStringLiteral("to_address"))),
          desc(records.Position(QStringLiteral("Desc"))),
          iconKey(records.Position(QStringLiteral("icon_key")))
    {
    }

    StoredEvent Read(dao::Recordset& records) const
    {
        StoredEvent event;
        event.time = QDateTime::fromMSecsSinceEpoch(records.NumberAt(time), Qt::UTC);
        event.eventType = static_cast<int>(records.NumberAt(type));
        event.from = records.TextAt(from);
        event.to = records.TextAt(to);
        event.desc = records.TextAt(desc);
        event.iconKey = records.TextAt(iconKey);
        return event;
    }

    int time;
    int type;
    int from;
    int to;
    int desc;
    int iconKey;
};

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
    const Columns columns(*records);
    for (int count = 0; count < most && !records->Eof(); ++count) {
        handOver(columns.Read(*records));
        records->MoveNext();
    }
    records->Close();
}
