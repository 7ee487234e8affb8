// The operations of the radio control: each hands one request to the terminal.

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "radio/base/TextIds.h"
#include "radio/line/RefusalText.h"
#include "radio/line/RegroupFormat.h"
#include "radio/line/SerialMap27Control.h"

namespace {

using map27::Terminal;
using map27::TimePoint;

map27::Address AddressOf(qint16 prefix, qint16 ident)
{
    // What is no address becomes the dummy one, which the terminal refuses.
    if (prefix < 0 || prefix > map27::HighestPrefix || ident < 0 || ident > map27::HighestIdent)
        return {};
    return {static_cast<std::uint8_t>(prefix), static_cast<std::uint16_t>(ident)};
}

QString ShownAddress(qint16 prefix, qint16 ident)
{
    return QStringLiteral("/%1%2").arg(prefix, 3, 10, QLatin1Char('0')).arg(ident, 4, 10, QLatin1Char('0'));
}

} // namespace

void SerialMap27Control::SendStatusMessage(qint16 prefix, qint16 ident, qint16 status)
{
    const bool known = status >= 0 && status <= 31;
    Run(known ? ShownAddress(prefix, ident) : QString::number(status),
        [&](Terminal& terminal, TimePoint now) {
            return terminal.SendStatus(AddressOf(prefix, ident), static_cast<unsigned>(status), now);
        });
}

void SerialMap27Control::SendTextMessage(qint16 prefix, qint16 ident, const QString& text, bool eightBit)
{
    const auto coding = eightBit ? map27::TextCoding::EightBit : map27::TextCoding::SevenBit;
    Run(ShownAddress(prefix, ident), [&](Terminal& terminal, TimePoint now) {
        return terminal.SendText(AddressOf(prefix, ident), text.toStdString(), coding, now);
    });
}

void SerialMap27Control::SendRegroupCommand(qint16 memberPrefix, qint16 memberIdent, qint16 pos,
                                            qint16 groupPrefix, qint16 groupIdent)
{
    Run(
        ShownAddress(memberPrefix, memberIdent),
        [&](Terminal& terminal, TimePoint now) {
            const map27::Octets command = RegroupFormat::Regroup(pos, AddressOf(groupPrefix, groupIdent));
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
    Run(ShownAddress(prefix, ident), [&](Terminal& terminal, TimePoint now) {
        return terminal.SendBinary(AddressOf(prefix, ident), std::get<map27::Octets>(command), now);
    });
}

void SerialMap27Control::RequestRadioInfo(qint16 kind)
{
    Run(
        {}, [&](Terminal& terminal,
                TimePoint now) { return terminal.RequestRadioInfo(static_cast<unsigned>(kind), now); });
}

void SerialMap27Control::MakeCall(qint16 prefix, qint16 ident, bool emergency, bool priority, bool dialog)
{
    Run(
        ShownAddress(prefix, ident),
        [&](Terminal& terminal, TimePoint now) {
            return terminal.MakeCall(AddressOf(prefix, ident), emergency, priority, dialog, now);
        });
}

void SerialMap27Control::MakeGatewayCall(qint32 gateway, const QString& digits, bool emergency, bool priority,
                                         bool dialog)
{
    Run(
        digits,
        [&](Terminal& terminal, TimePoint now) {
            return terminal.MakeGatewayCall(gateway, digits.toStdString(), emergency, priority, dialog, now);
        });
}

void SerialMap27Control::AnswerCall(bool accept)
{
    Run(
        {}, [&](Terminal& terminal,
                TimePoint now) { return accept ? terminal.AnswerCall(now) : terminal.RefuseCall(now); });
}

void SerialMap27Control::SetTransmit(bool on)
{
    Run(
        {}, [&](Terminal& terminal, TimePoint now) { return terminal.SetTransmit(on, now); });
}

void SerialMap27Control::CancelTransaction()
{
    if (m_terminal)
        Take(m_terminal->CancelTransaction(Now()));
}

void SerialMap27Control::ClearCall()
{
    if (m_terminal)
        Take(m_terminal->ClearCall(Now()));
}

void SerialMap27Control::ResetLink(qint32 pause)
{
    if (m_terminal)
        Take(m_terminal->ResetLink(map27::Milliseconds{pause}, Now()));
}
