// A storm of messages over a pseudo terminal paced like a 9600 bit/s line, with the real radio control and
// the real veltorkyn-radio: what arrived, whether in order, and how long the operator's own statuses had to
// wait among it.
//
//     bench_storm [MINUTES]                  10 unless given
//     bench_storm --radios COUNT SECONDS     on a line without a speed, so many radios that send a status
//     every
//                                            five seconds: what of a processor veltorkyn-radio takes

#include "Report.h"
#include "core/base/Clock.h"
#include "core/texts/StringSourceImpl.h"
#include "map27/codec/Messages.h"
#include "map27/codec/ShortData.h"
#include "map27/link/Framing.h"
#include "radio/line/SerialMap27Control.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

namespace {

constexpr int StatusInterval = 10000; // ms between the operator's own statuses
constexpr int OwnStatus = 4;
constexpr int Unit20 = 2; // ident

QString Line(int prefix, int ident, const QString& content)
{
    return QStringLiteral("%1/%2 %3").arg(prefix).arg(ident).arg(content);
}

// What the radio put on the line for the operator, in order, repetitions left out.
QStringList Transmitted(const QString& traceFile)
{
    QStringList lines;
    QFile file(traceFile);
    if (!file.open(QIODevice::ReadOnly))
        return lines;
    int lastNumber = -1;
    while (!file.atEnd()) {
        const QJsonObject entry = QJsonDocument::fromJson(file.readLine()).object();
        if (entry.value(QStringLiteral("dir")).toString() != QLatin1String("R>D"))
            continue;
        const QByteArray octets =
            QByteArray::fromHex(entry.value(QStringLiteral("frame")).toString().toLatin1());
        map27::FrameDecoder decoder;
        const auto bodies = decoder.Feed({reinterpret_cast<const std::uint8_t*>(octets.constData()),
                                          static_cast<std::size_t>(octets.size())});
        if (bodies.empty() || bodies.front().size() < 5 || bodies.front()[0] != 4 ||
            bodies.front()[1] == lastNumber)
            continue;
        lastNumber = bodies.front()[1];
        const auto message = map27::DecodeFromRadio({bodies.front().data() + 4, bodies.front().size() - 4});
        const auto* known = std::get_if<map27::FromRadio>(&message);
        if (known == nullptr)
            continue;
        if (const auto* status = std::get_if<map27::StatusMessage>(known))
            lines.append(Line(status->party.address.prefix, status->party.address.ident,
                              QString::number(status->status)));
        else if (const auto* text = std::get_if<map27::ShortDataMessage>(known))
            lines.append(Line(text->party.address.prefix, text->party.address.ident,
                              QString::fromStdString(map27::DecodeText(text->data))));
    }
    return lines;
}

class Operator : public QObject {
public:
    explicit Operator(SerialMap27Control& radio) : m_radio(radio)
    {
        connect(
            &radio, &Map27Control::StatusReceived, this,
            [this](int prefix, int ident, int status) {
                received.append(Line(prefix, ident, QString::number(status)));
            });
        connect(&radio, &Map27Control::TextReceived, this,
                [this](const QString& text, int prefix, int ident) {
                    received.append(Line(prefix, ident, text));
                });
        connect(&radio, &Map27Control::MessageProgress, this, [this](int code) {
            if (code == 208)
                return;
            if (code == 192)
                waits.push_back(static_cast<double>(m_since.elapsed()));
            else
                ++failed;
            m_open = false;
        });
        connect(&radio, &Map27Control::TransactionCleared, this, [this] {
            cleared += m_open ? 1 : 0;
            m_open = false;
        });
        connect(&radio, &Map27Control::IncomingCall, this, [this] {
            ++calls;
            m_radio.ClearCall();
        });
        connect(&m_timer, &QTimer::timeout, this, &Operator::Send);
        m_timer.start(StatusInterval);
    }

    QStringList received;
    std::vector<double> waits; // ms
    int sent = 0;
    int failed = 0;
    int cleared = 0; // by an incoming call that took over
    int refused = 0;
    int calls = 0;

private:
    void Send()
    {
        if (m_open)
            return;
        try {
            m_radio.SendStatusMessage(0, Unit20, OwnStatus);
            m_open = true;
            ++sent;
            m_since.start();
        } catch (const std::exception&) {
            ++refused;
        }
    }

