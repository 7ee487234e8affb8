#include "radio/agent/CallerNames.h"

#include "addressing/RadioAddress.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "radio/base/AddressBook.h"
#include "radio/base/SessionNumbering.h"
#include "radio/base/TextIds.h"

using map27::DescriptionKind;

CallerNames::CallerNames(const SessionNumbering& numbering, const AddressBook& addressBook,
                         const IStringSource& strings)
    : m_numbering(numbering),
      m_addressBook(addressBook),
      m_strings(strings)
{
}

Caller CallerNames::Of(int prefix, int ident, const map27::AddressDescription& description) const
{
    Caller caller;
    caller.dial = m_numbering.DialOf(prefix, ident);
    caller.callsign = m_addressBook.LookupCallsign(caller.dial);
    caller.shown = caller.callsign;
    caller.callBack = caller.callsign;
    if (description.understood && description.kind == DescriptionKind::PabxExtension) {
        // The ident is the extension's number, not that of a radio.
        caller.shown = Extension(ident, description.exchange);
        caller.callBack.clear();
    } else if (description.understood && !description.digits.empty()) {
        const QString digits = QString::fromStdString(description.digits);
        caller.shown = caller.callsign == caller.dial
                           ? FormatMessage(m_strings, RadioText::CallerNumber, {digits})
                           : FormatMessage(m_strings, RadioText::CallerAndNumber, {caller.callsign, digits});
        caller.callBack = m_numbering.DialOfGateway(ident, digits);
    } else if (ident == DummyIdent) {
        caller.shown = m_strings.LoadString(RadioText::UnknownCaller);
        caller.callBack.clear();
    }
    return caller;
}

QString CallerNames::Target(const map27::AddressDescription& description) const
{
    const map27::Address& unit = description.unit;
    if (description.understood && description.kind == DescriptionKind::PabxExtensionFull)
        return Extension(unit.ident, description.exchange);
    if (description.understood && description.kind == DescriptionKind::Unit && !unit.IsDummy())
        return Of(unit.prefix, unit.ident).shown;
    if (description.understood && !description.digits.empty())
        return FormatMessage(m_strings, RadioText::CallerNumber,
                             {QString::fromStdString(description.digits)});
    return m_strings.LoadString(RadioText::AnotherNumber);
}

QString CallerNames::Caption(bool emergency, int prefix, int ident) const
{
    int id = RadioText::IncomingCall;
    if (prefix == 0 && ident == PstnGatewayIdent)
        id = RadioText::IncomingPstnCall;
    else if (prefix == 0 && ident == PabxGatewayIdent)
        id = RadioText::IncomingPabxCall;
    else if (ident == EverybodyIdent)
        id = RadioText::IncomingSysWideCall;
    const QString caption = m_strings.LoadString(id);
    return emergency ? FormatMessage(m_strings, RadioText::EmergencyIn, {caption}) : caption;
}

QString CallerNames::Extension(int number, int exchange) const
{
    return FormatMessage(m_strings, RadioText::Extension,
                         {QString::number(number), QString::number(exchange)});
}
