#include "core/session/UserProfile.h"

#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "dao/Workspace.h"
#include "dao/tables/UserProfileTable.h"

#include <functional>

namespace {

// The operator's own; null when there is none.
std::unique_ptr<dao::Recordset> FindOwnProfile(IDbSession& session)
{
    return dao::UserProfileTable::Find(session.Database(), session.Workspace().UserName());
}

// Tries until it succeeds or the operator declines. Without a prompt it tries once.
bool Retry(IPrompt* prompt, const IStringSource& strings, const std::function<void()>& attempt)
{
    for (;;) {
        try {
            attempt();
            return true;
        } catch (const std::exception& failure) {
            ProgramLog::Write(QStringLiteral("User profile: %1").arg(QString::fromUtf8(failure.what())));
            if (WasGivenUp(failure))
                return false;
        }
        if (prompt == nullptr || !prompt->AskQuestion(strings.LoadString(CoreText::UserProfileRetry)))
            return false;
    }
}

} // namespace

UserProfile::UserProfile(IDbSession& session, IPrompt& prompt, const IStringSource& strings)
    : m_session(session),
      m_prompt(prompt),
      m_strings(strings)
{
}

void UserProfile::ReadUserProfile()
{
    Retry(
        &m_prompt, m_strings,
        [this] {
            m_marker.reset();
            m_allowDr = false; // the previous operator's
            const auto row = FindOwnProfile(m_session);
            if (!row)
                return;
            const dao::UserProfileRecord profile = dao::UserProfileTable::Read(*row);
            m_marker = static_cast<int>(profile.id);
            m_allowDr = profile.allowRegrouping;
            dao::UserProfileTable::SetLoggedOn(*row, true);
        });
}

bool UserProfile::ClearLoggedOnFlag(OnFailure onFailure)
{
    if (!m_marker)
        return true;
    const bool cleared = Retry(onFailure == OnFailure::Ask ? &m_prompt : nullptr, m_strings, [this] {
        if (const auto row = FindOwnProfile(m_session))
            dao::UserProfileTable::SetLoggedOn(*row, false);
    });
    if (cleared)
        m_marker.reset();
    return cleared;
}

void UserProfile::ClearLoggedOnFlagOf(const QString& user)
{
    const auto row = dao::UserProfileTable::Find(m_session.Database(), user);
    if (row && dao::UserProfileTable::Read(*row).loggedOn)
        dao::UserProfileTable::SetLoggedOn(*row, false);
}
