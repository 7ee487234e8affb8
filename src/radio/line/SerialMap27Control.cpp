#include "radio/line/SerialMap27Control.h"

#include "core/base/Clock.h"
#include "core/base/ProgramLog.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "map27/codec/Causes.h"
#include "radio/base/TextIds.h"
#include "radio/line/RadioPort.h"
#include "radio/line/RefusalText.h"

#include <algorithm>
#include <utility>

namespace {

using map27::Milliseconds;

constexpr Milliseconds FirstRetry{500};
constexpr Milliseconds LongestRetry{5000};
constexpr std::uint8_t SimulationBit = 0x80; // of facilities c, which the standard leaves free

qint16 Number(unsigned value)
{
    return static_cast<qint16>(value);
}

QString HexOf(const map27::Octets& octets)
{
    const QByteArray bytes(reinterpret_cast<const char*>(octets.data()),
                           static_cast<qsizetype>(octets.size()));
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

template <typename... Handlers> struct Overloaded : Handlers... {
    using Handlers::operator()...;
};

} // namespace

SerialMap27Control::SerialMap27Control(const IStringSource& strings, const Clock& clock, PortFactory ports)
    : m_strings(strings),
      m_clock(clock),
      m_ports(std::move(ports))
{
    if (!m_ports) {
        m_ports = [&strings](const QString& name, int bitsPerSecond) {
            return MakeRadioPort(name, bitsPerSecond, strings);
        };
    }
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &SerialMap27Control::OnTime);
}

SerialMap27Control::~SerialMap27Control() = default;

qint16 SerialMap27Control::RadioPrefix() const
{
    return m_numbering.radio.prefix;
}

qint16 SerialMap27Control::RadioIdent() const
{
    return Number(m_numbering.radio.ident);
}

qint16 SerialMap27Control::UnitBaseIdent() const
{
    return Number(m_numbering.individuals.base);
}

qint16 SerialMap27Control::GroupBaseIdent() const
{
    return Number(m_numbering.groups.base);
}

qint16 SerialMap27Control::UnitMaxIdent() const
{
    return Number(m_numbering.individuals.highest);
}

qint16 SerialMap27Control::GroupMaxIdent() const
{
    return Number(m_numbering.groups.highest);
}

bool SerialMap27Control::UnitTwoDigit() const
{
    return !m_numbering.individuals.threeDigits;
}

bool SerialMap27Control::GroupTwoDigit() const
{
    return !m_numbering.groups.threeDigits;
}

void SerialMap27Control::OpenLink()
{
    CloseLink();
    auto port = m_ports(m_portName, m_baudRate);
    port->Open(true);
    m_port = std::move(port);
    connect(m_port.get(), &RadioPort::Opened, this, &SerialMap27Control::OnPortOpened);
    connect(m_port.get(), &RadioPort::Failed, this, &SerialMap27Control::OnPortFailed);
    connect(m_port.get(), &RadioPort::Received, this, [this](const QByteArray& octets) {
        const auto* first = reinterpret_cast<const std::uint8_t*>(octets.constData());
        const map27::OctetSpan span{first, static_cast<std::size_t>(octets.size())};
        m_watch.Hear(span);
        Take(m_terminal->Feed(span, Now()));
        Supervise();
    });
    m_terminal = std::make_unique<map27::Terminal>(
        map27::TerminalParameters::ForBitRate(static_cast<unsigned>(m_baudRate)));
    m_retryPause = FirstRetry;
    OnPortOpened();
}

void SerialMap27Control::CloseLink()
{
    m_timer.stop();
    m_retryAt.reset();
    m_reopening = false;
    m_events.clear();
    if (m_port) {
        m_port->disconnect(this);
        m_port->Close();
        // Kept alive until the event loop: the call may come from one of its signals.
        m_port.release()->deleteLater();
    }
    m_terminal.reset();
    m_status.simulation = false;
    SetStatus(LinkStatus::State::Closed, {});
}

void SerialMap27Control::StartLink()
{
    m_watch.Begin(Now(), *m_terminal);
    Take(m_terminal->Start(Now()));
}

void SerialMap27Control::EndLink()
{
    if (m_terminal->State() != map27::TerminalState::Idle)
        m_events.push_back(map27::TransactionCleared{map27::ClearedBy::LinkLoss, 0, 0});
    m_terminal->Stop();
}

void SerialMap27Control::OnPortOpened()
{
    m_retryAt.reset();
    // Opened again by Reopen: what was wrong still is, until the radio answers.
    if (!std::exchange(m_reopening, false))
        SetStatus(LinkStatus::State::Connecting, PortText(RadioText::LinkConnecting));
    StartLink();
}

