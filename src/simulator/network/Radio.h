#pragma once

#include "map27/link/Link.h"
#include "simulator/network/Air.h"
#include "simulator/network/CallService.h"
#include "simulator/network/DeliveryService.h"
#include "simulator/network/InterrogationService.h"
#include "simulator/network/MessageFaults.h"
#include "simulator/network/MessageService.h"
#include "simulator/network/OtherRadios.h"
#include "simulator/network/Reception.h"

#include <utility>

namespace sim {

// What one call brought about.
struct RadioOutput {
    std::vector<map27::Octets> frames; // for the line, in order
    std::vector<std::string> notes;    // for a log, in English
};

// A MAP27 radio with the network around it: the radio's end of the link, and what MAP27 v1.5 asks of a radio.
// It has neither port nor clock of its own and is used like map27::Link. Times must not run backwards.
class Radio : private IConsole {
public:
    Radio(Scenario scenario, map27::LinkParameters link, std::uint64_t seed);

    // The line has come, or gone. A call in progress, or a message from the console, is lost with the link;
    // contact, field strength and behaviours stay.
    RadioOutput Connect(TimePoint now);
    RadioOutput Disconnect(TimePoint now);

    RadioOutput Feed(map27::OctetSpan octets, TimePoint now);
    RadioOutput OnTime(TimePoint now);
    Deadline NextDeadline() const;

    struct Result {
        std::string problem; // in plain words; empty: done
        RadioOutput output;
    };
    Result Perform(const Action& action, TimePoint now);

    bool IsLinkReady() const { return m_link.IsReady(); }
    CallService::State CallState() const { return m_calls.CurrentState(); }
    bool MessageOpen() const { return m_messages.IsOpen(); }
    map27::OperatingConditionMessage Condition() const;
    const Scenario& CurrentScenario() const { return m_scenario; }
    const OtherRadios& Others() const { return m_others; }
    // Messages for the console that it has not taken yet.
    std::size_t Waiting() const { return m_deliveries.Waiting() + m_link.Backlog(); }
    map27::LinkCounters LinkCounters() const { return m_link.Counters(); }
    // The console's last status, text or call, "status 5 to Unit20 (0/2)"; empty before the first.
    const std::string& LastRequest() const { return m_lastRequest; }

private:
    std::string Tell(const map27::FromRadio& message) override;
    void TellCondition() { Tell(Condition()); }
    void Complain(std::uint8_t reason) { Tell(map27::ProtocolInfoMessage{reason}); }

    void Enter(TimePoint now);
    void Take(map27::LinkOutput output);
    void OnMessage(const map27::Octets& octets);
    void Note(std::string text) { m_output.notes.push_back(std::move(text)); }
    RadioOutput TakeOutput();
    void NoteLosses();

    // Whether a message or call to this party may begin now; tells the console why not.
    bool Admit(const map27::Party& called, Service service);
    bool IsBusy() const;
    void CallBack(map27::Address from, Milliseconds after);
    void Handle(const map27::StatusMessage& message);
    void Handle(const map27::ShortDataMessage& message);
    void Handle(const map27::CallMessage& message);
    void Handle(const map27::ClearMessage& message);
    void Handle(const map27::RadioControlMessage& message) { m_calls.Control(message); }
    void Handle(const map27::InterrogationMessage& message);
    void Handle(const map27::SettingsMessage& message) { m_interrogations.Set(message); }
    void Handle(const map27::ProtocolInfoMessage& message);
    void Handle(const map27::VolumeMessage&) {} // there is no loudspeaker, and no answer either
    void Handle(const map27::RadioTestMessage&) { Complain(map27::ProtocolReason::NotSupported); }
    void Handle(const map27::DialledStringMessage&) { Complain(map27::ProtocolReason::NotSupported); }
    // Other protocols, modem data and the setting of diversions.
    template <typename Message> void Handle(const Message&) { Complain(map27::ProtocolReason::Unrecognised); }

    std::string Do(const StatusAction& action);
    std::string Do(const TextAction& action);
    std::string Do(const CallAction& action);
    std::string Do(const HangUpAction&) { return m_calls.HangUpByOther(); }
    std::string Do(const ContactAction& action);
    std::string Do(const FieldAction& action);
    std::string Do(const BehaveAction& action);
    std::string Do(const SignalAction& action);
    std::string Do(const NumberingAction& action);
    std::string Do(const StormAction& action);
    std::string Do(const FaultAction& action);
    std::string Do(const SilenceAction&) { return {}; } // of the line, not of the radio
    std::string Do(const RestartAction& action);
    std::string WhyNothingArrives(std::uint8_t facility) const;
    void DropEverything();
    void Report(const TextAction& report);

    Scenario m_scenario;
    Random m_random;
    Schedule m_schedule;
    Air m_air;
    map27::Link m_link;
    TimePoint m_now{};
    RadioOutput m_output;
    std::uint64_t m_accepted = 0; // messages that the link was given
    std::uint64_t m_lost = 0;     // of them, with a link
    std::string m_lastRequest;

    Reception m_reception;
    InterrogationService m_interrogations;
    DeliveryService m_deliveries;
    MessageService m_messages;
    CallService m_calls;
    MessageFaults m_faults;
    OtherRadios m_others;
};

} // namespace sim
