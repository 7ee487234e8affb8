#include "map27/terminal/Terminal.h"

#include "map27/codec/Causes.h"

namespace map27 {

namespace {

std::uint8_t SetupDetails(bool emergency, bool priority, bool dialog)
{
    constexpr int oneWay = 0x20;
    constexpr int normalPriority = 0x08; // clear asks for high priority
    const int details = (dialog ? 0 : oneWay) | (emergency || priority ? 0 : normalPriority);
    return static_cast<std::uint8_t>(details);
}

} // namespace

std::optional<Refusal> Terminal::CheckFree() const
{
    if (!m_link.IsReady())
        return Refusal{.code = RefusalCode::LinkNotReady};
    if (m_state != TerminalState::Idle)
        return Refusal{.code = RefusalCode::TransactionOpen};
    return std::nullopt;
}

OperationResult Terminal::Finish(std::optional<Refusal> refusal, TimePoint now)
{
    return {std::move(refusal), TakeOutput(now)};
}

// ---- messages -----------------------------------------------------------------------------------------

OperationResult Terminal::SendStatus(Address to, unsigned status, TimePoint now)
{
    if (status > HighestStatus)
        return Finish(
            Refusal{.code = RefusalCode::StatusOutOfRange, .length = status, .limit = HighestStatus}, now);
    return BeginMessage(to, StatusMessage{{to, {}}, static_cast<std::uint8_t>(status)}, now);
}

OperationResult Terminal::SendText(Address to, std::string_view utf8, TextCoding coding, TimePoint now)
{
    auto encoded = EncodeText(utf8, coding);
    if (const auto* problem = std::get_if<TextProblem>(&encoded))
        return Finish(Refusal{.code = RefusalCode::Text, .text = *problem}, now);
    auto& text = std::get<EncodedText>(encoded);
    return BeginMessage(to, ShortDataMessage{text.size, {to, {}}, std::move(text.data)}, now);
}

OperationResult Terminal::SendBinary(Address to, OctetSpan octets, TimePoint now)
{
    const std::size_t limit = *MostUnits(Coding::Binary, DataSize::Short) / 8;
    if (octets.empty())
        return Finish(Refusal{.code = RefusalCode::DataEmpty}, now);
    if (octets.size() > limit)
        return Finish(Refusal{.code = RefusalCode::DataTooLong, .length = octets.size(), .limit = limit},
                      now);
    ShortData data{Coding::Binary, 8, Octets(octets.begin(), octets.end())};
    return BeginMessage(to, ShortDataMessage{DataSize::Short, {to, {}}, std::move(data)}, now);
}

OperationResult Terminal::BeginMessage(Address to, const ToRadio& message, TimePoint now)
{
    if (!IsSendable(to))
        return Finish(Refusal{.code = RefusalCode::AddressNotSendable}, now);
    if (auto refusal = CheckFree())
        return Finish(std::move(refusal), now);
    const Octets octets = EncodeToRadio(message);
    // One that has to wait is checked now, as long as there is somebody to refuse to.
    if (octets.size() > m_link.LongestMessage())
        return Finish(Refusal{.code = RefusalCode::MessageTooLongForLink,
                              .length = octets.size(),
                              .limit = m_link.LongestMessage()},
                      now);
    if (m_cancelled.messageEnd)
        m_heldMessage = octets;
    else if (auto refusal = Transmit(octets, now))
        return Finish(std::move(refusal), now);
    m_state = TerminalState::MessageWait;
    m_party = to;
    return Finish(std::nullopt, now);
}

// The cancelled message has ended, or has had its time.
void Terminal::ReleaseHeldMessage(TimePoint now)
{
    m_cancelled.messageEnd.reset();
    if (!m_heldMessage)
        return;
    const Octets octets = *m_heldMessage;
    m_heldMessage.reset();
    if (const auto refusal = Transmit(octets, now)) {
        TellReport(ReportKind::NotDelivered, "not sent: " + RefusalText(*refusal), octets);
        Tell(MessageProgress{Type::MessageNegative, 0, Type::MessageNegative, m_party});
        m_state = TerminalState::Idle;
        EndTransaction();
    }
}

// ---- calls --------------------------------------------------------------------------------------------

OperationResult Terminal::MakeCall(Address to, bool emergency, bool priority, bool dialog, TimePoint now)
{
    if (!IsSendable(to))
        return Finish(Refusal{.code = RefusalCode::AddressNotSendable}, now);
    return BeginCall({to, {}}, emergency, priority, dialog, now);
}

OperationResult Terminal::MakeGatewayCall(int gateway, std::string_view digits, bool emergency, bool priority,
                                          bool dialog, TimePoint now)
{
    const bool pstn = gateway == static_cast<int>(Gateway::Pstn);
    if (!pstn && gateway != static_cast<int>(Gateway::Pabx))
        return Finish(Refusal{.code = RefusalCode::GatewayUnknown}, now);
    if (digits.empty())
        return Finish(Refusal{.code = RefusalCode::DigitsMissing}, now);
    if (!PackDigits(digits))
        return Finish(Refusal{.code = RefusalCode::DigitsInvalid}, now);
    if (digits.size() > MostDigits)
        return Finish(
            Refusal{.code = RefusalCode::DigitsTooMany, .length = digits.size(), .limit = MostDigits}, now);
    Party to;
    to.address.ident = pstn ? Ident::Pstn : Ident::Pabx;
    to.description.kind = AddressKind::Digits;
    to.description.digits = digits;
    return BeginCall(to, emergency, priority, dialog, now);
}

OperationResult Terminal::BeginCall(const Party& to, bool emergency, bool priority, bool dialog,
                                    TimePoint now)
{
    if (auto refusal = CheckFree())
        return Finish(std::move(refusal), now);
    const CallMessage call{emergency, to, {SetupDetails(emergency, priority, dialog)}, {}};
    if (auto refusal = Transmit(call, now))
        return Finish(std::move(refusal), now);
    m_state = TerminalState::OutcallWait;
    m_party = to.address;
    return Finish(std::nullopt, now);
}

OperationResult Terminal::AnswerCall(TimePoint now)
{
    if (m_state != TerminalState::IncallWait)
        return Finish(Refusal{.code = RefusalCode::NoIncomingCall}, now);
    if (auto refusal = Transmit(RadioControlMessage{.offHook = true, .transmit = false}, now))
        return Finish(std::move(refusal), now);
    m_answered = true;
    return Finish(std::nullopt, now);
}

OperationResult Terminal::RefuseCall(TimePoint now)
{
    if (m_state != TerminalState::IncallWait)
        return Finish(Refusal{.code = RefusalCode::NoIncomingCall}, now);
    HangUp(now);
    return Finish(std::nullopt, now);
}

OperationResult Terminal::SetTransmit(bool on, TimePoint now)
{
    if (m_state != TerminalState::Active) {
        if (!on)
            return Finish(std::nullopt, now);
        const auto code = m_link.IsReady() ? RefusalCode::NoCall : RefusalCode::LinkNotReady;
        return Finish(Refusal{.code = code}, now);
    }
    // Off-hook stays set, or the radio may drop the call.
    if (auto refusal = Transmit(RadioControlMessage{.offHook = true, .transmit = on}, now))
        return Finish(std::move(refusal), now);
    m_transmitting = on;
    return Finish(std::nullopt, now);
}

TerminalOutput Terminal::ClearCall(TimePoint now)
{
    HangUp(now);
    return TakeOutput(now);
}

TerminalOutput Terminal::CancelTransaction(TimePoint now)
{
    CancelMessage(now);
    if (m_state != TerminalState::Active)
        HangUp(now);
    return TakeOutput(now);
}

void Terminal::HangUp(TimePoint now)
{
    switch (m_state) {
    case TerminalState::Idle:
    case TerminalState::MessageWait:
        return;
    case TerminalState::OutcallWait:
        CancelOutcall(now);
        break;
    case TerminalState::IncallWait:
        TransmitOrReport(RadioControlMessage{}, now);
        m_cancelled.mismatch = now + m_parameters.cancelWait;
        break;
    case TerminalState::Active:
        TransmitOrReport(ClearMessage{false, m_party, ClearCause::EndCall}, now);
        m_cancelled.mismatch = now + m_parameters.cancelWait;
        m_cancelled.call = now + m_parameters.cancelWait;
        m_cancelled.calledParty = m_party;
        break;
    }
    m_state = TerminalState::Idle;
    EndTransaction();
}

void Terminal::CancelOutcall(TimePoint now)
{
    TransmitOrReport(ClearMessage{true, m_party, ClearCause::CancelAttempt}, now);
    m_cancelled.mismatch = now + m_parameters.cancelWait;
    m_cancelled.call = now + m_parameters.cancelWait;
    m_cancelled.calledParty = m_party;
}

void Terminal::CancelMessage(TimePoint now)
{
    if (m_state != TerminalState::MessageWait)
        return;
    // One that was never sent leaves no trace; the end that it waited for is still to come.
    if (!m_heldMessage) {
        TransmitOrReport(ClearMessage{true, m_party, ClearCause::CancelAttempt}, now);
        m_cancelled.messageEnd = now + m_parameters.cancelWait;
        m_cancelled.mismatch = now + m_parameters.cancelWait;
    }
    m_state = TerminalState::Idle;
    EndTransaction();
}

void Terminal::EndTransaction()
{
    m_party = {};
    m_progressSeen = false;
    m_answered = false;
    m_transmitting = false;
    m_heldMessage.reset();
}

} // namespace map27
