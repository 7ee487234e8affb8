#pragma once

struct IDbSession;
struct RegroupRequest;
struct UngroupRequest;

// Writes what the radio has confirmed into the table dynamic_regroup. Raises Error and dao::Error.
class RegroupStore {
public:
    explicit RegroupStore(IDbSession& session) : m_session(session) {}

    // False when the request is not pending, or when the row of a move is gone: somebody else changed it.
    bool Store(const RegroupRequest& request);
    // False when the request is not pending.
    bool Store(const UngroupRequest& request);

private:
    IDbSession& m_session;
};
