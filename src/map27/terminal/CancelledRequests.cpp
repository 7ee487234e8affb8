#include "map27/terminal/CancelledRequests.h"

#include "map27/codec/Causes.h"

namespace map27 {

namespace {

bool IsPast(const Deadline& deadline, TimePoint now)
{
    return !deadline || *deadline < now;
}

} // namespace

void CancelledRequests::AddMessage(TimePoint now)
{
    m_messageEnd = now + m_wait + m_delay;
    m_mismatch = now + m_wait + m_delay;
}

void CancelledRequests::AddCall(Address party, TimePoint now)
{
    m_mismatch = now + m_wait + m_delay;
    m_call = now + m_wait + m_delay;
    m_calledParty = party;
}

void CancelledRequests::Forget()
{
    m_messageEnd.reset();
    m_mismatch.reset();
    m_call.reset();
    m_calledParty = {};
}

CancelledRequests::Answer CancelledRequests::TakeForMessage(const RadioSignal& signal, bool nothingElseOpen)
{
    if (!m_messageEnd)
        return Answer::No;
    switch (signal.type) {
    case Type::MessageQueued:
        m_outbox.ReportLate(signal);
        return Answer::Progress;
    case Type::MessagePositive:
        break;
    case Type::MessageNegative:
        if (signal.cause == Cause::Aborted)
            m_mismatch.reset();
        break;
    case Type::Cancel:
        if (!nothingElseOpen && signal.cause != ClearCause::Unspecified)
            return Answer::No;
        m_mismatch.reset();
        break;
    case Type::ProtocolInfo:
        if (!nothingElseOpen || signal.cause != ProtocolReason::StateMismatch)
            return Answer::No;
        m_mismatch.reset();
        break;
    default:
        return Answer::No;
    }
    m_outbox.Report(ReportKind::CancelConfirmed, signal);
    return Answer::EndOfMessage;
}

bool CancelledRequests::TakeForCall(const AcknowledgementMessage& message, const RadioSignal& signal,
                                    Address party, TimePoint now)
{
    const Address about = message.party.address;
    if (message.subject != AckSubject::Setup || IsPast(m_call, now) || about.IsDummy() ||
        about != m_calledParty || about == party)
        return false;
    m_outbox.ReportLate(signal);
    return true;
}

bool CancelledRequests::TakeCallEnd(const RadioSignal& signal, TimePoint now)
{
    if (IsPast(m_call, now))
        return false;
    m_call.reset();
    m_outbox.Report(ReportKind::CancelConfirmed, signal);
    return true;
}

bool CancelledRequests::TakeMismatch(const RadioSignal& signal, TimePoint now)
{
    if (signal.cause != ProtocolReason::StateMismatch || IsPast(m_mismatch, now))
        return false;
    m_mismatch.reset();
    m_outbox.Report(ReportKind::CancelConfirmed, signal);
    return true;
}

} // namespace map27
