#include "radio/agent/RadioAgent.h"

#include "addressing/MptAddressing.h"
#include "core/base/Clock.h"
#include "core/base/ProgramLog.h"
#include "core/session/Registry.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Beeper.h"
#include "radio/agent/ScadaReport.h"
#include "radio/base/AddressingText.h"
#include "radio/base/StatusTexts.h"
#include "radio/base/TextIds.h"
#include "radio/line/Map27Control.h"
#include "radio/window/IAgentWindow.h"

#include <utility>

namespace {

constexpr int EmergencyCallCode = 165;
constexpr int RingFlag = 8;

bool MeansStatus(const QString& setting, int status)
{
    bool numeric = false;
    const double code = setting.trimmed().toDouble(&numeric);
    return numeric && code == status;
}

} // namespace

RadioAgent::RadioAgent(const RadioServices& services, Map27Control& control, IAgentWindow& window)
    : m_services(services),
      m_control(control),
      m_window(window),
      m_boxes(services.prompt)
{
    ConnectEvents();
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
            react(code, {{196, AgentTrigger::CallConnected},
                         {212, AgentTrigger::CallProceeding},
                         {228, AgentTrigger::CallFailed}});
        });
    connect(
        &m_control, &Control::AnswerProgress, this,
        [react](qint16 code) {
            react(code, {{197, AgentTrigger::AnswerConnected}, {229, AgentTrigger::AnswerFailed}});
        });
    connect(
        &m_control, &Control::MessageProgress, this,
        [react](qint16 code) {
            react(code, {{208, AgentTrigger::MessageSending},
                         {192, AgentTrigger::MessageDelivered},
                         {224, AgentTrigger::MessageFailed}});
        });
    connect(&m_control, &Control::TransactionCleared, this, [this] { React(AgentTrigger::Cleared); });
}

void RadioAgent::OnStatusReceived(qint16 prefix, qint16 ident, qint16 status)
{
    if (!m_executive)
        return;
    const Party sender = Resolve(prefix, ident);
    const QDateTime time = m_services.clock.Now();
    Append(time, EventType::Status, QString::number(status), sender.callsign, m_myCallsign);
    Show(time, EventType::Status, m_services.statusTexts.StatusInText(status), sender.callsign, m_myCallsign);
    UpdateDuty(sender.callsign, status);
    Notify();
}

void RadioAgent::OnTextReceived(const QString& text, qint16 prefix, qint16 ident)
{
    if (!m_executive)
        return;
    const Party sender = Resolve(prefix, ident);
    const QDateTime time = m_services.clock.Now();
    if (m_views.scada)
        PassScadaReport(text, {sender.dial, sender.callsign, time}, *m_views.scada);
    Append(time, EventType::Text, text, sender.callsign, m_myCallsign);
    Show(time, EventType::Text, text, sender.callsign, m_myCallsign);
    Notify();
}

void RadioAgent::OnIncomingCall(qint16 callCode, qint16 flags, qint16 prefix, qint16 ident)
{
    if (!m_executive)
        return;
    const Party caller = Resolve(prefix, ident);
    const QDateTime time = m_services.clock.Now();
    const bool emergency = callCode == EmergencyCallCode;
    const QString caption = IncomingCaption(emergency, prefix, ident);

    // The new call takes over: what was still to be confirmed never will be.
    m_executive->Outgoing().MessagePending = false;
    EndRinging();

    m_window.InCallPrepare(caption, caller.callsign, emergency);
    if ((flags & RingFlag) != 0) {
        m_executive->SetTransactionKind(TransactionKind::CallRinging);
        m_ringing = Ringing{caller.callsign, time};
    } else {
        m_executive->SetTransactionKind(TransactionKind::CallConnected);
        m_window.SetMainButton(RadioText::Hungup);
        m_window.AppendLog(Text(RadioText::ConnectedTalk));
    }
    // Seen and heard first; the database comes after.
    m_window.ShowUnasked();
    m_window.PaintNow();
    if (emergency) {
        m_services.beeper.InformationBeep();
        Q_EMIT EmergencyCallReceived(caller.callsign, time);
    } else {
        Notify();
    }
    CancelRegroup();
    Append(time, EventType::Call, caption, caller.callsign, m_myCallsign);
    Show(time, EventType::Call, caption, caller.callsign, m_myCallsign);
}