    SerialMap27Control& m_radio;
    QTimer m_timer;
    QElapsedTimer m_since;
    bool m_open = false;
};

void Report(const QStringList& transmitted, Operator& person)
{
    const bool inOrder = transmitted == person.received;
    std::printf("from the radio: %lld messages on the line, %lld received, %s; %d calls\n",
                static_cast<long long>(transmitted.size()), static_cast<long long>(person.received.size()),
                inOrder ? "all of them in order" : "NOT THE SAME", person.calls);
    std::sort(person.waits.begin(), person.waits.end());
    std::printf("own statuses: %d sent, %zu delivered, %d failed, %d ended by an incoming call, %d refused\n",
                person.sent, person.waits.size(), person.failed, person.cleared, person.refused);
    if (!person.waits.empty())
        std::printf("until delivered: median %.0f ms, 95 %% %.0f ms, longest %.0f ms\n",
                    person.waits[person.waits.size() / 2], person.waits[person.waits.size() * 95 / 100],
                    person.waits.back());
}

// A fleet that does nothing but send statuses, spread evenly over five seconds.
void WriteFleet(const QString& name, int radios)
{
    constexpr double interval = 5; // s
    constexpr int firstIdent = 1000;
    QJsonArray fleet;
    QJsonArray events;
    for (int i = 0; i < radios; ++i) {
        const QString radio = QStringLiteral("Busy%1").arg(i);
        fleet.append(QJsonObject{{"name", radio},
                                 {"prefix", 0},
                                 {"ident", firstIdent + i},
                                 {"kind", "unit"},
                                 {"behaviour", "answers"}});
        events.append(QJsonObject{{"at", 2 + interval * i / radios},
                                  {"every", interval},
                                  {"do", QStringLiteral("status %1 %2").arg(radio).arg(i % 32)}});
    }
    QFile file(name);
    if (file.open(QIODevice::WriteOnly))
        file.write(
            QJsonDocument(QJsonObject{{"base", "busy-day"}, {"fleet", fleet}, {"events", events}}).toJson());
}

// Of the children that have ended.
double ProcessorSeconds()
{
    rusage used{};
    getrusage(RUSAGE_CHILDREN, &used);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const int radios = argc > 3 ? std::atoi(argv[2]) : 0;
    const double minutes = radios > 0 ? std::atof(argv[3]) / 60 : argc > 1 ? std::atof(argv[1]) : 10;
    QTemporaryDir folder;
    QString scenario = QStringLiteral("storm");
    if (radios > 0) {
        scenario = folder.filePath(QStringLiteral("busy.json"));
        WriteFleet(scenario, radios);
    }
    const QString link = folder.filePath(QStringLiteral("radio"));
    const QString trace = folder.filePath(QStringLiteral("wire.jsonl"));
    QProcess simulated;
    simulated.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    simulated.start(QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/veltorkyn-radio"),
                    {QStringLiteral("--pty"), link, QStringLiteral("--scenario"), scenario,
                     QStringLiteral("--trace"), trace, QStringLiteral("--speed"),
                     radios > 0 ? QStringLiteral("0") : QStringLiteral("9600")});
    if (!simulated.waitForReadyRead())
        return 1;

    CStringSourceImpl source{QStringList{}};
    SystemClock clock;
    SerialMap27Control radio(source.CreateStringSource(QStringLiteral("CKYN")), clock,
                             SerialMap27Control::Place::OwnThread);
    radio.SetCommPort(link);
    Operator person(radio);
    radio.OpenLink();
    QTimer::singleShot(static_cast<int>(minutes * 60000), &application, &QCoreApplication::quit);
    QCoreApplication::exec();
    // What is under way still arrives.
    QTimer::singleShot(2000, &application, &QCoreApplication::quit);
    QCoreApplication::exec();
    simulated.terminate();
    simulated.waitForFinished();
    const QStringList transmitted = Transmitted(trace);
    if (radios == 0) {
        Report(transmitted, person);
        return 0;
    }
    const double seconds = minutes * 60;
    if (transmitted == person.received && person.received.size() >= radios * (seconds - 8) / 5)
        PrintRow("veltorkyn-radio of one core", 100 * ProcessorSeconds() / seconds, "%", {}, radios);
    else
        std::printf("%lld on the line, %lld received\n", static_cast<long long>(transmitted.size()),
                    static_cast<long long>(person.received.size()));
    return 0;
}
