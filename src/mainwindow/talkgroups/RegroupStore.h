#pragma once

#include <QString>

class EventLog;
struct Clock;
struct IDbSession;
struct RegroupRequest;
struct UngroupRequest;

// What a command would change: a radio enters a group; without a group it leaves the one that it holds at the
// position, without a radio all leave the group.
struct RequestedChange {
    qint32 groupId = 0;  // 0: none
    qint32 memberId = 0; // 0: none
    quint8 pos = 0;
};

// Has what the radio has confirmed stored in dao::RegroupTable, under a request that was written into the
// database before.
class RegroupStore {
public:
    RegroupStore(IDbSession& session, EventLog& eventLog, Clock& clock)
        : m_session(session),
          m_eventLog(eventLog),
          m_clock(clock)
    {
    }

    // Raises Error and dao::Error; dao::Kind::NotPermitted when the operator has no right to regroup at this
    // moment.
    void RequireRight();

    // Writes a request and returns its name. While it stands, an hour at most, its change may be stored even
    // when the right or the account is gone. Raises Error and dao::Error; dao::Kind::NotPermitted without the
    // right at this moment.
    QString Open(const RequestedChange& change);
    // Nothing was confirmed. Does nothing for an empty name.
    void Close(const QString& request);

    // Neither raise nor wait. They return what the event log calls the change, which ends the request, too.
    QString Store(const RegroupRequest& confirmed, const QString& request);
    QString Store(const UngroupRequest& confirmed, const QString& request);

private:
    IDbSession& m_session;
    EventLog& m_eventLog;
    Clock& m_clock;
};