void RadioAgent::OnOperatingCondition(int inContact, int fieldStrength)
{
    if (!m_executive)
        return;
    if (m_views.status)
        m_views.status->ShowOperatingConditions(inContact != 0, fieldStrength);
    ShowAnswer(Text(RadioText::Ready));
}

void RadioAgent::OnNetworkInfo(qint16 channel, qint16 systemIdentity)
{
    if (!m_executive)
        return;
    const QString identity = QString::number(static_cast<quint16>(systemIdentity), 16)
                                 .toUpper()
                                 .rightJustified(4, QLatin1Char('0'));
    ShowAnswer(
        FormatMessage(m_services.strings, RadioText::NetworkInfo, {QString::number(channel), identity}));
}

void RadioAgent::React(AgentTrigger trigger)
{
    if (!m_executive)
        return;
    const AgentReaction* reaction = FindReaction(m_executive->TransactionKind(), trigger);
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
    m_executive->SetTransactionKind(reaction->next);
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
        m_executive->Outgoing().MessagePending = false;
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

// False when the request failed and the window has to stay.
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
    const bool connected = m_executive && m_executive->TransactionKind() == TransactionKind::CallConnected;
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
    OutgoingMessage& message = m_executive->Outgoing();
    if (!message.MessagePending)
        return;
    const QDateTime time = m_services.clock.Now();
    Append(time, message.LastSentKind, message.LastMessageText, m_myCallsign, message.LastDestination);
    if (message.LastSentKind == EventType::Status)
        message.LastMessageText = m_services.statusTexts.StatusOutText(message.LastMessageText.toInt());
    Show(time, message.LastSentKind, message.LastMessageText, m_myCallsign, message.LastDestination);
}

void RadioAgent::StoreRegroup()
{
    if (!m_views.talkgroups)
        return;
    // The box comes from the event loop: one in the middle of this event would let the next one in.
    const auto attempt = [this](const auto& step) {
        try {
            step();
        } catch (const std::exception& failure) {
            m_boxes.ShowWarning(DescribeError(failure, m_services.strings));
        }
    };
    attempt([this] {
        if (m_views.talkgroups->StoreRegroup())
            m_views.talkgroups->ReflectRegroup();
    });
    attempt([this] {
        if (m_views.talkgroups->StoreUngroup())
            m_views.talkgroups->ReflectUngroup();
    });
}

void RadioAgent::CancelRegroup()
{
    if (!m_views.talkgroups)
        return;
    m_views.talkgroups->CancelRegroup();
    m_views.talkgroups->CancelUngroup();
}

void RadioAgent::ReloadIndividuals()
{
    if (m_views.individuals)
        m_views.individuals->ReloadInds();
}

void RadioAgent::UpdateDuty(const QString& callsign, int status)
{
    if (MeansStatus(RegistryGet(m_services.session, QStringLiteral("radio_onduty"), QStringLiteral("1")),
                    status))
        m_executive->UpdateDutyStatus(callsign, true);
    if (MeansStatus(RegistryGet(m_services.session, QStringLiteral("radio_offduty"), QStringLiteral("2")),
                    status))
        m_executive->UpdateDutyStatus(callsign, false);
}

void RadioAgent::Append(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                        const QString& to)
{
    try {
        m_services.eventLog.AppendLogRecord(time, type, desc, from, to);
        m_recordsFailing = false;
    } catch (const std::exception& failure) {
        if (!m_recordsFailing)
            m_boxes.ShowWarning(DescribeError(failure, m_services.strings));
        m_recordsFailing = true;
    }
}

void RadioAgent::Show(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                      const QString& to)
{
    if (m_views.log)
        m_views.log->LogShowNewLine(time, type, desc, from, to);
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

void RadioAgent::ShowAnswer(const QString& text)
{
    if (m_views.status)
        m_views.status->ShowAnswer(text);
}

RadioAgent::Party RadioAgent::Resolve(int prefix, int ident) const
{
    QString dial;
    try {
        if (m_addressing)
            dial = QString::fromStdString(m_addressing->AddressToDial({.prefix = prefix, .ident = ident}));
    } catch (const std::exception&) {
        dial.clear();
    }
    if (dial.isEmpty()) {
        dial =
            QStringLiteral("/%1%2").arg(prefix, 3, 10, QLatin1Char('0')).arg(ident, 4, 10, QLatin1Char('0'));
    }
    return {dial, m_executive->LookupCallsign(dial)};
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
