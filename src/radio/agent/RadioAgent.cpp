#include "radio/agent/RadioAgent.h"

#include "core/base/Clock.h"
#include "core/base/ProgramLog.h"
#include "core/settings/Settings.h"
#include "core/sounds/Sounds.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "map27/codec/Causes.h"
#include "map27/codec/Messages.h"
#include "radio/agent/CauseWords.h"
#include "radio/base/AddressBook.h"
#include "radio/base/StatusTexts.h"
#include "radio/base/TextIds.h"
#include "radio/base/Transaction.h"
#include "radio/line/Map27Control.h"
#include "radio/window/IAgentWindow.h"

#include <utility>

namespace {

// Hands an outstation's report that came as a text message ("I:", "O:", "B:" and the bits) to the view; any
// other text is ignored.
void PassScadaReport(const QString& text, const ScadaSource& source, IScadaView& view)
{
    constexpr qsizetype HeadLength = 2;
    constexpr qsizetype BitCount = 8;

    const bool one = text.size() == HeadLength + BitCount;
    const bool both = text.size() == HeadLength + 2 * BitCount && text.startsWith(QLatin1String("B:"));
    if (both || (one && text.startsWith(QLatin1String("I:"))))
        view.UpdateScadaSensors(text.mid(HeadLength, BitCount), source);
    if (both || (one && text.startsWith(QLatin1String("O:"))))
        view.UpdateScadaControls(text.right(BitCount), source);
}

} // namespace

RadioAgent::RadioAgent(const RadioServices& services, Map27Control& control, IAgentWindow& window,
                       Transaction& transaction, AddressBook& addressBook)
    : m_services(services),
      m_control(control),
      m_window(window),
      m_transaction(transaction),
      m_addressBook(addressBook),
      m_numbering(addressBook, services.strings),
      m_boxes(services.prompt),
      m_recorder(services.eventLog, m_views),
      m_callers(m_numbering, addressBook, services.strings),
      m_notices(services.strings, m_callers, transaction, window, m_views),
      m_reports(services, control, m_numbering, m_notices, m_views),
      m_attention(services.attention, services.sounds, services.statusTexts)
{
    ConnectEvents();
    ConnectViews();
}

RadioAgent::~RadioAgent() = default;

void RadioAgent::ConnectEvents()
{
    using Control = Map27Control;
    const auto react = [this](qint16 code, std::initializer_list<std::pair<int, AgentTrigger>> codes) {
        for (const auto& [value, trigger] : codes)
            if (value == code)
                React(trigger);
    };
    connect(&m_control, &Control::StatusReceived, this, &RadioAgent::OnStatusReceived);
    connect(&m_control, &Control::TextReceived, this, &RadioAgent::OnTextReceived);
    connect(&m_control, &Control::IncomingCall, this, &RadioAgent::OnIncomingCall);
    connect(&m_control, &Control::CauseTold, this, &RadioAgent::OnCause);
    connect(&m_control, &Control::Complained, this, &RadioAgent::OnComplaint);
    connect(&m_control, &Control::CallTakenUp, this, &RadioAgent::OnCallTakenUp);
    connect(
        &m_control, &Control::OutgoingCallProgress, this,
        [react](qint16 code) {
            react(code, {{map27::Type::SetupPositive, AgentTrigger::CallConnected},
                         {map27::Type::SetupQueued, AgentTrigger::CallProceeding},
                         {map27::Type::SetupNegative, AgentTrigger::CallFailed}});
        });
    connect(
        &m_control, &Control::AnswerProgress, this,
        [react](qint16 code) {
            react(code, {{map27::Type::ReceivePositive, AgentTrigger::AnswerConnected},
                         {map27::Type::ReceiveNegative, AgentTrigger::AnswerFailed}});
        });
    connect(
        &m_control, &Control::MessageProgress, this,
        [react](qint16 code) {
            react(code, {{map27::Type::MessageQueued, AgentTrigger::MessageSending},
                         {map27::Type::MessagePositive, AgentTrigger::MessageDelivered},
                         {map27::Type::MessageNegative, AgentTrigger::MessageFailed}});
        });
    connect(&m_control, &Control::TransactionCleared, this, [this] { React(AgentTrigger::Cleared); });
}

