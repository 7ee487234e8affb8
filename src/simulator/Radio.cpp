#include "simulator/Radio.h"

#include "map27/Causes.h"
#include "simulator/RequestText.h"

#include <algorithm>
#include <utility>

namespace sim {

namespace {

constexpr std::uint8_t noService = 0x04;
constexpr std::uint8_t cancelAttempt = 0x08;
constexpr std::uint8_t cancelInclude = 0x09;
constexpr std::uint8_t cancelDiversion = 0x0A;
constexpr std::uint8_t hangUp = 0x07;
constexpr std::uint8_t operatingConditionReason = 3;
constexpr Milliseconds restartPause{500};

// Whether a call or message can go there: a gateway needs a number, and only calls go through one.
bool CanBeAddressed(const map27::Party& called, Service service)
{
    using map27::AddressKind;
    const AddressKind kind = called.description.kind;
    const bool gateway =
        called.address.ident == map27::Ident::Pstn || called.address.ident == map27::Ident::Pabx;
    if (!map27::IsSendable(called.address))
        return false;
    if (gateway)
        return service == Service::Call && kind == AddressKind::Digits && !called.description.digits.empty();
    if (kind == AddressKind::PabxExtension)
        return service == Service::Call;
    const bool subscriber = called.address.ident <= HighestSubscriberIdent;
    return kind == AddressKind::None && (subscriber || service == Service::Call);
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
      m_messages(m_air, [this](const map27::ToRadio& message) { Reach(message); }),
      m_calls(
          m_air, [this] { TellCondition(); },
          [this](map27::Address from, Milliseconds after) { CallBack(from, after); }),
      m_diversions(m_air, m_scenario.fleet),
      m_faults(seed + 2)
{
    for (const FaultDescription& fault : faultDescriptions)
        m_faults.Set(fault.kind, m_scenario.faults.Of(fault.kind));
    BuildOutstations();
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
    map27::SendResult told = map27::SendResult::Accepted;
    for (const map27::Octets& octets : m_faults.Strike(message)) {
        auto [result, output] = m_link.Send(octets, m_now);
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
        return "the console does not take any more messages";
    case map27::SendResult::TooLong:
    case map27::SendResult::Empty:
        break;
    }
    return "the console takes shorter messages only";
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

bool Radio::IsBusy() const
{
    return m_messages.IsOpen() || m_diversions.IsOpen() || m_calls.GetState() != CallService::State::Idle;
}

bool Radio::AdmitDiversion()
{
    if (!m_scenario.radio.diversions)
        Complain(map27::ProtocolReason::NotSupported);
    else if (!m_reception.InContact())
        Tell(map27::ClearMessage{true, {}, noService});
    else if (IsBusy())
        Complain(map27::ProtocolReason::StateMismatch);
    else
        return true;
    return false;
}

bool Radio::Admit(const map27::Party& called, Service service)
{
    if (!m_reception.InContact()) {
        Tell(map27::ClearMessage{true, {}, noService});
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
    const bool included = message.details.Include() && !message.emergency;
    if (included && m_calls.GetState() == CallService::State::Connected) {
        if (CanBeAddressed(message.party, Service::Call))
            m_calls.Include(message);
        else
            Complain(map27::ProtocolReason::NotSupported);
    } else if (Admit(message.party, Service::Call)) {
        m_calls.SetUp(message);
    }
}

void Radio::Handle(const map27::ClearMessage& message)
{
    if (message.abnormal && message.cause == cancelInclude)
        return m_calls.CancelInclude();
    if (message.abnormal && message.cause == cancelDiversion)
        return m_diversions.Abort();
    if (message.abnormal && message.cause != cancelAttempt)
        return Complain(map27::ProtocolReason::NotSupported);
    if (!message.abnormal && message.cause != hangUp)
        Note("console hangs up with cause " + map27::ToHex(map27::Octets{message.cause}));
    if (message.abnormal)
        m_messages.Cancel();
    m_calls.Clear();
}

void Radio::Handle(const map27::DiversionRequestMessage& message)
{
    if (AdmitDiversion())
        m_diversions.Set(message);
}

void Radio::Handle(const map27::DiversionCancelMessage& message)
{
    if (AdmitDiversion())
        m_diversions.Cancel(message);
}

void Radio::Handle(const map27::ModemDataMessage&)
{
    if (!m_scenario.radio.dataCalls)
        Complain(map27::ProtocolReason::NotSupported);
    else if (!m_calls.IsDataCall())
        Complain(map27::ProtocolReason::StateMismatch);
}

void Radio::Handle(const map27::InterrogationMessage& message)
{
    if (message.reason == operatingConditionReason)
        TellCondition();
    else if (!m_interrogations.Answer(message.reason))
        Complain(map27::ProtocolReason::NotSupported);
}

void Radio::Handle(const map27::ProtocolInfoMessage& message)
{
    Note("console says: " +
         map27::CauseText(map27::Type::ProtocolInfo, message.reason, map27::Direction::ToRadio));
}

std::string Radio::Do(const StatusAction& action)
{
    std::string problem = WhyNothingArrives(map27::Facility::Status, Service::Status);
    return problem.empty() ? m_deliveries.Deliver(action) : problem;
}

std::string Radio::Do(const TextAction& action)
{
    const auto encoded = map27::EncodeText(action.text, action.coding);
    const auto* text = std::get_if<map27::EncodedText>(&encoded);
    const bool isMedium = text && text->size == map27::DataSize::Medium;
    std::string problem =
        WhyNothingArrives(isMedium ? map27::Facility::Mst : map27::Facility::Sst, Service::Text);
    return problem.empty() ? m_deliveries.Deliver(action) : problem;
}

std::string Radio::Do(const CallAction& action)
{
    const std::uint8_t facility = action.data ? map27::Facility::Modem : map27::Facility::Voice;
    std::optional<Service> divertible;
    if (action.scope == CallScope::Individual)
        divertible = Service::Call;
    if (std::string problem = WhyNothingArrives(facility, divertible); !problem.empty())
        return problem;
    std::string problem = m_calls.ComeIn(action);
    if (problem.empty()) {
        m_messages.Drop();
        m_diversions.Drop();
    }
    return problem;
}

std::string Radio::Do(const ContactAction& action)
{
    if (!action.inContact && m_reception.InContact()) {
        if (m_messages.IsOpen() || m_diversions.IsOpen())
            Tell(map27::ClearMessage{true, {}, noService});
        m_messages.Drop();
        m_diversions.Drop();
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
    const map27::Address address = m_scenario.fleet.Find(action.who)->address;
    Outstation& outstation = *std::ranges::find(m_outstations, address, &Outstation::Address);
    if (action.isControl)
        outstation.SetControl(action.number, action.signal);
    else
        outstation.SetSensor(action.number, action.signal);
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

std::string Radio::Do(const ModemAction& action)
{
    if (!m_calls.IsDataCall())
        return "there is no data call";
    return Tell(map27::ModemDataMessage{action.octets});
}

std::string Radio::Do(const StormAction& action)
{
    std::string problem = WhyNothingArrives(map27::Facility::Status, Service::Status);
    return problem.empty() ? m_deliveries.Deliver(action) : problem;
}

std::string Radio::Do(const FaultAction& action)
{
    m_faults.Set(action.kind, action.value);
    return {};
}

std::string Radio::Do(const RestartAction&)
{
    if (const std::size_t lost = m_deliveries.Waiting(); lost > 0)
        Note(std::to_string(lost) + " messages for the console are lost with the restart");
    m_deliveries.Forget();
    DropEverything();
    Take(m_link.Reset(m_now, restartPause));
    return {};
}

std::string Radio::WhyNothingArrives(std::uint8_t facility, std::optional<Service> divertible) const
{
    if (!m_link.IsReady())
        return "no console is connected";
    if (!m_reception.InContact())
        return "the radio is out of contact";
    if (!m_interrogations.Accepts(facility))
        return "the console has switched this kind of message or call off";
    const Diversion* diversion =
        divertible ? m_scenario.fleet.FindDiversion(m_scenario.radio.address, *divertible) : nullptr;
    if (diversion)
        return "it is diverted to " + m_scenario.fleet.Describe({diversion->to, {}});
    return {};
}

RadioOutput Radio::TakeOutput()
{
    if (m_link.IsReady())
        m_deliveries.HandOver([this] { return m_link.Backlog(); });
    return std::exchange(m_output, {});
}

// Somebody who has noted a call of the console calls by himself, as soon as the radio is free.
void Radio::CallBack(map27::Address from, Milliseconds after)
{
    m_schedule.After(after, [this, from, after] {
        if (IsBusy() && m_link.IsReady())
            return CallBack(from, after);
        CallAction call;
        call.from = from;
        if (const std::string problem = Do(call); !problem.empty())
            Note(Describe(Action(call), m_scenario.fleet) + " left out: " + problem);
    });
}

void Radio::BuildOutstations()
{
    for (const Subscriber& member : m_scenario.fleet.members) {
        if (member.kind != SubscriberKind::Outstation)
            continue;
        m_outstations.emplace_back(
            m_schedule, m_random, member.address, member.outstation, [this](const TextAction& report) {
                // Nobody misses a report while there is no console to have it.
                if (const std::string problem = Do(report); !problem.empty() && m_link.IsReady())
                    Note("report of " + m_scenario.fleet.Describe({report.from, {}}) +
                         " left out: " + problem);
            });
    }
}

const Outstation* Radio::FindOutstation(map27::Address address) const
{
    const auto found = std::ranges::find(m_outstations, address, &Outstation::Address);
    return found == m_outstations.end() ? nullptr : &*found;
}

void Radio::Reach(const map27::ToRadio& message)
{
    if (const auto* status = std::get_if<map27::StatusMessage>(&message)) {
        const map27::Address called = status->party.address;
        const Diversion* diversion = m_scenario.fleet.FindDiversion(called, Service::Status);
        const map27::Address target = diversion ? diversion->to : called;
        const auto found = std::ranges::find(m_outstations, target, &Outstation::Address);
        if (found != m_outstations.end())
            found->Take(status->status);
    } else if (const auto* data = std::get_if<map27::ShortDataMessage>(&message);
               data && IsGroupCommand(data->data)) {
        if (const auto command = DecodeGroupCommand(data->data))
            m_groups.Obey(*command, data->party.address, m_scenario.fleet);
        else
            Note("a group command that no radio can follow: " + map27::ToHex(data->data.octets));
    }
}

void Radio::DropEverything()
{
    m_messages.Drop();
    m_calls.Drop();
    m_diversions.Drop();
}

} // namespace sim
