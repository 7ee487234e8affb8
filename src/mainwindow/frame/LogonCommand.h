#pragma once

#include "core/session/OpenSessions.h"

#include <QString>
#include <functional>

struct Services;
struct SessionState;

// What logging on and off changes in the main window.
struct ILogonView {
    virtual ~ILogonView() = default;

    virtual void PressSessionButton(bool pressed) = 0;
    // Caption of miLogOnLogOff; the session button's tip follows it.
    virtual void SetSessionCaption(const QString& caption) = 0;
    virtual void SetNumberingCaption(const QString& caption) = 0; // of miNumbering
    virtual void SbrMessage(const QString& text) = 0;
    // The same, but not to be replaced at once by what the radio reports when it is connected.
    virtual void SbrMessageFirst(const QString& text) = 0;
    virtual void LoadTalkgroupCaptions() = 0;
    // Status messages, talkgroups and individuals; asks its own questions and never raises.
    virtual void LoadLists() = 0;
    virtual void ForbidRegrouping() = 0;
    // What the panels say about the radio no longer holds.
    virtual void ForgetRadio() = 0;
    // Covers the log and the lists, or shows them again.
    virtual void CoverLists(bool on) = 0;
    virtual void SetCommandStates() = 0;
};

// The command miLogOnLogOff: logs on when nobody is logged on, else off. It shows its own messages and never
// raises; a step that fails is skipped unless it is said to stop the command.
class LogonCommand {
public:
    LogonCommand(const Services& services, SessionState& state, ILogonView& view);

    void Run();
    // What remains of the session when the program ends: this console's radio off duty, profile unmarked,
    // link closed. A call that has come in meanwhile is waited for in the event loop, with the window open.
    void EndSession();
    // The program has been told to end at once: the radio hangs up, and from now on nobody can log on and
    // nothing is asked.
    void HangUp();

private:
    void Logon();
    bool OpenSession();
    void EndLeftSessions();
    bool EndLeft(OpenSessions::Session& session);
    void KeepSession();
    void AwaitEndOfCall();
    bool ReadRights();
    bool ConnectRadio();
    void Logoff();
    void ShowFailure(const std::exception& failure);
    bool Attempt(const std::function<void()>& step);
    QString Text(int id) const;

    const Services& m_services;
    SessionState& m_state;
    ILogonView& m_view;
    OpenSessions m_openSessions;
    OpenSessions::Session m_session; // the current one
    bool m_ending = false;           // the program has been told to end
    bool m_coversLists = false;      // site setting, as last read successfully
    bool m_running = false;          // an operator can press the button again while a dialog is open
};
