#include "radio/agent/RadioAgent.h"

#include "addressing/MptAddressing.h"
#include "core/base/Clock.h"
#include "core/base/ProgramLog.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Beeper.h"
#include "map27/codec/Messages.h"
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
      m_recorder(services.eventLog, m_views)
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
    connect(&m_control, &Control::NumberingReceived, this, &RadioAgent::OnNumberingReceived);
    connect(&m_control, &Control::NetworkInfoReceived, this, &RadioAgent::OnNetworkInfo);
    connect(
        &m_control, &Control::OperatingConditionReceived, this,
        [this](int inContact, int, int, int field, int) { OnOperatingCondition(inContact, field); });
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
    connect(&m_services.eventLog, &EventLog::StoredAgain, this,
            [this](const QString& text) { m_boxes.ShowWarning(text); });
    connect(&m_numbering, &SessionNumbering::OwnNumberTaken, this, &RadioAgent::ShowOwnNumber);
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
    const Party sender = Resolve(prefix, ident);
    const LogEntry entry{m_services.clock.Now(), EventType::Status, QString::number(status), sender.callsign,
                         m_numbering.MyCallsign()};
    m_recorder.Store(entry);
    m_recorder.Show(entry, m_services.statusTexts.StatusInText(status));
    m_addressBook.FollowStatus(sender.callsign, status);
    Notify();
}

void RadioAgent::OnTextReceived(const QString& text, qint16 prefix, qint16 ident)
{
    if (!IsConnected())
        return;
    const Party sender = Resolve(prefix, ident);
    const LogEntry entry{m_services.clock.Now(), EventType::Text, text, sender.callsign,
                         m_numbering.MyCallsign()};
    if (m_views.scada)
        PassScadaReport(text, {sender.dial, sender.callsign, entry.time}, *m_views.scada);
    m_recorder.Store(entry);
    m_recorder.Show(entry, text);
    Notify();
}

void RadioAgent::OnIncomingCall(qint16 callCode, qint16 flags, qint16 prefix, qint16 ident)
{
    if (!IsConnected())
        return;
    const Party caller = Resolve(prefix, ident);
    const QDateTime time = m_services.clock.Now();
    const bool emergency = callCode == map27::Type::EmergencyCall;
    const QString caption = IncomingCaption(emergency, prefix, ident);

    // The new call takes over: what is still unconfirmed will never be confirmed.
    m_transaction.outgoing.MessagePending = false;
    EndRinging();

    m_window.InCallPrepare(caption, caller.callsign, emergency);
    if (map27::CallDetails{static_cast<std::uint8_t>(flags)}.OffHookNeeded()) {
        m_transaction.MoveTo(TransactionKind::CallRinging);
        m_ringing = Ringing{caller.callsign, time};
    } else {
        m_transaction.MoveTo(TransactionKind::CallConnected);
        m_window.SetMainButton(RadioText::Hungup);
        m_window.AppendLog(Text(RadioText::ConnectedTalk));
    }
    // The operator sees and hears it before the database is touched.
    m_window.ShowUnasked();
    m_window.PaintNow();
    if (emergency) {
        m_services.beeper.InformationBeep();
        Q_EMIT EmergencyCallReceived(caller.callsign, time);
    } else {
        Notify();
    }
    CancelRegroup();
    const LogEntry entry{time, EventType::Call, caption, caller.callsign, m_numbering.MyCallsign()};
    m_recorder.Store(entry);
    m_recorder.Show(entry, caption);
}

void RadioAgent::OnNumberingReceived()
{
    if (!IsConnected())
        return;
    const RadioNumbering reported{.prefix = m_control.RadioPrefix(),
                                  .ident = m_control.RadioIdent(),
                                  .unitBaseIdent = m_control.UnitBaseIdent(),
                                  .unitMaxIdent = m_control.UnitMaxIdent(),
                                  .groupBaseIdent = m_control.GroupBaseIdent(),
                                  .groupMaxIdent = m_control.GroupMaxIdent(),
                                  .unitDigits = m_control.UnitTwoDigit() ? 2 : 3,
                                  .groupDigits = m_control.GroupTwoDigit() ? 2 : 3};
    m_numbering.SetReported(reported);
    if (m_views.numbering)
        m_views.numbering->DisplayDiags(reported);
    m_numbering.TakeOwnNumber();
    ShowAnswer(Text(RadioText::Ready));
}

