#include "core/base/Clock.h"
#include "core/texts/Errors.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "dao/base/FileAccess.h"
#include "map27/check/RadioCheck.h"
#include "radio/line/RadioPort.h"

#include <QDateTime>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

namespace {

constexpr int UsualSpeed = 9600;
constexpr int LongestWatch = 3600; // s

// A whole number of an option, within its limits.
int NumberOf(const Request& request, const QString& option, int least, int most)
{
    bool whole = false;
    const int number = request.options.value(option).toInt(&whole);
    if (!whole || number < least || number > most)
        throw UsageError(QStringLiteral("--%1: \"%2\" is not a whole number from %3 to %4")
                             .arg(option, request.options.value(option))
                             .arg(least)
                             .arg(most));
    return number;
}

// "PREFIX/IDENT"
map27::Address AddressOf(const QString& text)
{
    const QStringList numbers = text.split('/');
    bool isPrefix = false;
    bool isIdent = false;
    const uint prefix = numbers.value(0).toUInt(&isPrefix);
    const uint ident = numbers.value(1).toUInt(&isIdent);
    const bool inRange = prefix <= map27::HighestPrefix && ident > 0 && ident < map27::Ident::Pstn;
    if (numbers.size() != 2 || !isPrefix || !isIdent || !inRange)
        throw UsageError(
            QStringLiteral("--transmit-to: \"%1\" is not PREFIX/IDENT, 0 to 127 and 1 to 8100").arg(text));
    return {static_cast<std::uint8_t>(prefix), static_cast<std::uint16_t>(ident)};
}

map27::CheckSettings SettingsOf(const Request& request)
{
    map27::CheckSettings settings;
    settings.bitsPerSecond = static_cast<unsigned>(NumberOf(request, "speed", 50, 1'000'000));
    settings.watch = std::chrono::seconds(NumberOf(request, "watch", 0, LongestWatch));
    settings.status = static_cast<std::uint8_t>(NumberOf(request, "status", 0, map27::HighestStatus));
    if (request.options.isSet("transmit-to"))
        settings.transmitTo = AddressOf(request.options.value("transmit-to"));
    else if (request.options.isSet("status"))
        throw UsageError(QStringLiteral("--status is for --transmit-to only"));
    return settings;
}

// The check on a real port, with the system's clock.
class PortCheck {
public:
    PortCheck(const QString& port, const map27::CheckSettings& settings, const QString& traceFile)
        : m_check(settings),
          m_port(MakeRadioPort(port, static_cast<int>(settings.bitsPerSecond)))
    {
        if (!traceFile.isEmpty())
            OpenTrace(traceFile);
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(
            &m_timer, &QTimer::timeout, m_port.get(), [this] { Take(m_check.OnTime(Now())); });
        QObject::connect(m_port.get(), &RadioPort::Opened, m_port.get(),
                         [this] { Take(m_check.Start(Now())); });
        QObject::connect(m_port.get(), &RadioPort::Received, m_port.get(), [this](const QByteArray& octets) {
            const auto* first = reinterpret_cast<const std::uint8_t*>(octets.constData());
            Take(m_check.Feed({first, static_cast<std::size_t>(octets.size())}, Now()));
        });
        QObject::connect(m_port.get(), &RadioPort::Failed, m_port.get(), [this](const PortProblem& problem) {
            m_problem = problem;
            m_loop.quit();
        });
    }

    // Raises Error when the port cannot be opened, or is gone.
    const map27::CheckReport& Run(const IStringSource& strings)
    {
        QTimer::singleShot(0, m_port.get(), [this] { m_port->Open(); });
        m_loop.exec();
        m_port->Close();
        if (m_problem)
            throw Error(ErrorCode::General, PortProblemText(*m_problem, strings));
        return m_check.Report();
    }

private:
    map27::TimePoint Now() const { return map27::TimePoint{m_clock.Ticks()}; }

    void OpenTrace(const QString& name)
    {
        m_trace.setFileName(name);
        if (!m_trace.open(QIODevice::WriteOnly | QIODevice::NewOnly, dao::OwnerOnly))
            throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(name, m_trace.errorString()));
    }

    void Take(const map27::CheckOutput& output)
    {
        for (const map27::Octets& frame : output.frames)
            m_port->Write(QByteArray(reinterpret_cast<const char*>(frame.data()),
                                     static_cast<qsizetype>(frame.size())));
        for (const map27::TraceEntry& entry : output.traced)
            WriteTrace(entry);
        ShowArrivals();
        if (m_check.IsOver())
            return m_loop.quit();
        if (const map27::Deadline next = m_check.NextDeadline())
            m_timer.start(std::max(*next - Now(), map27::Milliseconds{0}));
        else
            m_timer.stop();
    }