void RadioAgent::ConnectViews()
{
    connect(
        &m_services.eventLog, &EventLog::Delayed, this,
        [this](const QString& text) {
            if (IsConnected()) // otherwise nobody is at work here, and the strip says it
                m_boxes.ShowWarning(text);
        });
    connect(
        &m_services.eventLog, &EventLog::Refused, this,
        [this](const QString&, const QString& text) { m_boxes.ShowWarning(text); });
    connect(
        &m_services.eventLog, &EventLog::StoredAgain, this,
        [this](const QString& text) { m_boxes.ShowWarning(text); });
    connect(
        &m_numbering, &SessionNumbering::CallsignChanged, this,
        [this] {
            if (m_views.talkgroups)
                m_views.talkgroups->ReloadDynamicGroups({});
        });
    connect(&m_addressBook, &AddressBook::DutyChanged, this, [this] {
        if (m_views.individuals)
            m_views.individuals->ReloadInds();
    });
}

void RadioAgent::OnStatusReceived(qint16 prefix, qint16 ident, qint16 status)
{
    if (!IsConnected())
        return;
    const Caller sender = m_callers.Of(prefix, ident);
    m_parties.Note(sender.callBack);
    const LogEntry entry{m_services.clock.Now(), EventType::Status,        QString::number(status),
                         sender.callsign,        m_numbering.MyCallsign(), MessageWay::In};
    m_recorder.Store(entry);
    m_recorder.Show(entry, m_services.statusTexts.StatusInText(status));
    m_addressBook.FollowStatus(sender.callsign, status);
    m_attention.Status(sender, status, entry.time);
}

void RadioAgent::OnTextReceived(const QString& text, qint16 prefix, qint16 ident)
{
    if (!IsConnected())
        return;
    const Caller sender = m_callers.Of(prefix, ident);
    m_parties.Note(sender.callBack);
    const LogEntry entry{m_services.clock.Now(), EventType::Text,          text,
                         sender.callsign,        m_numbering.MyCallsign(), MessageWay::In};
    if (m_views.scada)
        PassScadaReport(text, {sender.dial, sender.callsign, entry.time}, *m_views.scada);
    m_recorder.Store(entry);
    m_recorder.Show(entry, text);
    m_services.sounds.Tell(SoundKind::Text);
}

void RadioAgent::OnIncomingCall(qint16 callCode, qint16 flags, qint16 prefix, qint16 ident,
                                const map27::AddressDescription& description)
{
    if (!IsConnected())
        return;
    const Caller caller = m_callers.Of(prefix, ident, description);
    m_parties.Note(caller.callBack);
    const map27::CallDetails details{static_cast<std::uint8_t>(flags)};
    const QDateTime time = m_services.clock.Now();
    const bool emergency = callCode == map27::Type::EmergencyCall;
    const QString caption = m_callers.Caption(emergency, prefix, ident);
    const auto named = [&](const QString& text) {
        return details.Data() ? FormatMessage(m_services.strings, RadioText::DataCall, {text}) : text;
    };

    // The new call takes over: what is still unconfirmed will never be confirmed.
    NoteFailedMessage();
    m_transaction.outgoing.MessagePending = false;
    m_sent.Fail();
    EndRinging();

    m_transaction.party = caller.shown;
    m_transaction.look = {named(caption), emergency, details.Data()};
    m_window.InCallPrepare(m_transaction.look, caller.shown);
    if (details.OffHookNeeded()) {
        m_transaction.MoveTo(TransactionKind::CallRinging);
        m_ringing = Ringing{caller.shown, caller.callBack, named(caption), time, emergency};
    } else {
        m_transaction.MoveTo(TransactionKind::CallConnected);
        m_window.SetMainButton(RadioText::Hungup);
        m_window.AppendLog(Text(TalkText()));
    }
    m_notices.Follow();
    // The operator sees and hears it before the database is touched.
    m_window.ShowUnasked();
    m_window.PaintNow();
    if (emergency)
        m_attention.EmergencyCall(caller, named(caption), time);
    else if (!m_ringing)
        m_services.sounds.Tell(SoundKind::Ringing);
    FollowSound();
    CancelRegroup();
    const LogEntry entry{time,          EventType::Call, caption, caller.callsign, m_numbering.MyCallsign(),
                         MessageWay::In};
    m_recorder.Store(entry);
    m_recorder.Show(entry, named(caption), caller.shown);
}

// The call was shown as ended when the link was lost, and the record of it is written.
void RadioAgent::OnCallTakenUp(qint16 prefix, qint16 ident)
{
    if (!IsConnected() || m_transaction.IsOpen())
        return;
    const LostCall call = m_lost.value_or(
        LostCall{m_callers.Of(prefix, ident).shown, {m_callers.Caption(false, prefix, ident), false, false}});
    m_transaction.party = call.party;
    m_transaction.look = call.look;
    m_transaction.MoveTo(TransactionKind::CallConnected);
    m_window.InCallPrepare(call.look, call.party);
    m_window.SetMainButton(RadioText::Hungup);
    m_notices.Follow();
    m_window.ShowUnasked();
    m_notices.Say(FormatMessage(m_services.strings, RadioText::CallTakenUp, {call.party}));
    m_services.sounds.Tell(SoundKind::Ringing);
}