void RadioAgent::OnOperatingCondition(int inContact, int fieldStrength)
{
    if (!IsConnected())
        return;
    if (m_views.status)
        m_views.status->ShowOperatingConditions(inContact != 0, fieldStrength);
    ShowAnswer(Text(RadioText::Ready));
}

void RadioAgent::OnNetworkInfo(qint16 channel, qint16 systemIdentity)
{
    if (!IsConnected())
        return;
    const QString identity = QString::number(static_cast<quint16>(systemIdentity), 16)
                                 .toUpper()
                                 .rightJustified(4, QLatin1Char('0'));
    ShowAnswer(
        FormatMessage(m_services.strings, RadioText::NetworkInfo, {QString::number(channel), identity}));
}

void RadioAgent::React(AgentTrigger trigger)
{
    if (!IsConnected())
        return;
    const AgentReaction* reaction = FindReaction(m_transaction.Kind(), trigger);
    if (!reaction)
        return;
    FollowRinging(trigger);
    if (!reaction->showFirst)
        Record(*reaction);
    if (reaction->storeRegroup)
        StoreRegroup();
    if (reaction->cancelRegroup)
        CancelRegroup();
    if (reaction->logText != 0)
        m_window.AppendLog(Text(reaction->logText));
    if (reaction->buttonText != 0)
        m_window.SetMainButton(reaction->buttonText);
    m_transaction.MoveTo(reaction->next);
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

// Pressing Answer is not enough: the call may be over before it is connected.
void RadioAgent::FollowRinging(AgentTrigger trigger)
{
    if (trigger == AgentTrigger::AnswerConnected || trigger == AgentTrigger::CloseButton)
        m_ringing.reset();
    else if (trigger == AgentTrigger::Cleared || trigger == AgentTrigger::AnswerFailed)
        EndRinging();
}

void RadioAgent::EndRinging()
{
    if (const auto call = std::exchange(m_ringing, std::nullopt))
        Q_EMIT CallMissed(call->party, call->since);
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
    const bool connected = IsConnected() && m_transaction.Kind() == TransactionKind::CallConnected;
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
    const LogEntry entry{m_services.clock.Now(), message.LastSentKind, message.LastMessageText,
                         m_numbering.MyCallsign(), message.LastDestination};
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

void RadioAgent::Notify()
{
    bool notify = true;
    try {
        notify = m_services.settings.BeepNotify();
    } catch (const std::exception& failure) {
        ProgramLog::Write(DescribeError(failure, m_services.strings));
    }
    if (notify)
        m_services.beeper.InformationBeep();
}

void RadioAgent::ShowOwnNumber(const QString& callsign, const QString& address)
{
    if (!m_views.status)
        return;
    const bool known = callsign != address;
    m_views.status->ShowOwnAddress(known ? callsign + QStringLiteral("  ") : QStringLiteral("---"), address);
}

void RadioAgent::ShowAnswer(const QString& text)
{
    if (m_views.status)
        m_views.status->ShowAnswer(text);
}

RadioAgent::Party RadioAgent::Resolve(int prefix, int ident) const
{
    const QString dial = m_numbering.DialOf(prefix, ident);
    return {dial, m_addressBook.LookupCallsign(dial)};
}

QString RadioAgent::IncomingCaption(bool emergency, int prefix, int ident) const
{
    int id = RadioText::IncomingCall;
    if (prefix == 0 && ident == PstnGatewayIdent)
        id = RadioText::IncomingPstnCall;
    else if (prefix == 0 && ident == PabxGatewayIdent)
        id = RadioText::IncomingPabxCall;
    else if (ident == EverybodyIdent)
        id = RadioText::IncomingSysWideCall;
    const QString caption = Text(id);
    return emergency ? FormatMessage(m_services.strings, RadioText::EmergencyIn, {caption}) : caption;
}

QString RadioAgent::Text(int id) const
{
    return m_services.strings.LoadString(id);
}
