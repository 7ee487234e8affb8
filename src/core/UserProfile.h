#pragma once

#include <optional>

struct IDbSession;
struct IPrompt;
struct IStringSource;

// The profile row of the logged-on operator: read and marked at logon, unmarked at logoff and exit.
class UserProfile {
public:
    UserProfile(IDbSession& session, IPrompt& prompt, const IStringSource& strings);

    // Offers its own retries and never stops the logon.
    void ReadUserProfile();
    // Does nothing when no row is marked.
    void ClearLoggedOnFlag();

    bool AllowDynamicRegrouping() const { return m_allowDr; }
    std::optional<int> Marker() const { return m_marker; }

private:
    IDbSession& m_session;
    IPrompt& m_prompt;
    const IStringSource& m_strings;
    std::optional<int> m_marker; // profile_id of the marked row
    bool m_allowDr = false;
};
