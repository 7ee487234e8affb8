#pragma once

#include <QString>
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
    // True when no row of this session is marked any longer. When that cannot be stored, the operator is
    // asked whether to try again, unless there is nobody to ask.
    enum class OnFailure { Ask, GiveUp };
    bool ClearLoggedOnFlag(OnFailure onFailure = OnFailure::Ask);
    // The same for another account, whose session was cut short. Raises whatever keeps it from being stored;
    // without the right to change that account's row nothing is.
    void ClearLoggedOnFlagOf(const QString& user);

    bool AllowDynamicRegrouping() const { return m_allowDr; }
    std::optional<int> Marker() const { return m_marker; }

private:
    IDbSession& m_session;
    IPrompt& m_prompt;
    const IStringSource& m_strings;
    std::optional<int> m_marker; // profile_id of the marked row
    bool m_allowDr = false;
};
