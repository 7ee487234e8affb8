#include "simulator/network/Radio.h"

#include "map27/codec/Causes.h"
#include "simulator/network/RequestText.h"

#include <algorithm>
#include <utility>

namespace sim {

namespace {

constexpr Milliseconds RestartPause{500};

// Whether a call or message can go there. A gateway takes only calls, and they need a number.
bool CanBeAddressed(const map27::Party& called, Service service)
{
    using map27::DescriptionKind;
    const DescriptionKind kind = called.description.kind;
    const bool gateway =
        called.address.ident == map27::Ident::Pstn || called.address.ident == map27::Ident::Pabx;
    if (!map27::IsSendable(called.address))
        return false;
    if (gateway)
        return service == Service::Call && kind == DescriptionKind::Digits &&
               !called.description.digits.empty();
    if (kind == DescriptionKind::PabxExtension)
        return service == Service::Call;
    const bool subscriber = called.address.ident <= HighestSubscriberIdent;
    return kind == DescriptionKind::None && (subscriber || service == Service::Call);
}

} // namespace

Radio::Radio(Scenario scenario, map27::LinkParameters link, std::uint64_t seed)
    : m_scenario(std::move(scenario)),
      m_random(seed),
      m_air{m_schedule, m_random, m_scenario, *this},
      m_link(link),
      m_reception(m_schedule, m_random, m_scenario.network.field, [this] { TellCondition(); }),
      m_interrogations(m_air),
      m_deliveries(m_air),
      m_messages(m_air,
                 [this](const map27::ToRadio& message) {
                     if (std::string remark = m_others.Take(message); !remark.empty())
                         Note(std::move(remark));
                 }),
      m_calls(
          m_air, [this] { TellCondition(); },
          [this](map27::Address from, Milliseconds after) { CallBack(from, after); }),
      m_faults(seed + 2),
      m_others(m_air, [this](const TextAction& report) { Report(report); })
{
    for (const FaultDescription& fault : FaultDescriptions)
        m_faults.Set(fault.kind, m_scenario.faults.Of(fault.kind));
}

RadioOutput Radio::Connect(TimePoint now)
{
    Enter(now);
    DropEverything();
    m_link.Stop();
    Take(m_link.Start(now));
    return TakeOutput();
}

RadioOutput Radio::Disconnect(TimePoint now)
{
    Enter(now);
    DropEverything();
    m_link.Stop();
    return TakeOutput();
}

RadioOutput Radio::Feed(map27::OctetSpan octets, TimePoint now)
{
    Enter(now);
    Take(m_link.Feed(octets, m_now));
    return TakeOutput();
}

RadioOutput Radio::OnTime(TimePoint now)
{
    Enter(now);
    Take(m_link.OnTime(m_now));
    return TakeOutput();
}

Deadline Radio::NextDeadline() const
{
    return map27::Earlier(m_link.NextDeadline(), m_schedule.NextDeadline());
}

Radio::Result Radio::Perform(const Action& action, TimePoint now)
{
    Enter(now);
    std::string problem = CheckAction(action, m_scenario.fleet);
    if (problem.empty())
        problem = std::visit([this](const auto& known) { return Do(known); }, action);
    return {std::move(problem), TakeOutput()};
}

map27::OperatingConditionMessage Radio::Condition() const
{
    map27::OperatingConditionMessage condition;
    condition.inContact = m_reception.InContact();
    condition.offHook = m_calls.OffHook();
    condition.transmitting = m_calls.Transmitting();
    condition.fieldStrength = m_reception.Strength();
    condition.maxCallTimeCode = m_scenario.network.maxCallTimeCode;
    return condition;
}

std::string Radio::Tell(const map27::FromRadio& message)
{
    NoteLosses();
    map27::SendResult told = map27::SendResult::Accepted;
    for (const map27::Octets& octets : m_faults.Strike(message)) {
        auto [result, output] = m_link.Send(octets, m_now);
        if (result == map27::SendResult::Accepted)
            ++m_accepted;
        Take(std::move(output));
        if (told == map27::SendResult::Accepted)
            told = result;
    }
    switch (told) {
    case map27::SendResult::Accepted:
        return {};
    case map27::SendResult::NotReady:
        return "no console is connected";
    case map27::SendResult::QueueFull:
        return "the console takes no more messages";
    case map27::SendResult::TooLong:
    case map27::SendResult::Empty:
        break;
    }
    return "the console only takes shorter messages";
}

void Radio::Enter(TimePoint now)
{
    m_now = std::max(m_now, now);
    m_schedule.RunUntil(m_now);
}

void Radio::Take(map27::LinkOutput output)
{
    for (map27::Octets& frame : output.frames)
        m_output.frames.push_back(std::move(frame));
    for (const map27::LinkEvent& event : output.events) {
        if (const auto* received = std::get_if<map27::MessageReceived>(&event)) {
            OnMessage(received->message);
        } else if (const auto* failed = std::get_if<map27::LinkFailed>(&event)) {
            Note(std::string("link lost: ") + map27::LinkFailureText(failed->reason));
            DropEverything();
        } else {
            Note("link ready");
        }
    }
}

void Radio::OnMessage(const map27::Octets& octets)
{
    const auto decoded = map27::DecodeToRadio(octets);
    if (const auto* message = std::get_if<map27::ToRadio>(&decoded)) {
        if (std::string request = DescribeRequest(*message, m_scenario.fleet); !request.empty())
            m_lastRequest = std::move(request);
        std::visit([this](const auto& known) { Handle(known); }, *message);
        return;
    }
    const auto error = std::get<map27::DecodeError>(decoded);
    Note("console sent " + map27::ToHex(octets) + ": " + map27::DecodeErrorText(error));
    Complain(error == map27::DecodeError::BadField ? map27::ProtocolReason::NotSupported
                                                   : map27::ProtocolReason::Unrecognised);
}

RadioOutput Radio::TakeOutput()
{
    NoteLosses();
    if (m_link.IsReady())
        m_deliveries.HandOver([this] { return LinkProgress{m_accepted, m_link.Backlog()}; });
    return std::exchange(m_output, {});
}

// Messages are acknowledged in order: those that a link loses are the last that it has accepted.
void Radio::NoteLosses()
{
    const std::uint64_t lost = m_link.Counters().messagesLost;
    if (lost == m_lost)
        return;
    m_deliveries.TakeBack(m_accepted - (lost - m_lost));
    m_lost = lost;
}

void Radio::DropEverything()
{
    m_messages.Drop();
    m_calls.Drop();
}

// What the console asks of the radio, and what becomes of it.

bool Radio::IsBusy() const
{
    return m_messages.IsOpen() || m_calls.CurrentState() != CallService::State::Idle;
}

bool Radio::Admit(const map27::Party& called, Service service)
{
    if (!m_reception.InContact()) {
        Tell(map27::ClearMessage{true, {}, map27::ClearCause::NoContact});
        return false;
    }
    if (IsBusy()) {
        Complain(map27::ProtocolReason::StateMismatch);
        return false;
    }
    if (!CanBeAddressed(called, service)) {
        Complain(map27::ProtocolReason::NotSupported);
        return false;
    }
    return true;
}

void Radio::Handle(const map27::StatusMessage& message)
{
    if (Admit(message.party, Service::Status))
        m_messages.Send(message);
}

void Radio::Handle(const map27::ShortDataMessage& message)
{
    if (Admit(message.party, Service::Text))
        m_messages.Send(message);
}

void Radio::Handle(const map27::CallMessage& message)
{
    if (message.details.Include())
        Complain(map27::ProtocolReason::Unrecognised);
    else if (Admit(message.party, Service::Call))
        m_calls.SetUp(message);
}

void Radio::Handle(const map27::ClearMessage& message)
{
    if (message.abnormal && message.cause != map27::ClearCause::CancelAttempt)
        return Complain(map27::ProtocolReason::NotSupported);
    if (!message.abnormal && message.cause != map27::ClearCause::EndCall)
        Note("console hangs up with cause " + map27::ToHex(map27::Octets{message.cause}));
    if (message.abnormal)
        m_messages.Cancel();
    m_calls.Clear();
}

void Radio::Handle(const map27::InterrogationMessage& message)
{
    if (static_cast<map27::RadioInfo>(message.reason) == map27::RadioInfo::OperatingCondition)
        TellCondition();
    else if (!m_interrogations.Answer(message.reason))
        Complain(map27::ProtocolReason::NotSupported);
}

void Radio::Handle(const map27::ProtocolInfoMessage& message)
{
    Note("console says: " +
         map27::CauseText(map27::Type::ProtocolInfo, message.reason, map27::Direction::ToRadio));
}

// What happens on the air side.

std::string Radio::Do(const StatusAction& action)
{
    std::string problem = WhyNothingArrives(map27::Facility::Status);
    return problem.empty() ? m_deliveries.Deliver(action) : problem;
}

std::string Radio::Do(const TextAction& action)
{
    const auto encoded = map27::EncodeText(action.text, action.coding);
    const auto* text = std::get_if<map27::EncodedText>(&encoded);
    const bool isMedium = text && text->size == map27::DataSize::Medium;
    std::string problem = WhyNothingArrives(isMedium ? map27::Facility::Mst : map27::Facility::Sst);
    return problem.empty() ? m_deliveries.Deliver(action) : problem;
}

std::string Radio::Do(const CallAction& action)
{
    std::string problem = WhyNothingArrives(action.data ? map27::Facility::Modem : map27::Facility::Voice);
    if (problem.empty())
        problem = m_calls.ComeIn(action);
    if (problem.empty())
        m_messages.Drop();
    return problem;
}

std::string Radio::Do(const ContactAction& action)
{
    if (!action.inContact && m_reception.InContact()) {
        if (m_messages.IsOpen())
            Tell(map27::ClearMessage{true, {}, map27::ClearCause::NoContact});
        m_messages.Drop();
        m_calls.LoseService();
    }
    m_reception.SetContact(action.inContact);
    return {};
}

std::string Radio::Do(const FieldAction& action)
{
    m_reception.SetStrength(action.strength);
    return {};
}

std::string Radio::Do(const BehaveAction& action)
{
    Subscriber& member = *m_scenario.fleet.Find(action.who);
    if (action.service)
        member.reactions.To(*action.service) = action.reaction;
    else
        member.reactions = Reactions::All(action.reaction);
    return {};
}

std::string Radio::Do(const SignalAction& action)
{
    m_others.Set(action);
    return {};
}

std::string Radio::Do(const NumberingAction& action)
{
    m_scenario.radio.address = action.address;
    m_scenario.radio.units = action.units.value_or(m_scenario.radio.units);
    m_scenario.radio.groups = action.groups.value_or(m_scenario.radio.groups);
    m_interrogations.TellNumbering();
    return {};
}

std::string Radio::Do(const StormAction& action)
{
    std::string problem = WhyNothingArrives(map27::Facility::Status);
    return problem.empty() ? m_deliveries.Deliver(action) : problem;
}

std::string Radio::Do(const FaultAction& action)
{
    m_faults.Set(action.kind, action.value);
    return {};
}

std::string Radio::Do(const RestartAction&)
{
    if (const std::size_t lost = m_deliveries.Kept(); lost > 0)
        Note(std::to_string(lost) + " messages for the console are lost with the restart");
    m_deliveries.Forget();
    DropEverything();
    Take(m_link.Reset(m_now, RestartPause));
    return {};
}

std::string Radio::WhyNothingArrives(std::uint8_t facility) const
{
    if (!m_link.IsReady())
        return "no console is connected";
    if (!m_reception.InContact())
        return "the radio is out of contact";
    if (!m_interrogations.Accepts(facility))
        return "the console has switched this kind of message or call off";
    return {};
}

void Radio::Report(const TextAction& report)
{
    // Nobody misses a report while there is no console to have it.
    if (const std::string problem = Do(report); !problem.empty() && m_link.IsReady())
        Note("report of " + m_scenario.fleet.Describe({report.from, {}}) + " left out: " + problem);
}

// A party that has noted the console's call calls back as soon as the radio is free.
void Radio::CallBack(map27::Address from, Milliseconds after)
{
    m_schedule.After(
        after,
        [this, from, after] {
            if (IsBusy() && m_link.IsReady())
                return CallBack(from, after);
            CallAction call;
            call.from = from;
            if (const std::string problem = Do(call); !problem.empty())
                Note(Describe(Action(call), m_scenario.fleet) + " left out: " + problem);
        });
}

} // namespace sim
