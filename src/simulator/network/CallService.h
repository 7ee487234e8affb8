#pragma once

#include "simulator/network/Air.h"
#include "simulator/network/Attempt.h"

#include <functional>

namespace sim {

// The radio's one call, made or taken, with its hook and its transmit key.
class CallService {
public:
    enum class State {
        Idle,
        SettingUp, // outgoing, not yet connected
        Ringing,   // incoming, to be answered
        Answering, // off hook, not yet connected
        Connected,
    };

    // `hookChanged` is called after each change of hook or transmit key that the console has to be told of,
    // `calledBack` with a party that has noted the console's call.
    CallService(Air& air, std::function<void()> hookChanged,
                std::function<void(map27::Address, Milliseconds)> calledBack);

    State CurrentState() const { return m_state; }
    bool OffHook() const { return m_state == State::Answering || m_state == State::Connected; }
    bool Transmitting() const { return m_transmitting; }

    // The console's A4 or A5. The radio has made sure that nothing else is open and that the address can be
    // called.
    void SetUp(const map27::CallMessage& message);
    // Hook and transmit key as the console wants them.
    void Control(const map27::RadioControlMessage& control);
    // The console's 86 or A6. Does nothing without a call: it may have crossed the news of the call's end.
    void Clear();

    // A call for this radio. Returns why it cannot come in, in plain words; empty when it does. It replaces a
    // call that is being set up; an emergency call replaces any other.
    std::string ComeIn(const CallAction& call);
    // The other side hangs up or stops ringing. Returns why it cannot, in plain words.
    std::string HangUpByOther();

    // Everything ends: the console is told that there is no service, or nothing at all.
    void LoseService();
    void Drop();

private:
    void TakeSetUpStep(StepOutcome outcome, std::uint8_t cause, const Reaction& reaction);
    void Connect(Milliseconds talk);
    void Answer();
    void EndFirst();
    void End();
    void StartLimit();
    map27::CallMessage IncomingMessage(const CallAction& call) const;
    void TellSetUp(map27::AckOutcome outcome, std::uint8_t cause);
    void TellReceive(map27::AckOutcome outcome, std::uint8_t cause);
    void TellCleared(bool abnormal, std::uint8_t cause);
    void Refuse(std::uint8_t reason);

    Air& m_air;
    std::function<void()> m_hookChanged;
    std::function<void(map27::Address, Milliseconds)> m_calledBack;
    State m_state = State::Idle;
    bool m_transmitting = false;
    map27::Party m_party;  // the other side, as told to the console
    map27::Party m_called; // whom the console called
    Milliseconds m_hangUpAfter{};
    Attempt m_attempt;
    Timer m_ringing; // the caller gives up, or the answer takes effect
    Timer m_talk;    // the other side hangs up
    Timer m_warning; // of the maximum call time
    Timer m_limit;
};

} // namespace sim
