#include "map27/terminal/Terminal.h"

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

Terminal::Terminal(TerminalParameters parameters) : m_parameters(parameters), m_link(parameters.link) {}

TerminalOutput Terminal::Start(TimePoint now)
{
    Stop();
    m_ownPrefix.reset();
    m_personality = {};
    m_numbering = {};
    m_settings = {};
    m_operatingCondition = {};
    m_network = {};
    Take(m_link.Start(now), now);
    return TakeOutput(now);
}

void Terminal::Stop()
{
    m_link.Stop();
    m_state = TerminalState::Idle;
    EndTransaction();
    m_cancelled = {};
    ForgetQuestions();
    m_output = {};
}

TerminalOutput Terminal::Feed(OctetSpan octets, TimePoint now)
{
    Take(m_link.Feed(octets, now), now);
    return TakeOutput(now);
}

TerminalOutput Terminal::OnTime(TimePoint now)
{
    Take(m_link.OnTime(now), now);
    if (m_cancelled.messageEnd && *m_cancelled.messageEnd <= now)
        ReleaseHeldMessage(now);
    GiveUpQuestions(now);
    return TakeOutput(now);
}

Deadline Terminal::NextDeadline() const
{
    Deadline deadline = Earlier(m_link.NextDeadline(), m_cancelled.messageEnd);
    for (const Question& question : m_openQuestions)
        deadline = Earlier(deadline, question.giveUpAt);
    return deadline;
}

TerminalOutput Terminal::ResetLink(Milliseconds pause, TimePoint now)
{
    const bool wasOpen = m_state != TerminalState::Idle;
    // Once the link is down nothing can be ended any more, and a call may outlive the link.
    CancelMessage(now);
    HangUp(now);
    m_cancelled = {};
    ForgetQuestions();
    if (wasOpen)
        Tell(TransactionCleared{ClearedBy::LinkReset, 0, 0});
    Take(m_link.Reset(now, pause), now);
    return TakeOutput(now);
}

// ---- link side ----------------------------------------------------------------------------------------

void Terminal::Take(LinkOutput output, TimePoint now)
{
    for (Octets& frame : output.frames)
        m_output.frames.push_back(std::move(frame));
    for (const LinkEvent& event : output.events) {
        if (const auto* received = std::get_if<MessageReceived>(&event))
            OnMessage(received->message, now);
        else if (const auto* ready = std::get_if<LinkReady>(&event))
            OnLinkReady(*ready);
        else if (const auto* failed = std::get_if<LinkFailed>(&event))
            OnLinkFailed(*failed);
    }
}

void Terminal::OnLinkReady(const LinkReady& ready)
{
    Tell(ready);
    ForgetQuestions();
    m_ownQuestions = {RadioInfo::Personality, RadioInfo::Numbering, RadioInfo::OperatingCondition,
                      RadioInfo::Network};
    m_personality.fresh = false;
    m_numbering.fresh = false;
    m_settings.fresh = false;
    m_operatingCondition.fresh = false;
    m_network.fresh = false;
}

void Terminal::OnLinkFailed(const LinkFailed& failed)
{
    Apply(RadioInput::LinkLost, {0, 0, {}});
    m_cancelled = {};
    ForgetQuestions();
    Tell(failed);
}

std::optional<Refusal> Terminal::Transmit(const ToRadio& message, TimePoint now)
{
    return Transmit(EncodeToRadio(message), now);
}

std::optional<Refusal> Terminal::Transmit(const Octets& message, TimePoint now)
{
    SendOutcome outcome = m_link.Send(message, now);
    Take(std::move(outcome.output), now);
    switch (outcome.result) {
    case SendResult::Accepted:
        ++m_counters.messagesSent;
        return std::nullopt;
    case SendResult::TooLong:
        return Refusal{.code = RefusalCode::MessageTooLongForLink,
                       .length = message.size(),
                       .limit = m_link.LongestMessage()};
    case SendResult::QueueFull:
        return Refusal{.code = RefusalCode::LinkBusy};
    case SendResult::NotReady:
    case SendResult::Empty:
        break;
    }
    return Refusal{.code = RefusalCode::LinkNotReady};
}

// For messages that have nobody to refuse to.
void Terminal::TransmitOrReport(const ToRadio& message, TimePoint now)
{
    const Octets octets = EncodeToRadio(message);
    if (const auto refusal = Transmit(octets, now))
        TellReport(ReportKind::NotDelivered, "not sent: " + RefusalText(*refusal), octets);
}

TerminalOutput Terminal::TakeOutput(TimePoint now)
{
    AskNext(now);
    return std::exchange(m_output, {});
}

void Terminal::TellReport(ReportKind kind, std::string text, const Octets& octets)
{
    Tell(Report{kind, std::move(text), octets});
}

} // namespace map27
