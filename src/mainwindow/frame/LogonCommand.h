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
    // The same, and not to be replaced at once by what the radio reports when it is connected.
    virtual void SbrMessageFirst(const QString& text) = 0;
    virtual void LoadTalkgroupCaptions() = 0;
    // Status messages, talkgroups and individuals; asks its own questions and never raises.
    virtual void LoadLists() = 0;
    virtual void ForbidRegrouping() = 0;
    // What the panels say of the radio holds no longer.
    virtual void ForgetRadio() = 0;
    // Covers log and lists, or shows them again.
    virtual void CoverLists(bool on) = 0;
    virtual void SetCommandStates() = 0;
};

// The command miLogOnLogOff: logs on when nobody is logged on, else off. It shows its own messages and never
// raises; a step whose failure is not said to stop it is passed over when it fails.
class LogonCommand {
public:
    LogonCommand(const Services& services, SessionState& state, ILogonView& view);

    void Run();
    // What remains of the session when the program ends: own radio off duty, profile unmarked, link closed.
    void EndSession();
    // The program is told to end at once: the radio hangs up, and from now on nobody logs on and nothing is
    // asked.
    void HangUp();

private:
    void Logon();
    bool OpenSession();
    void EndLeftSessions();
    bool EndLeft(OpenSessions::Session& session);
    void KeepSession();
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
    OpenSessions::Session m_session; // the present one
    bool m_ending = false;           // the program is told to end
    bool m_coversLists = false;      // site setting, as it was when it could be read last
    bool m_running = false;          // an operator can press the button again while a dialog is open
};
