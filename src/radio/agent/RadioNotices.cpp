#include "radio/agent/RadioNotices.h"

#include "core/base/ProgramLog.h"
#include "core/texts/StringSource.h"
#include "map27/codec/Messages.h"
#include "radio/agent/CallerNames.h"
#include "radio/agent/CauseWords.h"
#include "radio/agent/Views.h"
#include "radio/base/TextIds.h"
#include "radio/window/IAgentWindow.h"

#include <utility>

namespace Type = map27::Type;

namespace {

bool IsCall(TransactionKind kind)
{
    return kind == TransactionKind::CallSetUp || kind == TransactionKind::CallRinging ||
           kind == TransactionKind::CallConnected;
}

} // namespace

RadioNotices::RadioNotices(const IStringSource& strings, const CallerNames& callers,
                           const Transaction& transaction, IAgentWindow& window, const RadioViews& views)
    : m_strings(strings),
      m_callers(callers),
      m_transaction(transaction),
      m_window(window),
      m_views(views)
{
}

void RadioNotices::Take(const RadioCause& cause)
{
    const QString words = CauseWords(m_strings, cause, m_callers.Target(cause.party.description));
    const TransactionKind kind = m_transaction.Kind();
    const bool complaint = cause.type == Type::ProtocolInfo;
    const bool goesOn = IsProgress(cause) || (complaint && kind == TransactionKind::CallConnected);
    if (kind == TransactionKind::None && !complaint)
        return; // given up here before it was told
    const QString text = CauseSentence(m_strings, kind, m_transaction.party, goesOn, words);
    if (m_views.status)
        m_views.status->ShowOutcome(text);
    if (NeedsAnAct(cause) && !goesOn)
        Q_EMIT Failed(text);
    if (!goesOn) {
        m_reason = words;
        return;
    }
    if (kind == TransactionKind::CallConnected || kind == TransactionKind::CallRinging)
        m_window.AppendLog(words);
    else
        m_progress = words;
    if (kind == TransactionKind::CallConnected) {
        m_callNoticed = true;
        Q_EMIT CallNoticed(text);
    }
}

QString RadioNotices::Words(const RadioCause& cause) const
{
    return CauseWords(m_strings, cause, {});
}

void RadioNotices::TakeNotedCall(const QString& caller, const RadioCause& cause)
{
    if (m_views.status)
        m_views.status->ShowOutcome(CauseSentence(m_strings, TransactionKind::CallRinging, caller, false,
                                                  CauseWords(m_strings, cause, {})));
}

// Boxes tell of refusals, what waits for a person has messages and those that rang, and a call that has ended
// normally was ended by a person.
bool RadioNotices::NeedsAnAct(const RadioCause& cause) const
{
    switch (m_transaction.Kind()) {
    case TransactionKind::None:
    case TransactionKind::CallRinging:
    case TransactionKind::Status:
    case TransactionKind::Text:
        return false;
    case TransactionKind::CallConnected:
        return cause.type != Type::Disconnect;
    default:
        return cause.type != Type::MessageNegative && cause.type != Type::SetupNegative &&
               cause.type != Type::ProtocolInfo;
    }
}

QString RadioNotices::TakeProgress()
{
    return std::exchange(m_progress, {});
}

void RadioNotices::Say(const QString& text)
{
    if (m_views.status)
        m_views.status->ShowOutcome(text);
    if (m_window.IsShown())
        m_window.AppendLog(text);
}

void RadioNotices::TakeCondition(bool offHook, bool transmitting, const QString& octets,
                                 const std::function<void()>& ask)
{
    if (IsCall(m_transaction.Kind()) || (!offHook && !transmitting)) {
        ForgetCondition();
        return;
    }
    if (!std::exchange(m_suspected, true)) {
        ask();
        return;
    }
    const QString text =
        m_strings.LoadString(transmitting ? RadioText::TransmitsUnasked : RadioText::OffHookUnasked);
    if (text == m_inUse)
        return;
    ProgramLog::Write(text + u' ' + octets);
    if (m_views.status)
        m_views.status->ShowOutcome(text);
    TellInUse(text);
}

void RadioNotices::Follow()
{
    m_progress.clear();
    m_reason.clear();
    if (m_transaction.Kind() != TransactionKind::CallConnected && std::exchange(m_callNoticed, false))
        Q_EMIT CallNoticed({});
    if (IsCall(m_transaction.Kind()))
        ForgetCondition();
}

void RadioNotices::ForgetCondition()
{
    m_suspected = false;
    if (!m_inUse.isEmpty())
        TellInUse({});
}

void RadioNotices::TellInUse(const QString& text)
{
    m_inUse = text;
    Q_EMIT RadioInUse(text);
}