    // At once: whoever is at the radio must not wait for the report.
    void ShowArrivals()
    {
        const auto& received = m_check.Report().received;
        for (; m_shown < received.size(); ++m_shown)
            Console::PrintError(
                QStringLiteral("veltorkynctl: %1").arg(QString::fromStdString(received[m_shown].text)));
    }

    void WriteTrace(const map27::TraceEntry& entry)
    {
        if (!m_trace.isOpen())
            return;
        const QByteArray line = QByteArray::fromStdString(map27::WriteTraceEntry(entry)) + '\n';
        if (m_trace.write(line) == line.size() && m_trace.flush())
            return;
        Console::PrintError(
            QStringLiteral("veltorkynctl: the trace ends here: %1").arg(m_trace.errorString()));
        m_trace.close();
    }

    SystemClock m_clock;
    map27::RadioCheck m_check;
    std::size_t m_shown = 0; // of what came in
    QFile m_trace;
    QEventLoop m_loop;
    QTimer m_timer;
    std::optional<PortProblem> m_problem;
    std::unique_ptr<RadioPort> m_port; // its signals lead to the others
};

int Run(const Request& request)
{
    const map27::CheckSettings settings = SettingsOf(request);
    const QString port = request.arguments[0];
    if (port.isEmpty())
        throw UsageError(QStringLiteral("PORT is empty"));
    PortCheck check(port, settings, request.options.value("trace"));
    const map27::CheckReport& report = check.Run(request.strings);

    const map27::CheckFrame frame{.program = "veltorkynctl " VELTORKYN_VERSION,
                                  .time = QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toStdString(),
                                  .port = port.toStdString(),
                                  .bitsPerSecond = settings.bitsPerSecond};
    const bool json = request.options.isSet("json");
    const std::string text = json ? CheckReportJson(report, frame) : CheckReportText(report, frame);
    Console::Print(QString::fromStdString(text).trimmed());
    if (!report.linkCameUp)
        throw Error(ErrorCode::General, QStringLiteral("%1: no link to a radio").arg(port));
    if (report.HasEmergency())
        throw Error(
            ErrorCode::General,
            QStringLiteral("%1: an emergency call came in and ended the check; start the console at once")
                .arg(port));
    if (!report.received.empty())
        throw Error(ErrorCode::General,
                    QStringLiteral("%1: messages or calls came in, which are shown here only").arg(port));
    if (report.Deviations() > 0)
        throw Error(
            ErrorCode::General,
            QStringLiteral("The radio deviates from the standard in %1 points").arg(report.Deviations()));
    return exitOk;
}

constexpr auto Help =
    R"(Walks through the radio at PORT and reports how it keeps to the standard (MAP27 version 1.5): how
the link is set up and with what parameters, what the radio says of itself, its numbering, its
settings, its condition and its network, whether it drops what is damaged and takes nothing twice,
what it refuses, how it keeps the link alive, and how fast it answers. Every frame is looked at
like by "trace explain". The report is what a report of a problem with a radio should have with it.

Nothing is sent over the air, and no setting of the radio is changed, unless --transmit-to names a
radio: it gets a status, a short text, and some messages that have to be refused. Take one whose
user knows.

What comes in while the check has the radio, a status, a text or a call, is shown at once on
standard error and in the report, and nowhere else: no console will show it. An emergency call ends
the check; start the console then. A call is not answered.

PORT is a serial port (ttyUSB0, /dev/ttyS0, COM1) or tcp://HOST:PORT. The console must not have it
open. The check takes about 20 seconds, on a line that is late by seconds some minutes.

A line of the report is a verdict, a word that stays the same from version to version, and what
was seen: ok; note: allowed, but worth knowing; deviates: from the standard; no answer; left out.

Exit codes: 0 when nothing deviates; 1 when something does or something came in (both after the
report), or when there is no link or no port; 2 wrong arguments.)";

} // namespace

Command RadioCheckCommand()
{
    return {
        .words = "radio check",
        .synopsis = "[--json] [--speed BAUD] [--transmit-to PREFIX/IDENT [--status N]] [--watch S]\n"
                    "       [--trace FILE] PORT",
        .summary = "walk through a connected radio and report what it does",
        .help = Help,
        .options = {QCommandLineOption("json", "the report as JSON"),
                    QCommandLineOption("speed", "bits per second (default: 9600)", "BAUD",
                                       QString::number(UsualSpeed)),
                    QCommandLineOption("transmit-to", "send messages to this radio", "PREFIX/IDENT"),
                    QCommandLineOption("status", "the status that it gets (default: 1)", "N", "1"),
                    QCommandLineOption("watch", "seconds at rest (default: 16; 0: none)", "S", "16"),
                    QCommandLineOption("trace", "write a trace to this file, which must not exist", "FILE")},
        .fewestArguments = 1,
        .mostArguments = 1,
        .run = Run};
}
