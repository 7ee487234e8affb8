#pragma once

#include "mainwindow/talkgroups/TalkgroupModel.h"

struct IDbSession;

// Reads talkgroups and regrouped radios, from the database or from what the session has read of it. What was
// read before a failure stays in the vector. From the database: raises Error and dao::Error.
class TalkgroupReader {
public:
    enum class From { Database, Memory };

    TalkgroupReader(IDbSession& session, From from) : m_session(session), m_from(from) {}

    // Those that match the search text, `most` at most.
    void ReadStatic(const QString& lookfor, int most, std::vector<TalkgroupRow>& groups) const;
    void ReadDynamic(const QString& lookfor, int most, std::vector<TalkgroupRow>& groups) const;
    // All but those of one callsign.
    void ReadMembers(const QString& ownCallsign, std::vector<GroupMemberRow>& members) const;

private:
    std::vector<TalkgroupRow> Draw(const QString& lookfor, bool dynamic) const;
    void DrawMembers(const QString& ownCallsign, std::vector<GroupMemberRow>& members) const;

    IDbSession& m_session;
    From m_from;
};
