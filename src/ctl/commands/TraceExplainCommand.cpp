#include "core/texts/Errors.h"
#include "ctl/files/LineFile.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "map27/trace/TraceObserver.h"

#include <QDateTime>

namespace {

using map27::Finding;
using map27::TraceEntry;

// The time of day once an entry has told it, else since the origin of the trace.
class TraceTime {
public:
    void Take(const TraceEntry& entry)
    {
        const QDateTime time = QDateTime::fromString(QString::fromStdString(entry.time), Qt::ISODateWithMs);
        if (time.isValid())
            m_offset = time.time().msecsSinceStartOfDay() - entry.at.time_since_epoch().count();
    }

    QString Text(map27::TimePoint at) const
    {
        constexpr qint64 day = 86'400'000;
        const qint64 since = at.time_since_epoch().count() + m_offset.value_or(0);
        const qint64 ms = m_offset ? (since % day + day) % day : since;
        return QStringLiteral("%1:%2:%3.%4")
            .arg(ms / 3'600'000, 2, 10, QLatin1Char('0'))
            .arg(ms / 60'000 % 60, 2, 10, QLatin1Char('0'))
            .arg(ms / 1000 % 60, 2, 10, QLatin1Char('0'))
            .arg(ms % 1000, 3, 10, QLatin1Char('0'));
    }

private:
    std::optional<qint64> m_offset; // ms
};

const char* MarkOf(const Finding& finding)
{
    return finding.weight == Finding::Weight::Breach ? "!!" : "..";
}

const char* EndOf(map27::Direction direction)
{
    return direction == map27::Direction::ToRadio ? "console" : "radio";
}

// Of lines that are no part of a trace; a file that is something else has many.
constexpr int MostShown = 20;

class Explanation {
public:
    explicit Explanation(const Request& request)
        : m_withOctets(request.options.isSet("hex")),
          m_findingsOnly(request.options.isSet("findings"))
    {
    }

    void Take(const TraceEntry& entry)
    {
        m_any = true;
        Show(entry);
    }

    // A line that is no part of a trace: what it was, nobody knows.
    void TakeBroken(const QString& problem)
    {
        if (++m_broken <= MostShown)
            Console::PrintError(QStringLiteral("veltorkynctl: %1").arg(problem));
        Show({.kind = TraceEntry::Kind::Lost, .at = m_last, .number = 1});
    }

    // Raises Error when not all of it could be read.
    void Sum() const
    {
        if (!m_any)
            throw Error(ErrorCode::General, QStringLiteral("there is no line of a trace"));
        const map27::TraceObserver::Totals& totals = m_observer.Counted();
        Console::Print(QStringLiteral("%1 frames, %2 of them damaged; %3 messages; %4 breaches of the "
                                      "standard, %5 remarks")
                           .arg(totals.frames)
                           .arg(totals.damaged)
                           .arg(totals.messages)
                           .arg(totals.breaches)
                           .arg(totals.remarks));
        if (m_broken > 0)
            throw Error(ErrorCode::General,
                        m_broken == 1
                            ? QStringLiteral("one line is no part of a trace; all others are explained")
                            : QStringLiteral("%1 lines are no part of a trace; all others are explained")
                                  .arg(m_broken));
    }

private:
    void Show(const TraceEntry& entry)
    {
        m_last = entry.at;
        const map27::TraceObserver::Seen seen = m_observer.Take(entry);
        m_time.Take(entry);
        if (m_findingsOnly && seen.findings.empty())
            return;
        const bool onWire = entry.kind == TraceEntry::Kind::Frame || entry.kind == TraceEntry::Kind::Noise;
        Console::Print(QStringLiteral("%1 %2 %3")
                           .arg(m_time.Text(entry.at), 12)
                           .arg(QLatin1String(onWire ? map27::ArrowOf(entry.direction) : "-"),
                                QString::fromStdString(seen.words)));
        if (m_withOctets && onWire)
            Console::Print(Indented("  ", map27::ToHex(entry.octets)));
        for (const Finding& finding : seen.findings)
            Console::Print(Indented(MarkOf(finding), std::string(EndOf(finding.by)) + ", " +
                                                         std::string(finding.kind) + ": " + finding.text));
    }

    static QString Indented(const char* mark, const std::string& text)
    {
        return QStringLiteral("%1 %2 %3")
            .arg(QString(), 12)
            .arg(QLatin1String(mark), QString::fromStdString(text));
    }

    map27::TraceObserver m_observer;
    TraceTime m_time;
    map27::TimePoint m_last{};
    bool m_any = false;
    int m_broken = 0; // lines
    bool m_withOctets;
    bool m_findingsOnly;
};

int Run(const Request& request)
{
    Explanation explanation(request);
    for (const QString& path : request.arguments) {
        LineFile file(path);
        while (const auto line = file.Next()) {
            if (line->trimmed().isEmpty() && !file.IsTooLong())
                continue;
            if (file.IsTooLong()) {
                explanation.TakeBroken(
                    file.About(1, QStringLiteral("the line is longer than any of a trace")));
                continue;
            }
            const auto read =
                map27::ReadTraceEntry({line->constData(), static_cast<std::size_t>(line->size())});
            if (const auto* entry = std::get_if<TraceEntry>(&read)) {
                explanation.Take(*entry);
            } else if (file.IsCutOff()) {
                Console::PrintError(QStringLiteral("veltorkynctl: the last line of %1 is cut off").arg(path));
            } else {
                const auto& problem = std::get<map27::TraceProblem>(read);
                explanation.TakeBroken(file.About(problem.column, QString::fromStdString(problem.reason)));
            }
        }
    }
    explanation.Sum();
    return exitOk;
}

constexpr auto Help =
    R"(Puts a trace of the wire between console and radio into words, a line for each frame:
  TIME > WORDS      from the console to the radio
  TIME < WORDS      from the radio to the console
  TIME - WORDS      neither: the line was opened, or the simulated radio was told something
and below it what strikes about it:
  !! WHOSE, KIND: a breach of the standard (MAP27 version 1.5)
  .. WHOSE, KIND: allowed, or the line's fault, but worth a look
TIME is that of the day where the trace tells it, else since its beginning. KIND is one word that
stays the same from version to version. The last line counts everything. Texts of messages are
shown as they are.

FILE is what the console keeps of the last hour, line-trace.jsonl and the older
line-trace.1.jsonl in ~/.local/state/VeltorKyn; or what veltorkyn-radio --trace or veltorkynctl
radio check --trace have written. Several are taken as one, so the older one goes first. "-" is
standard input. Files may be of any length. A last line that was cut off is left out, with a word
on standard error. Of any other line that is no part of a trace standard error has the place and
what is wrong with it; the rest is explained all the same, and the exit code is 1.

Example:
  veltorkynctl trace explain --findings line-trace.1.jsonl line-trace.jsonl)";

} // namespace

Command TraceExplainCommand()
{
    return {.words = "trace explain",
            .synopsis = "[--findings] [--hex] FILE...",
            .summary = "put a trace of the radio's line into words",
            .help = Help,
            .options = {QCommandLineOption("findings", "only what strikes"),
                        QCommandLineOption("hex", "the octets of each frame, too")},
            .fewestArguments = 1,
            .mostArguments = -1,
            .run = Run};
}