void RadioAgent::OnCause(const RadioCause& cause)
{
    if (!IsConnected())
        return;
    const TransactionKind kind = m_transaction.Kind();
    if (cause.type == map27::Type::ReceiveNegative && kind != TransactionKind::CallRinging) {
        const map27::Party& party = cause.party;
        const Caller caller = m_callers.Of(party.address.prefix, party.address.ident, party.description);
        m_parties.Note(caller.callBack);
        m_notices.TakeNotedCall(caller.shown, cause);
        const QDateTime now = m_services.clock.Now();
        if (cause.cause == map27::Cause::NotedForCallBack)
            m_attention.WantsCallBack(caller.shown, caller.callBack, m_notices.Words(cause), now);
        else
            m_attention.Missed(caller.shown, caller.callBack, m_notices.Words(cause), now);
        return;
    }
    if (cause.type == 0 && (kind == TransactionKind::CallRinging || kind == TransactionKind::CallConnected))
        m_lost = LostCall{m_transaction.party, m_transaction.look};
    if (kind == TransactionKind::Status || kind == TransactionKind::Text) {
        const QString words =
            CauseWords(m_services.strings, cause, m_callers.Target(cause.party.description));
        m_sent.Explain(words, CauseAdvice(m_services.strings, cause), IsRefusal(cause));
    }
    m_notices.Take(cause);
    if (cause.type == map27::Type::ReceiveWarning && cause.cause == map27::Cause::TransmissionDisabled)
        SetTransmit(false); // nobody hears what is said
}

void RadioAgent::OnComplaint(int reason)
{
    const bool inCall = m_transaction.Kind() == TransactionKind::CallConnected;
    if (!IsConnected() || (m_transaction.IsOpen() && !inCall))
        return; // a request that the radio refuses is told as failed
    m_notices.Take({map27::Type::ProtocolInfo, reason});
    if (reason <= map27::ProtocolReason::BusyLocally)
        SetTransmit(false); // in a call, that is what it has refused
}

void RadioAgent::Forget()
{
    CancelRegroup();
    EndRinging();
    m_sent.GiveUp(Text(RadioText::AdviceAskFirst));
    m_lost.reset();
    m_transaction.Drop();
    m_notices.Follow();
    FollowSound();
}

void RadioAgent::React(AgentTrigger trigger)
{
    if (!IsConnected())
        return;
    const AgentReaction* reaction = FindReaction(m_transaction.Kind(), trigger);
    if (!reaction)
        return;
    FollowMessage(trigger);
    FollowRinging(trigger);
    TellAttention(trigger);
    if (!reaction->showFirst)
        Record(*reaction);
    if (reaction->storeRegroup)
        StoreRegroup();
    if (reaction->cancelRegroup)
        CancelRegroup();
    if (reaction->logText != 0)
        m_window.AppendLog(
            Text(reaction->logText == RadioText::ConnectedTalk ? TalkText() : reaction->logText));
    if (const QString progress = m_notices.TakeProgress(); !progress.isEmpty())
        m_window.AppendLog(progress);
    if (reaction->buttonText != 0)
        m_window.SetMainButton(reaction->buttonText);
    m_transaction.MoveTo(reaction->next);
    m_notices.Follow();
    FollowSound();
    if (reaction->showFirst) {
        m_window.PaintNow();
        Record(*reaction);
    }
    if (reaction->reflectScada && m_views.scada)
        m_views.scada->ReflectScadaControl();
    if (reaction->cancelScada && m_views.scada)
        m_views.scada->CancelScadaControl();
    if (Request(*reaction) && reaction->hide)
        m_window.HideAgent();
    if (reaction->warning != 0)
        m_boxes.ShowWarning(Text(reaction->warning));
}

void RadioAgent::Record(const AgentReaction& reaction)
{
    if (reaction.writeRecord)
        WriteOutgoingRecord();
    if (reaction.forgetMessage)
        m_transaction.outgoing.MessagePending = false;
}

void RadioAgent::FollowMessage(AgentTrigger trigger)
{
    switch (trigger) {
    case AgentTrigger::MessageSending:
        return m_sent.Wait();
    case AgentTrigger::MessageDelivered:
        return m_sent.Confirm();
    case AgentTrigger::MessageFailed:
    case AgentTrigger::Cleared:
        return m_sent.Fail();
    case AgentTrigger::MainButton:
    case AgentTrigger::CloseButton:
        return m_sent.GiveUp(Text(RadioText::AdviceAskFirst));
    default:
        return;
    }
}