void SerialMap27Control::OnPortFailed(const QString& text)
{
    m_reopening = false;
    EndLink();
    Complain(LinkStatus::State::Lost, FormatMessage(m_strings, RadioText::LinkLostPort, {text}));
    m_retryAt = Now() + m_retryPause;
    m_retryPause = std::min(2 * m_retryPause, LongestRetry);
    Take({});
}

void SerialMap27Control::Reopen()
{
    EndLink();
    m_reopening = true;
    m_port->Close();
    m_port->Open(false);
}

void SerialMap27Control::OnTime()
{
    if (!m_port)
        return;
    if (m_retryAt && Now() >= *m_retryAt) {
        m_retryAt.reset();
        m_port->Open(false);
        return;
    }
    if (!m_port->IsOpen()) {
        Schedule();
        return;
    }
    map27::TerminalOutput output = m_terminal->OnTime(Now());
    if (m_watch.TakeProbe(*m_terminal, Now()))
        output.Append(m_terminal->Probe(Now()));
    Take(std::move(output));
    Supervise();
}

void SerialMap27Control::Supervise()
{
    ShowFinding(m_watch.Look(*m_terminal, Now()));
    if (m_port->IsOpen() && m_watch.ReopenIsDue(*m_terminal, Now()))
        Reopen();
    Schedule();
}

void SerialMap27Control::ShowFinding(LinkWatch::Finding finding)
{
    using enum LinkWatch::Finding;
    switch (finding) {
    case None:
        if (m_status.state == LinkStatus::State::Silent)
            SetStatus(LinkStatus::State::Ready, {});
        return;
    case LinkSlow:
        return; // the text of the loss or of connecting still holds
    case Owes:
        Complain(LinkStatus::State::Silent, PortText(RadioText::LinkOwes));
        return;
    case Silent:
        Complain(LinkStatus::State::Lost, PortText(RadioText::LinkLostSilent));
        return;
    case Foreign:
        Complain(LinkStatus::State::Lost,
                 FormatMessage(m_strings, RadioText::LinkForeign, {m_portName, m_watch.HeardInstead()}));
        return;
    case Noise:
        Complain(LinkStatus::State::Lost,
                 FormatMessage(m_strings, RadioText::LinkNoise, {m_portName, QString::number(m_baudRate)}));
        return;
    case Damaged:
        Complain(LinkStatus::State::Lost, PortText(RadioText::LinkDamaged));
        return;
    case Echo:
        m_port->Close();
        OnPortFailed(PortText(RadioText::LinkEcho));
        return;
    }
}

void SerialMap27Control::Run(const QString& subject, const Operation& operation)
{
    if (!m_terminal)
        throw Error(ErrorCode::First + RadioText::NotConnected,
                    m_strings.LoadString(RadioText::NotConnected));
    map27::OperationResult result = operation(*m_terminal, Now());
    Take(std::move(result.output));
    if (result.refusal)
        throw RefusalError(*result.refusal, subject, m_strings);
}

void SerialMap27Control::Take(map27::TerminalOutput output)
{
    for (const map27::Octets& frame : output.frames) {
        m_watch.Send(frame);
        m_port->Write(
            QByteArray(reinterpret_cast<const char*>(frame.data()), static_cast<qsizetype>(frame.size())));
    }
    for (map27::TerminalEvent& event : output.events)
        m_events.push_back(std::move(event));
    // From the event loop, so that no event arrives inside an operation of its receiver.
    if (!m_events.empty())
        QMetaObject::invokeMethod(this, &SerialMap27Control::Deliver, Qt::QueuedConnection);
    Schedule();
}

void SerialMap27Control::Deliver()
{
    while (!m_events.empty()) {
        const map27::TerminalEvent event = std::move(m_events.front());
        m_events.pop_front();
        try {
            Handle(event);
        } catch (const std::exception& failure) {
            ProgramLog::Write(DescribeError(failure, m_strings));
        }
    }
}

