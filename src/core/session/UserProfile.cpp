#include "core/session/UserProfile.h"

#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/session/DbSession.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "dao/Workspace.h"

#include <functional>

namespace {

// The row of an account, made current; null when it has none.
std::unique_ptr<dao::Recordset> FindRow(IDbSession& session, const QString& user)
{
    auto rows = session.Database().OpenTable("user_profile");
    rows->SetIndex("i_user");
    rows->Seek(user);
    return rows->NoMatch() ? nullptr : std::move(rows);
}

std::unique_ptr<dao::Recordset> FindOwnRow(IDbSession& session)
{
    return FindRow(session, session.Workspace().UserName());
}

void StoreLoggedOn(dao::Recordset& row, bool on)
{
    row.Edit();
    row.SetField("logged_on", on);
    row.Update();
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
            const auto row = FindOwnRow(m_session);
            if (!row)
                return;
            m_marker = row->Field("profile_id").toInt();
            m_allowDr = row->Field("allow_dr").toBool();
            StoreLoggedOn(*row, true);
        });
}

bool UserProfile::ClearLoggedOnFlag(OnFailure onFailure)
{
    if (!m_marker)
        return true;
    const bool cleared = Retry(onFailure == OnFailure::Ask ? &m_prompt : nullptr, m_strings, [this] {
        if (const auto row = FindOwnRow(m_session))
            StoreLoggedOn(*row, false);
    });
    if (cleared)
        m_marker.reset();
    return cleared;
}

void UserProfile::ClearLoggedOnFlagOf(const QString& user)
{
    const auto row = FindRow(m_session, user);
    if (row && row->Field("logged_on").toBool())
        StoreLoggedOn(*row, false);
}
