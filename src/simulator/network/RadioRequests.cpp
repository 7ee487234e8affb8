#include "simulator/network/Radio.h"

#include "map27/codec/Causes.h"

#include <algorithm>

// What the console asks of the radio, and what comes of it.

namespace sim {

namespace {

constexpr std::uint8_t noService = 0x04;
constexpr std::uint8_t cancelAttempt = 0x08;
constexpr std::uint8_t cancelInclude = 0x09;
constexpr std::uint8_t cancelDiversion = 0x0A;
constexpr std::uint8_t hangUp = 0x07;
constexpr std::uint8_t operatingConditionReason = 3;

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

} // namespace sim
