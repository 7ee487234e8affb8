#include "mainwindow/log/LogLineFormatter.h"

#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "mainwindow/base/LongTime.h"
#include "radio/base/EmergencyCalls.h"
#include "radio/base/StatusTexts.h"
#include "radio/base/TextIds.h"

#include <QLocale>
#include <QRegularExpression>
#include <algorithm>
#include <array>

namespace {

constexpr auto In = "in";
constexpr auto Out = "out";

// Windows-1252 codes 80 to 9F; the rest of the code page is Latin-1. 0 where the page has no character.
constexpr std::array<char16_t, 32> Windows1252 = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

int AnsiCode(char16_t character)
{
    constexpr int FirstSpecial = 0x80;
    constexpr int FirstLatin1 = 0xA0;
    constexpr int LastLatin1 = 0xFF;
    constexpr int Unknown = 0x3F;

    if (character < FirstSpecial || (character >= FirstLatin1 && character <= LastLatin1))
        return character;
    const auto special = std::find(Windows1252.begin(), Windows1252.end(), character);
    return special == Windows1252.end() ? Unknown
                                        : FirstSpecial + static_cast<int>(special - Windows1252.begin());
}

QString HexOf(const QString& data)
{
    QString hex;
    hex.reserve(3 * data.size());
    for (qsizetype i = 0; i < data.size(); ++i) {
        const bool pair = data[i].isHighSurrogate() && i + 1 < data.size() && data[i + 1].isLowSurrogate();
        hex += QStringLiteral("%1 ").arg(AnsiCode(data[i].unicode()), 2, 16, QLatin1Char('0')).toUpper();
        i += pair ? 1 : 0;
    }
    return hex;
}

// The raw form of "nobody", which its ident alone decides.
bool IsDummy(const QString& party)
{
    static const QRegularExpression raw(QStringLiteral("^/[01][0-9]{2}0000$"));
    return raw.match(party).hasMatch();
}

} // namespace

QString StoredEvent::KeyOf(EventType type)
{
    switch (type) {
    case EventType::Status:
        return QStringLiteral("status");
    case EventType::Text:
        return QStringLiteral("text");
    case EventType::Call:
        return QStringLiteral("call");
    }
    return {};
}

QString FormatLogData(const QString& data, LogDataView view)
{
    return view == LogDataView::Hex ? HexOf(data) : data;
}

LogLineFormatter::LogLineFormatter(const StatusTexts& statusTexts, const IStringSource& strings)
    : m_statusTexts(statusTexts),
      m_emergencies(EmergencyCallTexts(strings)),
      m_unknownCaller(strings.LoadString(RadioText::UnknownCaller))
{
}

// A record of a call keeps only the words, in the language of the console that wrote it. A status is one as
// it is marked now.
bool LogLineFormatter::IsEmergency(EventType type, const QString& text, bool in) const
{
    if (type == EventType::Call)
        return m_emergencies.contains(text);
    if (type != EventType::Status || !in)
        return false;
    for (int code = 0; code < StatusTexts::Codes; ++code)
        if (m_statusTexts.IsEmergency(code) && m_statusTexts.StatusInText(code) == text)
            return true;
    return false;
}

std::optional<LogLine> LogLineFormatter::CheckDayChange(const QDateTime& time)
{
    const QDate day = time.toLocalTime().date();
    if (day == m_lastDay)
        return std::nullopt;
    m_lastDay = day;
    return LogLine{QLocale().toString(day, QLocale::LongFormat), QStringLiteral("newday"), {}};
}

LogLine LogLineFormatter::LiveLine(const QDateTime& time, EventType type, const QString& desc,
                                   const QString& from, const QString& to, const OwnRadio& own,
                                   LogDataView view, const QString& shown) const
{
    QString direction;
    QString party;
    if (own.Is(from)) {
        direction = QLatin1String(Out);
        party = to;
    } else if (own.Is(to)) {
        direction = QLatin1String(In);
        party = from;
    }
    const QString text = type == EventType::Text ? FormatLogData(desc, view) : desc;
    return Line(time, text, StoredEvent::KeyOf(type) + direction, party, shown,
                IsEmergency(type, desc, direction == QLatin1String(In)));
}

LogLine LogLineFormatter::StoredLine(const StoredEvent& event, const OwnRadio& own, LogDataView view) const
{
    const bool in = own.Is(event.to);
    const QString& party = in ? event.from : event.to;
    const QString text = StoredText(event, in, view);
    const auto type = static_cast<EventType>(event.eventType);
    return Line(event.time, text, event.iconKey + QLatin1String(in ? In : Out), party, {},
                IsEmergency(type, text, in));
}

LogLine LogLineFormatter::Line(const QDateTime& time, const QString& desc, const QString& iconKey,
                               const QString& party, const QString& shown, bool emergency) const
{
    const bool nobody = IsDummy(party);
    const QString name = !shown.isEmpty() ? shown : nobody ? m_unknownCaller : party;
    return {QStringLiteral(" %1 [%2] %3").arg(LongTime(time.toLocalTime().time()), name, desc), iconKey,
            nobody ? QString() : party, emergency};
}

QString LogLineFormatter::StoredText(const StoredEvent& event, bool in, LogDataView view) const
{
    switch (static_cast<EventType>(event.eventType)) {
    case EventType::Status: {
        bool number = false;
        const int code = event.desc.toInt(&number);
        if (!number)
            return {};
        try {
            return in ? m_statusTexts.StatusInText(code) : m_statusTexts.StatusOutText(code);
        } catch (const Error&) {
            return {}; // a code without a status message
        }
    }
    case EventType::Text:
        return FormatLogData(event.desc, view);
    case EventType::Call:
        return event.desc;
    }
    return {};
}
