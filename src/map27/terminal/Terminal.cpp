#include "map27/terminal/Terminal.h"

#include "map27/codec/Causes.h"

#include <algorithm>
#include <utility>

namespace map27 {

TerminalParameters TerminalParameters::ForBitRate(unsigned bitsPerSecond)
{
    TerminalParameters parameters;
    parameters.link = LinkParameters::ForBitRate(bitsPerSecond);
    // A question and its answer may each be repeated once.
    parameters.questionWait = std::max(parameters.questionWait, 2 * parameters.link.t1);
    return parameters;
}

Terminal::Terminal(TerminalParameters parameters)
    : m_link(parameters.link),
      m_transaction(m_outbox),
      m_cancelled(m_outbox, parameters.cancelWait),
      m_held(m_outbox, m_transaction, m_cancelled, parameters.questionWait,
             [this](const ToRadio& message, TimePoint now) {
                 return TransmitOrReport(EncodeToRadio(message), now);
             }),
      m_endings(m_outbox, m_transaction, m_cancelled, m_held,
                [this](const Octets& message, TimePoint now) { return TransmitOrReport(message, now); }),
      m_questions(m_outbox, parameters.questionWait, [this](const ToRadio& question, TimePoint now) {
          return Transmit(EncodeToRadio(question), now);
      })
{
}

TerminalOutput Terminal::Start(TimePoint now)
{
    Stop();
    m_questions.ForgetReports();
    Take(m_link.Start(now), now);
    return TakeOutput(now);
}

void Terminal::Stop()
{
    m_held.LinkIsGone();
    m_link.Stop();
    m_transaction.End();
    m_cancelled.Forget();
    m_questions.Forget();
    m_outbox.Take();
}

TerminalOutput Terminal::Feed(OctetSpan octets, TimePoint now)
{
    Take(m_link.Feed(octets, now), now);
    return TakeOutput(now);
}

TerminalOutput Terminal::OnTime(TimePoint now)
{
    Take(m_link.OnTime(now), now);
    if (m_cancelled.MessageEnd() && *m_cancelled.MessageEnd() <= now)
        m_endings.ReleaseHeldMessage(now);
    m_questions.OnTime(now);
    m_held.OnTime(now);
    return TakeOutput(now);
}

Deadline Terminal::NextDeadline() const
{
    return Earlier(Earlier(m_link.NextDeadline(), m_cancelled.MessageEnd()),
                   Earlier(m_questions.NextDeadline(), m_held.NextDeadline()));
}

TerminalOutput Terminal::ResetLink(Milliseconds pause, TimePoint now)
{
    const bool wasOpen = State() != TerminalState::Idle;
    // Once the link is down nothing can be ended over it, and a call may outlive the link.
    m_endings.CancelMessage(now);
    m_endings.HangUp(now);
    m_held.LinkIsGone();
    m_held.GiveUpWish();
    m_cancelled.Forget();
    m_questions.Forget();
    if (wasOpen)
        m_outbox.Tell(TransactionCleared{ClearedBy::LinkReset, 0, 0});
    Take(m_link.Reset(now, pause), now);
    return TakeOutput(now);
}

// Link side.

void Terminal::Take(LinkOutput output, TimePoint now)
{
    for (Octets& frame : output.frames)
        m_outbox.Transmit(std::move(frame));
    // What is asked goes over the line, and so does what comes of it; each after what was under way.
    const Milliseconds delay = 2 * m_link.RoundTripTime();
    m_cancelled.SetDelay(delay);
    m_questions.SetDelay(delay);
    m_held.SetDelay(delay);
    for (const LinkEvent& event : output.events) {
        if (const auto* received = std::get_if<MessageReceived>(&event)) {
            OnMessage(received->message, now);
        } else if (const auto* ready = std::get_if<LinkReady>(&event)) {
            m_outbox.Tell(*ready);
            m_questions.Begin(m_held.LinkIsUp(now));
        } else if (const auto* failed = std::get_if<LinkFailed>(&event)) {
            m_held.LinkIsGone();
            m_transaction.Apply(RadioInput::LinkLost, {0, 0, {}});
            m_cancelled.Forget();
            m_questions.Forget();
            m_outbox.Tell(*failed);
        }
    }
}

std::optional<Refusal> Terminal::Transmit(const Octets& message, TimePoint now)
{
    SendOutcome outcome = m_link.Send(message, now);
    Take(std::move(outcome.output), now);
    if (outcome.result == SendResult::Accepted)
        ++m_outbox.counters.messagesSent;
    return RefusalOf(outcome.result, message.size(), m_link.LongestMessage());
}

// For messages whose refusal nobody waits for.
bool Terminal::TransmitOrReport(const Octets& message, TimePoint now)
{
    const auto refusal = Transmit(message, now);
    if (refusal)
        m_outbox.Report(ReportKind::NotDelivered, "not sent: " + RefusalText(*refusal), message);
    return !refusal;
}

TerminalOutput Terminal::TakeOutput(TimePoint now)
{
    if (m_link.IsReady())
        m_questions.AskNext(m_transaction.Request(), now);
    if (m_link.Backlog() == 0)
        m_held.HungUp();
    return m_outbox.Take();
}

// Messages from the radio.

void Terminal::OnMessage(const Octets& octets, TimePoint now)
{
    ++m_outbox.counters.messagesReceived;
    const auto decoded = DecodeFromRadio(octets);
    if (const auto* error = std::get_if<DecodeError>(&decoded)) {
        ++m_outbox.counters.undecodable;
        m_outbox.Report(ReportKind::Undecodable, DecodeErrorText(*error), octets);
        return;
    }
    std::visit([&](const auto& message) { Handle(message, octets, now); }, std::get<FromRadio>(decoded));
}

template <typename Message> void Terminal::Handle(const Message& message, const Octets& octets, TimePoint)
{
    if constexpr (requires { m_questions.Take(message); })
        m_questions.Take(message);
    else // escape, test result, modem data
        m_outbox.ReportNotUsed(TypeName(octets.front(), Direction::FromRadio), octets);
}

void Terminal::Handle(const StatusMessage& message, const Octets& octets, TimePoint)
{
    m_outbox.TellStatus(message, octets);
}

void Terminal::Handle(const ShortDataMessage& message, const Octets& octets, TimePoint)
{
    m_outbox.TellText(message, octets);
}

void Terminal::Handle(const CallMessage& message, const Octets& octets, TimePoint)
{
    const std::uint8_t type = message.emergency ? Type::EmergencyCall : Type::Call;
    const auto input =
        message.details.OffHookNeeded() ? RadioInput::IncomingRinging : RadioInput::IncomingConnected;
    m_transaction.Apply(input, {type, 0, octets});
    m_transaction.SetParty(message.party.address);
    m_outbox.Tell(IncomingCall{type, message.details.octet, m_questions.AsShown(message.party.address),
                               message.party.description});
}

void Terminal::Handle(const ClearMessage& message, const Octets& octets, TimePoint now)
{
    const RadioSignal signal{message.abnormal ? Type::Cancel : Type::Disconnect, message.cause, octets};
    if (AnswersCancelledMessage(signal, now))
        return;
    if (!message.abnormal && State() == TerminalState::OutcallWait && m_cancelled.TakeCallEnd(signal, now))
        return;
    m_transaction.Apply(InputOf(message), signal);
}

void Terminal::Handle(const AcknowledgementMessage& message, const Octets& octets, TimePoint now)
{
    const RadioSignal signal{message.TypeOctet(), message.cause, octets};
    const auto input = InputOf(message);
    if (!input) {
        m_outbox.ReportNotUsed(Outbox::Describe(signal), octets);
        return;
    }
    if (AnswersCancelledMessage(signal, now))
        return;
    if (State() == TerminalState::OutcallWait &&
        m_cancelled.TakeForCall(message, signal, m_transaction.Party(), now))
        return;
    m_transaction.Apply(*input, signal);
}

void Terminal::Handle(const ProtocolInfoMessage& message, const Octets& octets, TimePoint now)
{
    const RadioSignal signal{Type::ProtocolInfo, message.reason, octets};
    const bool refuses =
        message.reason >= ProtocolReason::Unrecognised && message.reason <= ProtocolReason::BusyLocally;
    if (refuses &&
        (AnswersCancelledMessage(signal, now) || m_questions.TakeComplaint(signal, m_transaction.Request())))
        return;
    if (m_cancelled.TakeMismatch(signal, now))
        return;
    m_outbox.Report(ReportKind::ProtocolInfo, signal);
    if (refuses && m_transaction.Request() != OpenRequest::None)
        m_transaction.Apply(RadioInput::Refused, signal);
}

void Terminal::Handle(const OperatingConditionMessage& message, const Octets&, TimePoint now)
{
    m_held.Settle(message, now); // first: whoever hears of the condition then knows whose call it is
    m_questions.Take(message);
}

// After a cancel the next message waits for the end of the cancelled one, and whatever comes until then is
// about that one.
bool Terminal::AnswersCancelledMessage(const RadioSignal& signal, TimePoint now)
{
    const bool nothingElseOpen = State() == TerminalState::Idle || m_transaction.IsHeld();
    const auto answer = m_cancelled.TakeForMessage(signal, nothingElseOpen);
    if (answer == CancelledRequests::Answer::EndOfMessage)
        m_endings.ReleaseHeldMessage(now);
    return answer != CancelledRequests::Answer::No;
}

// Operations.

std::optional<Refusal> Terminal::WhyNot(const Request& request) const
{
    if (const auto* refusal = std::get_if<Refusal>(&request))
        return *refusal;
    if (!m_link.IsReady())
        return Refusal{.code = RefusalCode::LinkNotReady};
    if (State() != TerminalState::Idle)
        return Refusal{.code = RefusalCode::TransactionOpen};
    return std::nullopt;
}

OperationResult Terminal::Finish(std::optional<Refusal> refusal, TimePoint now)
{
    return {std::move(refusal), TakeOutput(now)};
}

OperationResult Terminal::SendStatus(Address to, unsigned status, TimePoint now)
{
    return BeginMessage(to, StatusRequest(to, status), now);
}

OperationResult Terminal::SendText(Address to, std::string_view utf8, TextCoding coding, TimePoint now)
{
    return BeginMessage(to, TextRequest(to, utf8, coding), now);
}

OperationResult Terminal::SendBinary(Address to, OctetSpan octets, TimePoint now)
{
    return BeginMessage(to, BinaryRequest(to, octets), now);
}

OperationResult Terminal::BeginMessage(Address to, const Request& request, TimePoint now)
{
    if (auto refusal = WhyNot(request))
        return Finish(std::move(refusal), now);
    const Octets octets = EncodeToRadio(std::get<ToRadio>(request));
    // A message that has to wait is checked now, while it can still be refused.
    if (octets.size() > m_link.LongestMessage())
        return Finish(RefusalOf(SendResult::TooLong, octets.size(), m_link.LongestMessage()), now);
    const bool waits = m_cancelled.MessageEnd().has_value();
    if (!waits) {
        if (auto refusal = Transmit(octets, now))
            return Finish(std::move(refusal), now);
    }
    m_transaction.Begin(TerminalState::MessageWait, to, waits ? std::optional(octets) : std::nullopt);
    return Finish(std::nullopt, now);
}

OperationResult Terminal::MakeCall(Address to, bool emergency, bool priority, bool dialog, TimePoint now)
{
    return BeginCall(CallRequest(to, {emergency, priority, dialog}), now);
}

OperationResult Terminal::MakeGatewayCall(int gateway, std::string_view digits, bool emergency, bool priority,
                                          bool dialog, TimePoint now)
{
    return BeginCall(GatewayCallRequest(gateway, digits, {emergency, priority, dialog}), now);
}

OperationResult Terminal::BeginCall(const Request& request, TimePoint now)
{
    if (auto refusal = WhyNot(request))
        return Finish(std::move(refusal), now);
    const auto& call = std::get<ToRadio>(request);
    if (auto refusal = Transmit(EncodeToRadio(call), now))
        return Finish(std::move(refusal), now);
    m_transaction.Begin(TerminalState::OutcallWait, std::get<CallMessage>(call).party.address);
    return Finish(std::nullopt, now);
}

OperationResult Terminal::AnswerCall(TimePoint now)
{
    if (State() != TerminalState::IncallWait)
        return Finish(Refusal{.code = RefusalCode::NoIncomingCall}, now);
    auto refusal = Transmit(EncodeToRadio(RadioControlMessage{.offHook = true, .transmit = false}), now);
    if (!refusal)
        m_transaction.SetAnswered();
    return Finish(std::move(refusal), now);
}

OperationResult Terminal::RefuseCall(TimePoint now)
{
    if (State() != TerminalState::IncallWait)
        return Finish(Refusal{.code = RefusalCode::NoIncomingCall}, now);
    m_endings.HangUp(now);
    return Finish(std::nullopt, now);
}

OperationResult Terminal::SetTransmit(bool on, TimePoint now)
{
    if (State() != TerminalState::Active) {
        if (!on)
            return Finish(std::nullopt, now);
        return Finish(Refusal{.code = m_link.IsReady() ? RefusalCode::NoCall : RefusalCode::LinkNotReady},
                      now);
    }
    // Off-hook stays set, or the radio may drop the call.
    auto refusal = Transmit(EncodeToRadio(RadioControlMessage{.offHook = true, .transmit = on}), now);
    if (!refusal)
        m_transaction.SetTransmitting(on);
    return Finish(std::move(refusal), now);
}

TerminalOutput Terminal::ClearCall(TimePoint now)
{
    m_endings.HangUp(now);
    return TakeOutput(now);
}

OperationResult Terminal::PutOnHook(TimePoint now)
{
    if (State() != TerminalState::Idle && State() != TerminalState::MessageWait) {
        m_endings.HangUp(now);
        return Finish(std::nullopt, now);
    }
    auto refusal = Transmit(EncodeToRadio(RadioControlMessage{}), now);
    if (!refusal)
        m_cancelled.AddControl(now);
    return Finish(std::move(refusal), now);
}

TerminalOutput Terminal::CancelTransaction(TimePoint now)
{
    m_endings.CancelMessage(now);
    if (State() != TerminalState::Active)
        m_endings.HangUp(now);
    return TakeOutput(now);
}

OperationResult Terminal::RequestRadioInfo(unsigned kind, TimePoint now)
{
    if (kind > static_cast<unsigned>(RadioInfo::Network))
        return Finish(Refusal{.code = RefusalCode::UnknownQuestion}, now);
    return Finish(m_questions.Ask(static_cast<RadioInfo>(kind), true, m_transaction.Request(), now), now);
}

TerminalOutput Terminal::Probe(TimePoint now)
{
    if (m_link.IsReady())
        m_questions.Probe(m_transaction.Request(), now);
    return TakeOutput(now);
}

TerminalOutput Terminal::HoldReceiving(bool hold, TimePoint now)
{
    Take(m_link.HoldReceiving(hold, now), now);
    return TakeOutput(now);
}

} // namespace map27
