// Stores log records as a console does, for the tests of faults.
//   faults_records kill KILLS SEED CONDITION...  kills a console at random moments, under each of these
//   conditions or all, and looks
//                                                whether all records that were safe are there, each once,
//                                                after the next logon
//   faults_records store FOLDER COUNT            makes a database there and stores so many, with FOLDER/spool
//   for those that wait;
//                                                says "b" when it begins, and "t" and "s" with its id when
//                                                one is taken and when it is safe

#include "core/eventlog/EventLog.h"
#include "core/texts/StringSourceImpl.h"
#include "support/TestDatabase.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <poll.h>
#include <set>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <vector>

namespace {

using std::chrono::milliseconds;

// What waiting/Shim.cpp is told: the first numbers of its structure.
struct Switches {
    qint32 failWith, everywhere, flushDelay;
};
Switches* switches = nullptr;

// Keeps the database's file from everybody else.
class FileHold {
public:
    explicit FileHold(const TestDatabase& database)
    {
        sqlite3_open(database.location.database.toUtf8(), &m_file);
        sqlite3_busy_timeout(m_file, 5000);
        sqlite3_exec(m_file, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
    }
    FileHold(const FileHold&) = delete;
    FileHold& operator=(const FileHold&) = delete;
    ~FileHold() { sqlite3_close(m_file); }

private:
    sqlite3* m_file = nullptr;
};

struct Condition {
    const char* name;
    bool onServer;
    std::function<void(const TestDatabase&)> begin;
    std::function<void(const TestDatabase&)> end;
};

std::vector<Condition> Conditions()
{
    const auto nothing = [](const TestDatabase&) {};
    const auto fail = [](int reason, bool everywhere) {
        return [=](const TestDatabase&) {
            switches->everywhere = everywhere;
            switches->failWith = reason;
        };
    };
    static std::unique_ptr<FileHold> hold;
    const auto aside = [](const TestDatabase& database) { return database.location.database + ".aside"; };
    return {
        {"files, quiet", false, nothing, nothing},
        {"files, each flush 200 ms", false, [](const TestDatabase&) { switches->flushDelay = 200; },
         [](const TestDatabase&) { switches->flushDelay = 0; }},
        {"file locked", false,
         [](const TestDatabase& database) { hold = std::make_unique<FileHold>(database); },
         [](const TestDatabase&) { hold.reset(); }},
        {"disk full", false, fail(ENOSPC, false), fail(0, false)},
        {"disk full, for the spool, too", false, fail(ENOSPC, true), fail(0, false)},
        {"file read-only", false, fail(EROFS, false), fail(0, false)},
        {"file taken away, put back", false,
         [aside](const TestDatabase& database) {
             hold = std::make_unique<FileHold>(database); // nobody is writing to it
             QFile::rename(database.location.database, aside(database));
             hold.reset();
         },
         [aside](const TestDatabase& database) {
             QFile::remove(database.location.database);
             QFile::rename(aside(database), database.location.database);
         }},
        {"server, quiet", true, nothing, nothing},
        {"server silent", true, [](const TestDatabase&) { TestServer::Get().Hold(true); },
         [](const TestDatabase&) { TestServer::Get().Hold(false); }},
        {"server killed", true, [](const TestDatabase&) { TestServer::Get().StopAtOnce(); },
         [](const TestDatabase&) { TestServer::Get().Start(); }},
    };
}

// A console as a process of its own. What it says goes to a pipe, a line each.
class Console {
public:
    using Work = std::function<void(EventLog& log, int output)>;

    // The work ends when it returns or the process is killed.
    Console(const TestDatabase& database, const QString& spoolFolder, const Work& work)
    {
        int ends[2];
        if (pipe(ends) != 0)
            throw std::runtime_error("no pipe");
        m_process = fork();
        m_output = ends[m_process == 0 ? 1 : 0];
        close(ends[m_process == 0 ? 0 : 1]);
        if (m_process != 0)
            return;
        try {
            Run(database, spoolFolder, work);
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "console: %s\n", failure.what());
            _exit(1);
        }
        _exit(0);
    }
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console() { close(m_output); }