void SerialMap27Control::Handle(const map27::TerminalEvent& event)
{
    const auto logCause = [](std::uint8_t code, std::uint8_t source, std::uint8_t cause) {
        if (code >= map27::Type::MessageNegative)
            ProgramLog::Write(QString::fromStdString(map27::CauseText(source, cause)));
    };
    std::visit(
        Overloaded{
            [&](const map27::StatusReceived& e) {
                Q_EMIT StatusReceived(e.from.prefix, Number(e.from.ident), e.status);
            },
            [&](const map27::TextReceived& e) {
                Q_EMIT TextReceived(QString::fromStdString(e.text), e.from.prefix, Number(e.from.ident));
            },
            [&](const map27::IncomingCall& e) {
                Q_EMIT IncomingCall(e.type, e.flags, e.from.prefix, Number(e.from.ident));
            },
            [&](const map27::MessageProgress& e) {
                logCause(e.code, e.source, e.cause);
                Q_EMIT MessageProgress(e.code, e.cause, e.party.prefix, Number(e.party.ident));
            },
            [&](const map27::OutgoingCallProgress& e) {
                logCause(e.code, e.source, e.cause);
                Q_EMIT OutgoingCallProgress(e.code, e.cause);
            },
            [&](const map27::AnswerProgress& e) {
                logCause(e.code, e.source, e.cause);
                Q_EMIT AnswerProgress(e.code, e.cause);
            },
            [&](const map27::TransactionCleared& e) { Q_EMIT TransactionCleared(e.type, e.cause); },
            [&](const map27::NumberingReceived& e) {
                m_numbering = e.info;
                Q_EMIT NumberingReceived();
            },
            [&](const map27::OperatingConditionReceived& e) {
                Q_EMIT OperatingConditionReceived(e.info.inContact, e.info.offHook, e.info.transmitting,
                                                  e.info.fieldStrength,
                                                  static_cast<int>(e.info.MaxCallSeconds().value_or(0)));
            },
            [&](const map27::NetworkInfoReceived& e) {
                Q_EMIT NetworkInfoReceived(Number(e.info.channel), Number(e.info.systemIdentity));
            },
            [&](const map27::PersonalityReceived& e) { HandlePersonality(e.info); },
            [&](const map27::SettingsReceived&) {},
            [&](const map27::LinkReady&) {
                if (!m_terminal || !m_terminal->IsLinkReady())
                    return; // lost again before this was delivered
                m_retryPause = FirstRetry;
                m_watch.LinkIsReady(Now());
                SetStatus(LinkStatus::State::Ready, {});
            },
            [&](const map27::LinkFailed& e) { HandleLinkFailed(e.reason); },
            [&](const map27::Report& e) {
                ProgramLog::Write(
                    QStringLiteral("%1 %2").arg(QString::fromStdString(e.text), HexOf(e.message)));
            },
        },
        event);
}

void SerialMap27Control::HandleLinkFailed(map27::LinkFailure reason)
{
    ProgramLog::Write(QString::fromLatin1(map27::LinkFailureText(reason)));
    int id = RadioText::LinkLostSilent;
    if (reason == map27::LinkFailure::PeerReset)
        id = RadioText::LinkLostRestarted;
    else if (reason == map27::LinkFailure::RetriesUsedUp)
        id = RadioText::LinkLostRetries;
    SetStatus(LinkStatus::State::Lost, PortText(id));
    m_watch.Begin(Now(), *m_terminal);
    // A dead network connection or a stuck adapter does not say so.
    if (reason != map27::LinkFailure::PeerReset && m_port->IsOpen())
        Reopen();
}

void SerialMap27Control::HandlePersonality(const map27::PersonalityMessage& personality)
{
    m_status.simulation = (personality.facilitiesC & SimulationBit) != 0;
    Q_EMIT LinkChanged(m_status);
}

void SerialMap27Control::Schedule()
{
    map27::Deadline deadline = m_retryAt;
    if (m_port && m_port->IsOpen())
        deadline = map27::Earlier(map27::Earlier(deadline, m_terminal->NextDeadline()),
                                  m_watch.NextLook(*m_terminal));
    if (!deadline) {
        m_timer.stop();
        return;
    }
    m_timer.start(std::max(Milliseconds{0}, *deadline - Now()));
}

void SerialMap27Control::Complain(LinkStatus::State state, const QString& text)
{
    if (m_status.text != text) // once, not at every retry
        ProgramLog::Write(text);
    SetStatus(state, text);
}

void SerialMap27Control::SetStatus(LinkStatus::State state, const QString& text)
{
    const LinkStatus status{state, text, m_status.simulation};
    if (status == m_status && state != LinkStatus::State::Closed)
        return;
    m_status = status;
    Q_EMIT LinkChanged(m_status);
}

QString SerialMap27Control::PortText(int id) const
{
    return FormatMessage(m_strings, id, {m_portName});
}

map27::TimePoint SerialMap27Control::Now() const
{
    return map27::TimePoint{m_clock.Ticks()};
}
