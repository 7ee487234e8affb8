#include "mainwindow/frame/LogonCommand.h"

#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/session/DbSession.h"
#include "core/session/UserProfile.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "dao/Workspace.h"
#include "dao/records/Database.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/frame/CoverSetting.h"
#include "mainwindow/frame/Services.h"
#include "radio/facade/Map27Executive.h"

#include <QCoreApplication>
#include <QScopedValueRollback>

LogonCommand::LogonCommand(const Services& services, SessionState& state, ILogonView& view)
    : m_services(services),
      m_state(state),
      m_view(view),
      m_openSessions(services.settings)
{
}

void LogonCommand::Run()
{
    if (m_running || m_ending)
        return;
    const QScopedValueRollback running(m_running, true);
    if (m_state.LoggedOn)
        Logoff();
    else
        Logon();
}

void LogonCommand::Logon()
{
    m_view.PressSessionButton(false);
    if (!OpenSession() || !ReadRights())
        return;
    Attempt([this] { EndLeftSessions(); });
    if (!ConnectRadio() || m_ending)
        return;
    Attempt([this] { KeepSession(); });
    Attempt([this] { m_services.profile.ReadUserProfile(); });
    if (m_ending) { // while it was asking
        EndSession();
        return;
    }
    Attempt([this] { m_view.LoadTalkgroupCaptions(); });
    m_state.LoggedOn = true;
    m_coversLists = CoversAfterLogoff(m_services.session);
    m_view.CoverLists(false);
    m_view.LoadLists();
    m_view.SetSessionCaption(Text(MainText::Logout));
    m_view.PressSessionButton(true);
    Attempt([this] { m_services.settings.IncrementLogonCount(); });
    Attempt([this] {
        m_view.SetNumberingCaption(m_services.executive.CurrentNumberingName() + QStringLiteral("..."));
    });
    m_view.SbrMessageFirst(Text(MainText::LoggedOn));
    m_view.SetCommandStates();
}

bool LogonCommand::OpenSession()
{
    try {
        m_services.logon.Logon(true, true);
        return true;
    } catch (const std::exception& failure) {
        if (CodeOf(failure) == ErrorCode::LogonCancelled)
            m_view.SbrMessage(DescribeError(failure, m_services.strings));
        else
            ShowFailure(failure);
        return false;
    }
}

bool LogonCommand::ReadRights()
{
    try {
        m_state.Administrator = m_services.session.IsMemberOf(QStringLiteral("Admins"));
        return true;
    } catch (const std::exception& failure) {
        ShowFailure(failure);
        Attempt([this] { m_services.logon.Logoff(); });
        return false;
    }
}

bool LogonCommand::ConnectRadio()
{
    try {
        m_services.executive.Connect();
        return true;
    } catch (const std::exception& failure) {
        if (CodeOf(failure) == ErrorCode::NumberingNotConfigured) {
            m_services.prompt.ShowInfo(DescribeError(failure, m_services.strings));
            return true;
        }
        ShowFailure(failure);
        m_state.Administrator = false;
        Attempt([this] { m_services.logon.Logoff(); });
        return false;
    }
}

void LogonCommand::Logoff()
{
    m_view.PressSessionButton(true);
    if (!m_services.prompt.AskConfirmation(Text(MainText::LogoutQuestion)))
        return;
    m_coversLists = CoversAfterLogoff(m_services.session, m_coversLists);
    EndSession();
    Attempt([this] { m_services.logon.Logoff(); });
    m_view.ForgetRadio();
    m_view.CoverLists(m_coversLists);
    m_view.SetSessionCaption(Text(MainText::Logon));
    m_view.PressSessionButton(false);
    m_state = {};
    m_view.ForbidRegrouping();
    m_view.SbrMessage(Text(MainText::LoggedOff));
    m_view.SetCommandStates();
}

void LogonCommand::HangUp()
{
    if (m_ending)
        return;
    m_ending = true;
    m_session.callsign = m_services.executive.MyCallsign();
    Attempt([this] { m_services.executive.Disconnect(); });
}

void LogonCommand::EndSession()
{
    if (!m_ending)
        m_session.callsign = m_services.executive.MyCallsign();
    // Whoever was asked knew of a call that was up then. One that comes while the database is waited for is
    // nobody's to cut.
    if (m_services.executive.IsInCall())
        Attempt([this] { m_services.executive.Disconnect(); });
    // What is left to do is written down first: the rest may take too long.
    Attempt([this] { m_openSessions.Keep(m_session); });
    Attempt([this] { m_services.executive.UpdateDutyStatus(m_session.callsign, false); });
    const auto onFailure = m_ending ? UserProfile::OnFailure::GiveUp : UserProfile::OnFailure::Ask;
    bool cleared = false;
    Attempt([&] { cleared = m_services.profile.ClearLoggedOnFlag(onFailure); });
    if (cleared)
        Attempt([this] { m_openSessions.Forget(m_session); });
    AwaitEndOfCall();
    Attempt([this] { m_services.executive.Disconnect(); });
}

void LogonCommand::AwaitEndOfCall()
{
    if (m_ending || !m_services.executive.IsInCall())
        return;
    m_view.SbrMessageFirst(Text(MainText::EndsAfterCall));
    while (!m_ending && m_services.executive.IsInCall())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void LogonCommand::KeepSession()
{
    m_session = {};
    m_session = {m_services.session.Database().Id(), m_services.session.Workspace().UserName(), {}};
    m_openSessions.Keep(m_session);
}

// Sessions of this console that were cut short. An operator other than theirs may lack the right to put them
// right; they then wait for one who has it.
void LogonCommand::EndLeftSessions()
{
    for (OpenSessions::Session session : m_openSessions.Of(m_services.session.Database().Id()))
        if (EndLeft(session))
            m_openSessions.Forget(session);
        else
            m_openSessions.Keep(session);
}

bool LogonCommand::EndLeft(OpenSessions::Session& session)
{
    if (!session.callsign.isEmpty())
        m_services.executive.UpdateDutyStatus(session.callsign, false);
    session.callsign.clear();
    return Attempt([&] { m_services.profile.ClearLoggedOnFlagOf(session.user); });
}

void LogonCommand::ShowFailure(const std::exception& failure)
{
    m_services.prompt.ShowError(DescribeError(failure, m_services.strings));
}

bool LogonCommand::Attempt(const std::function<void()>& step)
{
    try {
        step();
        return true;
    } catch (const std::exception& failure) {
        ProgramLog::Write(DescribeError(failure, m_services.strings));
        return false;
    }
}

QString LogonCommand::Text(int id) const
{
    return m_services.strings.LoadString(id);
}
