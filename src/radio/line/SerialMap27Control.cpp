#include "radio/line/SerialMap27Control.h"

#include "core/base/ProgramLog.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "map27/codec/Causes.h"
#include "map27/trace/TextMask.h"
#include "radio/base/TextIds.h"
#include "radio/line/LineConditionText.h"
#include "radio/line/RefusalText.h"
#include "radio/line/RegroupFormat.h"

namespace {

using map27::Terminal;
using map27::TimePoint;

constexpr std::uint8_t SimulationBit = 0x80; // of facilities c, which the standard leaves free

qint16 Number(unsigned value)
{
    return static_cast<qint16>(value);
}

map27::Address AddressOf(qint16 prefix, qint16 ident)
{
    // What is not an address becomes the dummy one, which the terminal refuses.
    if (prefix < 0 || prefix > map27::HighestPrefix || ident < 0 || ident > map27::HighestIdent)
        return {};
    return {static_cast<std::uint8_t>(prefix), static_cast<std::uint16_t>(ident)};
}

QString ShownAddress(qint16 prefix, qint16 ident)
{
    return QStringLiteral("/%1%2").arg(prefix, 3, 10, QLatin1Char('0')).arg(ident, 4, 10, QLatin1Char('0'));
}

QString HexOf(const map27::Octets& octets)
{
    const QByteArray bytes(reinterpret_cast<const char*>(octets.data()),
                           static_cast<qsizetype>(octets.size()));
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

void Log(const std::string& text, const map27::Octets& octets)
{
    ProgramLog::Write(QStringLiteral("%1 %2").arg(
        QString::fromStdString(text), HexOf(map27::WithoutText(octets, map27::Direction::FromRadio))));
}

// What was asked for has happened, whatever the cause.
bool IsPositive(std::uint8_t type)
{
    return (type & 0xF0) == (map27::Type::MessagePositive & 0xF0);
}

// Whom a message names.
map27::Party PartyOf(const map27::Octets& message)
{
    const auto decoded = map27::DecodeFromRadio(message);
    if (const auto* known = std::get_if<map27::FromRadio>(&decoded)) {
        if (const auto* progress = std::get_if<map27::AcknowledgementMessage>(known))
            return progress->party;
    }
    return {};
}

template <typename... Handlers> struct Overloaded : Handlers... {
    using Handlers::operator()...;
};
template <typename... Handlers> Overloaded(Handlers...) -> Overloaded<Handlers...>;

} // namespace

SerialMap27Control::SerialMap27Control(const IStringSource& strings, const Clock& clock, Place place,
                                       PortFactory ports)
    : m_strings(strings),
      m_line(clock, std::move(ports), place)
{
    connect(&m_line, &ThreadedLine::Reported, this, &SerialMap27Control::Take);
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
    const ThreadedLine::Outcome outcome = m_line.Open(m_portName, m_baudRate);
    if (outcome.opening == ThreadedLine::Opening::Failed)
        throw Error(ErrorCode::General, PortProblemText(outcome.problem, m_strings));
    if (outcome.opening == ThreadedLine::Opening::GivenUp)
        throw Error(ErrorCode::First + RadioText::OpeningGivenUp, PortText(RadioText::OpeningGivenUp));
    SetStatus(LinkStateOf(LineCondition::Kind::Connecting), PortText(RadioText::LinkConnecting));
}

void SerialMap27Control::CloseLink()
{
    m_line.Close();
    m_status.simulation = false;
    SetStatus(LinkStatus::State::Closed, {});
}

void SerialMap27Control::SendStatusMessage(qint16 prefix, qint16 ident, qint16 status)
{
    const bool known = status >= 0 && status <= 31;
    Run(known ? ShownAddress(prefix, ident) : QString::number(status),
        [=](Terminal& terminal, TimePoint now) {
            return terminal.SendStatus(AddressOf(prefix, ident), static_cast<unsigned>(status), now);
        });
}

void SerialMap27Control::SendTextMessage(qint16 prefix, qint16 ident, const QString& text, bool eightBit)
{
    const auto coding = eightBit ? map27::TextCoding::EightBit : map27::TextCoding::SevenBit;
    Run(ShownAddress(prefix, ident), [=](Terminal& terminal, TimePoint now) {
        return terminal.SendText(AddressOf(prefix, ident), text.toStdString(), coding, now);
    });
}

void SerialMap27Control::SendRegroupCommand(qint16 memberPrefix, qint16 memberIdent, qint16 pos,
                                            qint16 groupPrefix, qint16 groupIdent)
{
    const map27::Octets command = RegroupFormat::Regroup(pos, AddressOf(groupPrefix, groupIdent));
    Run(ShownAddress(memberPrefix, memberIdent), [=](Terminal& terminal, TimePoint now) {
        return terminal.SendBinary(AddressOf(memberPrefix, memberIdent), command, now);
    });
}

void SerialMap27Control::SendGroupNameCommand(qint16 prefix, qint16 ident, qint16 pos, const QString& name)
{
    const auto command = RegroupFormat::GroupName(pos, name.toStdString());
    if (const auto* problem = std::get_if<map27::TextProblem>(&command)) {
        if (problem->fault == map27::TextFault::TooLong) {
            throw Error(
                ErrorCode::First + RadioText::NameTooLong,
                FormatMessage(m_strings, RadioText::NameTooLong, {name, QString::number(problem->limit)}));
        }
        throw RefusalError({.code = map27::RefusalCode::Text, .text = *problem}, name, m_strings);
    }
    const map27::Octets octets = std::get<map27::Octets>(command);
    Run(ShownAddress(prefix, ident), [prefix, ident, octets](Terminal& terminal, TimePoint now) {
        return terminal.SendBinary(AddressOf(prefix, ident), octets, now);
    });
}

void SerialMap27Control::RequestRadioInfo(qint16 kind)
{
    Run(
        {}, [=](Terminal& terminal,
                TimePoint now) { return terminal.RequestRadioInfo(static_cast<unsigned>(kind), now); });
}

void SerialMap27Control::MakeCall(qint16 prefix, qint16 ident, bool emergency, bool priority, bool dialog)
{
    Run(
        ShownAddress(prefix, ident),
        [=](Terminal& terminal, TimePoint now) {
            return terminal.MakeCall(AddressOf(prefix, ident), emergency, priority, dialog, now);
        });
}

void SerialMap27Control::MakeGatewayCall(qint32 gateway, const QString& digits, bool emergency, bool priority,
                                         bool dialog)
{
    Run(
        digits,
        [=](Terminal& terminal, TimePoint now) {
            return terminal.MakeGatewayCall(gateway, digits.toStdString(), emergency, priority, dialog, now);
        });
}

void SerialMap27Control::AnswerCall(bool accept)
{
    Run(
        {}, [=](Terminal& terminal,
                TimePoint now) { return accept ? terminal.AnswerCall(now) : terminal.RefuseCall(now); });
}

// Switching off is never dropped.
void SerialMap27Control::SetTransmit(bool on)
{
    Run(
        {}, [=](Terminal& terminal, TimePoint now) { return terminal.SetTransmit(on, now); },
        on ? ThreadedLine::Late::Dropped : ThreadedLine::Late::Kept);
}

void SerialMap27Control::CancelTransaction()
{
    RunIfOpen([](Terminal& terminal, TimePoint now) { return terminal.CancelTransaction(now); });
}

void SerialMap27Control::ClearCall()
{
    RunIfOpen([](Terminal& terminal, TimePoint now) { return terminal.ClearCall(now); });
}

void SerialMap27Control::HangUpRadio()
{
    Run(
        {}, [](Terminal& terminal, TimePoint now) { return terminal.PutOnHook(now); },
        ThreadedLine::Late::Kept);
}

void SerialMap27Control::ResetLink(qint32 pause)
{
    RunIfOpen([pause](Terminal& terminal, TimePoint now) {
        return terminal.ResetLink(map27::Milliseconds{pause}, now);
    });
}

void SerialMap27Control::Run(const QString& subject, const RadioLine::Operation& operation,
                             ThreadedLine::Late late)
{
    if (!m_line.IsOpen())
        RaiseCatalogueError(m_strings, RadioText::NotConnected);
    if (const auto refusal = m_line.Run(operation, late))
        throw RefusalError(*refusal, subject, m_strings);
}

void SerialMap27Control::RunIfOpen(
    const std::function<map27::TerminalOutput(Terminal&, TimePoint)>& operation)
{
    if (m_line.IsOpen())
        m_line.Leave([operation](Terminal& terminal, TimePoint now) {
            return map27::OperationResult{std::nullopt, operation(terminal, now)};
        });
}

// A window that raises must not keep the next event from arriving.
void SerialMap27Control::Take(const LineReport& report)
{
    try {
        if (const auto* event = std::get_if<map27::TerminalEvent>(&report))
            Handle(*event);
        else
            HandleCondition(std::get<LineCondition>(report));
    } catch (const std::exception& failure) {
        ProgramLog::Write(DescribeError(failure, m_strings));
    }
}

void SerialMap27Control::Handle(const map27::TerminalEvent& event)
{
    std::visit(
        Overloaded{
            [&](const map27::StatusReceived& e) {
                Q_EMIT StatusReceived(e.from.prefix, Number(e.from.ident), e.status);
            },
            [&](const map27::TextReceived& e) {
                Q_EMIT TextReceived(QString::fromStdString(e.text), e.from.prefix, Number(e.from.ident));
            },
            [&](const map27::IncomingCall& e) {
                Q_EMIT IncomingCall(e.type, e.flags, e.from.prefix, Number(e.from.ident), e.description);
            },
            [&](const map27::MessageProgress& e) {
                TellCause(e.source, e.cause, e.message);
                Q_EMIT MessageProgress(e.code, e.cause, e.party.prefix, Number(e.party.ident));
            },
            [&](const map27::OutgoingCallProgress& e) {
                TellCause(e.source, e.cause, e.message);
                Q_EMIT OutgoingCallProgress(e.code, e.cause);
            },
            [&](const map27::AnswerProgress& e) {
                TellCause(e.source, e.cause, e.message);
                Q_EMIT AnswerProgress(e.code, e.cause);
            },
            [&](const map27::TransactionCleared& e) {
                if (e.by != map27::ClearedBy::LinkReset)
                    TellCause(e.type, e.cause, e.message);
                Q_EMIT TransactionCleared(e.type, e.cause);
            },
            [&](const map27::CallTakenUp& e) {
                ProgramLog::Write(QStringLiteral("call taken up again: %1")
                                      .arg(QString::fromStdString(map27::ToText(e.party))));
                Q_EMIT CallTakenUp(e.party.prefix, Number(e.party.ident));
            },
            [&](const map27::NumberingReceived& e) {
                m_numbering = e.info;
                Q_EMIT NumberingReceived();
            },
            [&](const map27::OperatingConditionReceived& e) {
                Q_EMIT OperatingConditionReceived(e.info.inContact, e.info.offHook, e.info.transmitting,
                                                  e.info.fieldStrength,
                                                  static_cast<int>(e.info.MaxCallSeconds().value_or(0)),
                                                  HexOf(map27::EncodeFromRadio(e.info)));
            },
            [&](const map27::NetworkInfoReceived& e) {
                Q_EMIT NetworkInfoReceived(Number(e.info.channel), Number(e.info.systemIdentity));
            },
            [&](const map27::PersonalityReceived& e) { HandlePersonality(e.info); },
            [&](const map27::SettingsReceived&) {},
            [&](const map27::LinkReady&) {}, // these two come as conditions
            [&](const map27::LinkFailed&) {},
            [&](const map27::Report& e) { HandleReport(e); },
        },
        event);
}

void SerialMap27Control::TellCause(std::uint8_t source, std::uint8_t cause, const map27::Octets& message)
{
    const std::string name = map27::TypeName(source, map27::Direction::FromRadio);
    if (source == map27::Type::Call || source == map27::Type::EmergencyCall)
        Log(name, message);
    else if (!message.empty() && source != map27::Type::ProtocolInfo && // that one was reported
             !(IsPositive(source) && cause == map27::Cause::Success))
        Log(name + " (" + map27::CauseText(source, cause) + ")", message);
    if (!IsPositive(source))
        Q_EMIT CauseTold({source, cause, PartyOf(message)});
}

void SerialMap27Control::HandleReport(const map27::Report& report)
{
    Log(report.text, report.message);
    if (report.kind == map27::ReportKind::ProtocolInfo && report.message.size() > 1)
        Q_EMIT Complained(report.message[1]);
}

void SerialMap27Control::HandlePersonality(const map27::PersonalityMessage& personality)
{
    m_status.simulation = (personality.facilitiesC & SimulationBit) != 0;
    Q_EMIT LinkChanged(m_status);
}

void SerialMap27Control::HandleCondition(const LineCondition& condition)
{
    using enum LineCondition::Kind;
    const QString text = LineConditionText(condition, {m_portName, m_baudRate}, m_strings);
    if (condition.kind == LinkLost)
        ProgramLog::Write(QString::fromLatin1(map27::LinkFailureText(condition.reason)));
    else if (condition.kind != Connecting && condition.kind != Ready && text != m_status.text)
        ProgramLog::Write(text); // once, not at every retry
    SetStatus(LinkStateOf(condition.kind), text);
}

void SerialMap27Control::SetStatus(LinkStatus::State state, const QString& text)
{
    const LinkStatus status{state, text, m_status.simulation};
    if (status == m_status && state != LinkStatus::State::Closed)
        return;
    if (state != m_status.state && state == LinkStatus::State::Ready)
        ProgramLog::Write(QStringLiteral("Link: ready on %1").arg(m_portName));
    if (state != m_status.state && state == LinkStatus::State::Closed)
        ProgramLog::Write(QStringLiteral("Link: closed"));
    m_status = status;
    Q_EMIT LinkChanged(m_status);
}

QString SerialMap27Control::PortText(int id) const
{
    return FormatMessage(m_strings, id, {m_portName});
}
