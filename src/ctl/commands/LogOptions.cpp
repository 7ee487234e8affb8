#include "ctl/commands/LogOptions.h"

#include "core/eventlog/EventLog.h"
#include "ctl/commands/AccountOptions.h"
#include "logbook/query/LogLines.h"

#include <QRegularExpression>

namespace {

UsageError NotOne(const QString& option, const QString& value, const QString& right)
{
    return UsageError(QStringLiteral("--%1 %2: expected %3").arg(option, value, right));
}

int KindOf(const QString& word)
{
    for (const auto& [name, kind] : {std::pair("status", EventType::Status),
                                     std::pair("text", EventType::Text), std::pair("call", EventType::Call)})
        if (word == QLatin1String(name))
            return static_cast<int>(kind);
    throw NotOne("kind", word, "status, text or call");
}

} // namespace

QList<QCommandLineOption> LogOptions::All()
{
    return {{"party", "how a callsign or number of either party begins; * and ? stand for others", "NAME"},
            {"kind", "status, text or call; may be given again", "KIND"},
            {"direction", "in or out", "WAY"},
            {"since", "from this time on", "TIME"},
            {"until", "before this time", "TIME"},
            {"text", "words that begin words of the text or of a party", "WORDS"},
            {"emergency", "emergency calls only"},
            {"radio", "the console's radio, callsign or number: for the direction in old records", "NAME"},
            {"format", "text, csv or json (one object a line)", "FORMAT"},
            AccountOptions::ActingAccount(),
            AccountOptions::PasswordFromStdin()};
}

QString LogOptions::About()
{
    return QStringLiteral(
        "TIME is local: 2026-11-23, \"2026-11-23 14:05\", or 90m, 2h, 3d for how long ago. Records that an\n"
        "older version has stored do not say which way they went; --radio says whose they are. Asks for the\n"
        "password of the account that does it.");
}

// "2026-11-23", "2026-11-23 14:05", "2026-11-23T14:05:00+01:00", or how long ago: "90m", "2h", "3d".
QDateTime LogOptions::TimeOf(const Request& request, const QString& option)
{
    const QString value = request.options.value(option).trimmed();
    if (!request.options.isSet(option))
        return {};
    static const QRegularExpression ago(QStringLiteral("^([0-9]{1,6})([mhd])$"));
    if (const auto match = ago.match(value); match.hasMatch()) {
        const qint64 seconds = match.captured(2) == "m" ? 60 : match.captured(2) == "h" ? 3600 : 86400;
        return QDateTime::currentDateTimeUtc().addSecs(-seconds * match.captured(1).toLongLong());
    }
    const QString iso = QString(value).replace(u' ', u'T');
    const QDateTime time = QDateTime::fromString(iso, Qt::ISODateWithMs);
    if (!time.isValid())
        throw NotOne(option, value,
                     "a time as 2026-11-23, \"2026-11-23 14:05\", or 90m, 2h, 3d for how long ago");
    return time;
}

LogFilter LogOptions::FilterOf(const Request& request)
{
    LogFilter filter;
    filter.party = request.options.value("party");
    filter.text = request.options.value("text");
    for (const QString& kind : request.options.values("kind"))
        filter.kinds.insert(KindOf(kind));
    if (request.options.isSet("direction")) {
        const QString way = request.options.value("direction");
        if (way != "in" && way != "out")
            throw NotOne("direction", way, "in or out");
        filter.direction = static_cast<int>(way == "in" ? MessageWay::In : MessageWay::Out);
    }
    filter.since = TimeOf(request, "since");
    filter.until = TimeOf(request, "until");
    if (filter.since.isValid() && filter.until.isValid() && filter.since >= filter.until)
        throw UsageError(QStringLiteral("--since is not before --until"));
    filter.emergency = request.options.isSet("emergency");
    return filter;
}

LogFacts LogOptions::FactsOf(const Request& request, dao::Database& database)
{
    LogFacts facts(request.strings, request.options.values("radio"));
    facts.ReadStatuses(database);
    return facts;
}

LogOptions::Format LogOptions::FormatOf(const Request& request, Format otherwise)
{
    if (!request.options.isSet("format"))
        return otherwise;
    const QString format = request.options.value("format");
    for (const auto& [name, value] :
         {std::pair("text", Format::Text), std::pair("csv", Format::Csv), std::pair("json", Format::Json)})
        if (format == QLatin1String(name))
            return value;
    throw NotOne("format", format, "text, csv or json");
}

QString LogOptions::Line(const dao::EventRecord& record, const LogFacts& facts, Format format)
{
    switch (format) {
    case Format::Csv:
        return LogLines::Csv(record, facts);
    case Format::Json:
        return LogLines::Json(record, facts) + u'\n';
    case Format::Text:
        break;
    }
    return LogLines::Text(record, facts) + u'\n';
}

QString LogOptions::Header(Format format)
{
    return format == Format::Csv ? LogLines::CsvHeader() : QString();
}