// Pressing Answer is not enough: the call may be over before it is connected.
void RadioAgent::FollowRinging(AgentTrigger trigger)
{
    if (trigger == AgentTrigger::AnswerConnected && m_ringing && m_ringing->emergency)
        m_attention.Answered(m_ringing->party);
    if (trigger == AgentTrigger::AnswerConnected || trigger == AgentTrigger::CloseButton)
        m_ringing.reset();
    else if (trigger == AgentTrigger::Cleared || trigger == AgentTrigger::AnswerFailed)
        EndRinging();
}

void RadioAgent::EndRinging()
{
    const auto call = std::exchange(m_ringing, std::nullopt);
    if (call && !call->emergency) // which waits as one
        m_attention.Missed(call->party, call->callBack, call->what, call->since);
}

void RadioAgent::TellAttention(AgentTrigger trigger)
{
    if (trigger == AgentTrigger::MessageFailed || trigger == AgentTrigger::Cleared)
        NoteFailedMessage();
    else if (trigger == AgentTrigger::MessageDelivered && m_transaction.outgoing.MessagePending)
        m_attention.Delivered(m_transaction.outgoing);
    else if (trigger == AgentTrigger::CallConnected)
        m_attention.Connected(m_transaction.outgoing.LastDestination);
}

void RadioAgent::NoteFailedMessage()
{
    const TransactionKind kind = m_transaction.Kind();
    const bool message = kind == TransactionKind::Status || kind == TransactionKind::Text;
    if (message && m_transaction.outgoing.MessagePending)
        m_attention.Failed(m_transaction.outgoing, m_notices.Reason(), m_services.clock.Now());
}

void RadioAgent::FollowSound()
{
    m_services.sounds.Ring(m_ringing && !m_ringing->emergency);
}

// Returns false when the request failed and the window has to stay.
bool RadioAgent::Request(const AgentReaction& reaction)
{
    try {
        switch (reaction.request) {
        case AgentReaction::Request::None:
            break;
        case AgentReaction::Request::Cancel:
            m_control.CancelTransaction();
            break;
        case AgentReaction::Request::Clear:
            m_control.ClearCall();
            break;
        case AgentReaction::Request::Answer:
            m_control.AnswerCall(true);
            break;
        }
    } catch (const std::exception& failure) {
        const QString text = DescribeError(failure, m_services.strings);
        if (reaction.onError == AgentReaction::OnError::LogAndStay) {
            m_window.AppendLog(text);
            return false;
        }
        if (reaction.onError == AgentReaction::OnError::Warn)
            m_boxes.ShowWarning(text);
    }
    return true;
}

void RadioAgent::SetTransmit(bool on)
{
    const bool connected =
        IsConnected() && m_transaction.Kind() == TransactionKind::CallConnected && !m_transaction.look.data;
    if (on == m_transmitting || (on && !connected))
        return;
    try {
        m_control.SetTransmit(on);
    } catch (const std::exception& failure) {
        m_window.AppendLog(DescribeError(failure, m_services.strings));
        if (on)
            return;
    }
    m_transmitting = on;
    m_window.ShowTransmitting(on);
}

void RadioAgent::WriteOutgoingRecord()
{
    OutgoingMessage& message = m_transaction.outgoing;
    if (!message.MessagePending)
        return;
    const LogEntry entry{m_services.clock.Now(),   message.LastSentKind,    message.LastMessageText,
                         m_numbering.MyCallsign(), message.LastDestination, MessageWay::Out};
    m_recorder.Store(entry);
    if (message.LastSentKind == EventType::Status)
        message.LastMessageText = m_services.statusTexts.StatusOutText(message.LastMessageText.toInt());
    m_recorder.Show(entry, message.LastMessageText);
}

void RadioAgent::StoreRegroup()
{
    if (!m_views.talkgroups)
        return;
    if (m_views.talkgroups->StoreRegroup())
        m_views.talkgroups->ReflectRegroup();
    if (m_views.talkgroups->StoreUngroup())
        m_views.talkgroups->ReflectUngroup();
}

void RadioAgent::CancelRegroup()
{
    if (!m_views.talkgroups)
        return;
    m_views.talkgroups->CancelRegroup();
    m_views.talkgroups->CancelUngroup();
}

int RadioAgent::TalkText() const
{
    return m_transaction.look.data ? RadioText::DataConnected : RadioText::ConnectedTalk;
}

QString RadioAgent::Text(int id) const
{
    return m_services.strings.LoadString(id);
}
