#pragma once

#include "mainwindow/talkgroups/TalkgroupModel.h"

struct IDbSession;

// Reads talkgroups and regrouped radios from the database. What was read before a failure stays in the
// vector. Raises Error and dao::Error.
class TalkgroupReader {
public:
    explicit TalkgroupReader(IDbSession& session) : m_session(session) {}

    // Those that match the search text, `most` at most.
    void ReadStatic(const QString& lookfor, int most, std::vector<TalkgroupRow>& groups) const;
    void ReadDynamic(const QString& lookfor, int most, std::vector<TalkgroupRow>& groups) const;
    // All but those of one callsign.
    void ReadMembers(const QString& ownCallsign, std::vector<GroupMemberRow>& members) const;

private:
    IDbSession& m_session;
};
