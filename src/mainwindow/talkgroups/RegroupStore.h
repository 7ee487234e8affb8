#pragma once

#include <QString>

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

// Writes what the radio has confirmed into dao::RegroupTable, under a request that was written there
// before. Raises Error and dao::Error.
class RegroupStore {
public:
    explicit RegroupStore(IDbSession& session) : m_session(session) {}

    // dao::Kind::NotPermitted when the operator has no right to regroup at this moment.
    void RequireRight();

    // Writes a request and returns its name. While it stands, an hour at most, its change may be stored even
    // when the right or the account is gone. dao::Kind::NotPermitted without the right at this moment.
    QString Open(const RequestedChange& change);
    // Does nothing for an empty name. Does not raise: a request left behind expires by itself.
    void Close(const QString& request) noexcept;

    // False when the row of a move is gone: somebody else changed it.
    bool Store(const RegroupRequest& request);
    void Store(const UngroupRequest& request);

private:
    IDbSession& m_session;
};
