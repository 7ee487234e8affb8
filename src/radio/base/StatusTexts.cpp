#include "radio/base/StatusTexts.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "radio/base/TextIds.h"

StatusTexts::StatusTexts(const IStringSource& strings) : m_strings(strings) {}

void StatusTexts::Clear()
{
    m_in.fill({});
    m_out.fill({});
    m_emergency.fill(false);
}

void StatusTexts::Set(int code, const QString& inDescription, const QString& outDescription, bool emergency)
{
    const std::size_t index = Index(code);
    m_in[index] = Line(code, inDescription);
    m_out[index] = Line(code, outDescription);
    m_emergency[index] = emergency;
}

QString StatusTexts::StatusInText(int code) const
{
    const QString& text = m_in[Index(code)];
    return text.isEmpty() ? FormatMessage(m_strings, RadioText::StatusIn, {QString::number(code)}) : text;
}

QString StatusTexts::StatusOutText(int code) const
{
    const QString& text = m_out[Index(code)];
    return text.isEmpty() ? FormatMessage(m_strings, RadioText::StatusOut, {QString::number(code)}) : text;
}

bool StatusTexts::IsEmergency(int code) const
{
    return code >= 0 && code < Codes && m_emergency[static_cast<std::size_t>(code)];
}

QString StatusTexts::Line(int code, const QString& description)
{
    return QStringLiteral("%1 - %2").arg(code, 2, 10, QLatin1Char('0')).arg(description);
}

std::size_t StatusTexts::Index(int code) const
{
    if (code < 0 || code >= Codes) {
        throw Error(ErrorCode::First + RadioText::StatusOutOfRange,
                    FormatMessage(m_strings, RadioText::StatusOutOfRange, {QString::number(code)}));
    }
    return static_cast<std::size_t>(code);
}