    // Reads its lines for so long, or until it ends.
    void Read(milliseconds time, QByteArray& lines)
    {
        QElapsedTimer elapsed;
        elapsed.start();
        for (;;) {
            const auto left = time.count() - elapsed.elapsed();
            pollfd waiting{m_output, POLLIN, 0};
            if (left <= 0 || poll(&waiting, 1, static_cast<int>(left)) <= 0)
                return;
            char text[65536];
            const ssize_t size = read(m_output, text, sizeof text);
            if (size <= 0)
                return;
            lines.append(text, size);
        }
    }
    bool End(int signal)
    {
        if (signal != 0)
            kill(m_process, signal);
        int status = 0;
        waitpid(m_process, &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

private:
    void Run(const TestDatabase& database, const QString& spoolFolder, const Work& work) const
    {
        int count = 0;
        QCoreApplication application(count, nullptr);
        const CStringSourceImpl strings{QStringList{}};
        TestSession session(database);
        EventLog log(session, strings, spoolFolder, Lane::Kind::OwnThread);
        work(log, m_output);
    }

    pid_t m_process = 0;
    int m_output = -1;
};

void Say(int output, char what, const QString& id)
{
    const QByteArray line = what + id.toLatin1() + '\n';
    if (write(output, line, static_cast<std::size_t>(line.size())) != line.size())
        _exit(2);
}

// So many records; of each it says when it is taken and when its line loses the mark.
void Store(EventLog& log, int output, int count)
{
    QObject::connect(&log, &EventLog::Safe, [=](const QStringList& ids) {
        for (const QString& id : ids)
            Say(output, 's', id);
    });
    for (int number = 0; number < count; ++number) {
        Say(output, 't',
            log.AppendLogRecord(QDateTime::currentDateTimeUtc(), EventType::Text, "a text", "Car 1", "200"));
        for (int i = 0; i < 5; ++i) {
            QCoreApplication::processEvents();
            usleep(1000);
        }
    }
}

// The next logon, which stores what waits.
void Recover(EventLog& log, int output)
{
    const auto none = [](const QString& text) { std::fprintf(stderr, "    %s\n", qPrintable(text)); };
    QObject::connect(&log, &EventLog::Delayed, none);
    log.AppendLogRecord(QDateTime::currentDateTimeUtc(), EventType::Text, "the next", "Car 1", "200");
    QElapsedTimer time;
    time.start();
    while ((log.Waiting() > 0 || !log.WaitingRecords().isEmpty()) && time.elapsed() < 30000) {
        QCoreApplication::processEvents();
        usleep(1000);
    }
    Say(output, log.WaitingRecords().isEmpty() ? 'e' : 'w', {});
}

struct Outcome {
    int kills = 0, taken = 0, safe = 0, lost = 0, twice = 0, stuck = 0, outOfOrder = 0;
};

void Kill(const Condition& condition, milliseconds after, Outcome& outcome)
{
    const TestDatabase database;
    const QTemporaryDir spool(QDir::tempPath() + "/spool");
    QByteArray lines;
    {
        Console console(database, spool.path(), [](EventLog& log, int output) {
            Store(log, output, std::numeric_limits<int>::max());
        });
        while (!lines.contains("\ns"))
            console.Read(milliseconds(20), lines);
        condition.begin(database);
        console.Read(after, lines);
        console.End(SIGKILL);
        console.Read(milliseconds(100), lines);
    }
    condition.end(database);
    QByteArray said;
    Console next(database, spool.path(), Recover);
    next.Read(milliseconds(40000), said);
    outcome.stuck += next.End(0) && said == "e\n" ? 0 : 1;

    std::map<QByteArray, int> order; // in which they were taken
    std::set<QByteArray> safe;
    for (const QByteArray& line : lines.left(lines.lastIndexOf('\n')).split('\n'))
        if (line.startsWith('s'))
            safe.insert(line.mid(1));
        else
            order.emplace(line.mid(1), static_cast<int>(order.size()));
    std::set<QByteArray> stored;
    int last = -1;
    const auto workspace = database.Open();
    const auto rows = workspace->Database().OpenSnapshot("select record_id from event order by event_id");
    for (; !rows->Eof(); rows->MoveNext()) {
        const QByteArray id = rows->Field("record_id").toString().toLatin1();
        outcome.twice += !stored.insert(id).second;
        if (!order.contains(id))
            continue; // the next logon's, or taken in the last moment
        outcome.outOfOrder += order[id] < last;
        last = order[id];
    }
    outcome.taken += static_cast<int>(order.size());
    outcome.safe += static_cast<int>(safe.size());
    outcome.lost += static_cast<int>(
        std::count_if(safe.begin(), safe.end(), [&](const QByteArray& id) { return !stored.contains(id); }));
    ++outcome.kills;
}

// Without a process of its own: the shim records what this one does.
int StoreSome(const QString& folder, int count)
{
    constexpr int Limit = 20000; // ms
    int none = 0;
    QCoreApplication application(none, nullptr);
    // Never released: that would drop a database on a server, which this is not.
    const auto& database = *new TestDatabase(folder + "/site.kyndb");
    const CStringSourceImpl strings{QStringList{}};
    TestSession session(database);
    EventLog log(session, strings, folder + "/spool", Lane::Kind::OwnThread);
    Say(STDOUT_FILENO, 'b', {});
    Store(log, STDOUT_FILENO, count);
    QElapsedTimer time;
    time.start();
    while ((log.Waiting() > 0 || !log.WaitingRecords().isEmpty()) && time.elapsed() < Limit) {
        QCoreApplication::processEvents();
        usleep(1000);
    }
    return log.WaitingRecords().isEmpty() ? 0 : 1;
}

// Starts the program again behind the shim, with folders that it can tell the database by.
void StartBehindShim(char** arguments)
{
    static QTemporaryDir folder;
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                             QFile::ExeOther); // the server is another user's
    QFile control(folder.filePath("control"));
    if (!control.open(QIODevice::WriteOnly) || control.write(QByteArray(4096, 0)) != 4096)
        throw std::runtime_error("no switches");
    control.close();
    const QString programs = QFileInfo(QString::fromLocal8Bit(arguments[0])).absolutePath();
    qputenv("TMPDIR", folder.path().toLocal8Bit());
    qputenv("WAITING_CONTROL", control.fileName().toLocal8Bit());
    qputenv("WAITING_DATABASE", (folder.path() + "/qt_temp-").toLocal8Bit());
    qputenv("LD_PRELOAD", (programs + "/waiting_shim.so").toLocal8Bit());
    const pid_t process = fork();
    if (process == 0) {
        execv(arguments[0], arguments);
        _exit(127);
    }
    int status = 0;
    waitpid(process, &status, 0);
    folder.remove();
    _exit(WIFEXITED(status) ? WEXITSTATUS(status) : 1);
}

} // namespace

int main(int argc, char** argv)
{
    const QString mode = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (mode == "store" && argc == 4)
        return StoreSome(QString::fromLocal8Bit(argv[2]), std::atoi(argv[3]));
    if (mode != "kill" || argc < 4) {
        std::fprintf(stderr, "usage: faults_records kill KILLS SEED CONDITION... | store FOLDER COUNT\n");
        return 2;
    }
    if (!qEnvironmentVariableIsSet("WAITING_CONTROL"))
        StartBehindShim(argv);
    QFile control(qEnvironmentVariable("WAITING_CONTROL"));
    if (!control.open(QIODevice::ReadWrite))
        return 1;
    switches = reinterpret_cast<Switches*>(control.map(0, sizeof(Switches)));
    const int kills = std::atoi(argv[2]);
    QRandomGenerator random(static_cast<quint32>(std::atoi(argv[3])));
    std::vector<Condition> conditions = Conditions();
    if (argc > 4)
        std::erase_if(conditions, [&](const Condition& one) {
            return std::find_if(argv + 4, argv + argc, [&](const char* name) {
                       return std::strcmp(name, one.name) == 0;
                   }) == argv + argc;
        });
    bool sound = true;
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        const Condition& condition = conditions[i];
        condition.onServer ? qputenv("VELTORKYN_TEST_ENGINE", "postgresql")
                           : qunsetenv("VELTORKYN_TEST_ENGINE");
        Outcome outcome;
        const int count = static_cast<int>(conditions.size());
        for (int kill = static_cast<int>(i); kill < kills; kill += count)
            Kill(condition, milliseconds(random.bounded(2500)), outcome);
        std::printf("%-32s %3d kills, %6d records taken, %6d safe when it was killed, %d of them lost, %d "
                    "twice, %d out of order, %d times not all stored\n",
                    condition.name, outcome.kills, outcome.taken, outcome.safe, outcome.lost, outcome.twice,
                    outcome.outOfOrder, outcome.stuck);
        std::fflush(stdout);
        sound =
            sound && outcome.lost == 0 && outcome.twice == 0 && outcome.outOfOrder == 0 && outcome.stuck == 0;
    }
    return sound ? 0 : 1;
}
