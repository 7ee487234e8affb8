// The address directory of 100,000 entries and the reload of the message log, against the same rows read with
// the bare C interface of the engine. Prints ratios; ends with 1 when a goal is missed.

#include "Measure.h"

#include "admin/AdminServices.h"
#include "admin/DirectoryModel.h"
#include "core/DbSession.h"
#include "core/StringSource.h"
#include "dao/Workspace.h"
#include "dao/sqlite/Connection.h"
#include "mainwindow/LogReader.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <sqlite3.h>
#include <string>

namespace {

constexpr int Entries = 100000;
constexpr int Events = 500000;
constexpr int Shown = 500;

struct Session : IDbSession {
    explicit Session(const dao::Location& location)
        : workspace(dao::OpenWorkspace(location, "admin", "secret"))
    {
    }
    dao::Workspace& Workspace() override { return *workspace; }
    dao::Database& Database() override { return workspace->Database(); }
    QString MakePID(const QString&, const QString&) override { return {}; }
    QString WorkgroupFile() const override { return {}; }
    void SetWorkgroupFile(const QString&) override {}
    QString DatabaseFile() const override { return {}; }
    void SetDatabaseFile(const QString&) override {}
    void SetAppName(const QString&) override {}
    void SetSettingsSection(const QString&) override {}
    void Logon(bool, bool) override {}
    void Logoff() override {}
    bool IsOpen() const override { return true; }
    QString SelectWorkgroupFile() override { return {}; }
    QString SelectDatabaseFile() override { return {}; }
    bool IsMemberOf(const QString&) override { return true; }

    std::unique_ptr<dao::Workspace> workspace;
};

void Fill(dao::Workspace& workspace)
{
    workspace.BeginTrans();
    auto rows = workspace.Database().OpenTable("address", true);
    for (int i = 0; i < Entries; ++i) {
        const int number = static_cast<int>((static_cast<qint64>(i) * 7919) % Entries);
        rows->AddNew();
        rows->SetField("callsign", QStringLiteral("Unit %1").arg(number));
        rows->SetField("IDENT", QStringLiteral("2%1").arg(number, 8, 10, QLatin1Char('0')));
        rows->SetField("Type", number % 10 == 0 ? 2 : 1);
        rows->SetField("dynamic", number % 3 == 0);
        rows->Update();
    }
    rows = workspace.Database().OpenTable("event", true);
    const QDateTime start = QDateTime::currentDateTimeUtc().addDays(-3650);
    for (int i = 0; i < Events; ++i) {
        rows->AddNew();
        // The last ones within the hour, the others long ago.
        rows->SetField("time_stamp", i < Events - Shown
                                         ? start.addSecs(i)
                                         : QDateTime::currentDateTimeUtc().addSecs(i - Events));
        rows->SetField("event_type", 1 + i % 3);
        rows->SetField("desc", QStringLiteral("%1 - Arrived at the scene, number %2").arg(i % 32).arg(i));
        rows->SetField("from_address", QStringLiteral("Unit %1").arg(i % 50));
        rows->SetField("to_address", "Dispatch");
        rows->Update();
    }
    workspace.CommitTrans();
}

// Every row and every column of a statement, touched once.
std::size_t ReadBare(sqlite3_stmt* statement)
{
    std::size_t bytes = 0;
    const int columns = sqlite3_column_count(statement);
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int i = 0; i < columns; ++i) {
            if (sqlite3_column_type(statement, i) == SQLITE_INTEGER) {
                bytes += static_cast<std::size_t>(sqlite3_column_int64(statement, i)) & 1;
            } else {
                const std::string text(reinterpret_cast<const char*>(sqlite3_column_text(statement, i)),
                                       static_cast<std::size_t>(sqlite3_column_bytes(statement, i)));
                bytes += text.size();
            }
        }
    }
    sqlite3_reset(statement);
    return bytes;
}

class Bare {
public:
    explicit Bare(const QString& path)
        : m_connection(dao::sqlite::Connection::Open(path, dao::sqlite::Connection::Mode::ReadOnly, {}))
    {
    }
    // A stored query with its parameters bound, texts and numbers.
    sqlite3_stmt* Prepare(const char* query, const QVariantMap& parameters)
    {
        const QByteArray sql =
            m_connection->Value("SELECT sql FROM stored_query WHERE name=?", {QString(query)}).toByteArray();
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(m_connection->Handle(), sql.constData(), -1, &statement, nullptr);
        for (auto parameter = parameters.begin(); parameter != parameters.end(); ++parameter) {
            const int index = sqlite3_bind_parameter_index(statement, (':' + parameter.key()).toUtf8());
            const QByteArray text = parameter->toByteArray();
            if (parameter->typeId() == QMetaType::Int)
                sqlite3_bind_int(statement, index, parameter->toInt());
            else
                sqlite3_bind_text(statement, index, text.constData(), -1, SQLITE_TRANSIENT);
        }
        return statement;
    }

private:
    std::shared_ptr<dao::sqlite::Connection> m_connection;
};

qint64 ResidentKilobytes()
{
    QFile file("/proc/self/statm");
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() * 4 : 0;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const dao::Location location = dao::LocationOf(folder.filePath("benchmark.kyndb"));
    dao::CreateDatabase(location, "admin", "secret", dao::PasswordCost::Lowest());
    Session session(location);
    Fill(*session.workspace);
    Bare bare(location.database);
    CStringSourceImpl source{QStringList{}};
    DirectoryModel model(source, nullptr);
    bool reached = true;
    const auto report = [&](const char* what, const Times& times, double goal) {
        Report(what, times, goal);
        reached = reached && times.Ratio() <= goal;
    };

    const qint64 before = ResidentKilobytes();
    const auto list = [&](DirectoryOrder order, const QString& lookFor) {
        DirectoryList directory;
        ReadDirectory(session, order, lookFor, directory);
        model.Replace(std::move(directory));
    };
    list(DirectoryOrder::Callsign, {});
    const qint64 memory = (ResidentKilobytes() - before) / 1024;
    std::printf("%-44s %8lld MB  goal 60\n", "directory of 100,000: memory", static_cast<long long>(memory));
    reached = reached && memory <= 60;

    struct Case {
        const char* name;
        const char* query;
        DirectoryOrder order;
        const char* lookFor;
    };
    for (const Case& c :
         {Case{"directory by callsign", "find_address_ob_callsign", DirectoryOrder::Callsign, ""},
          Case{"directory by address", "find_address_ob_ident", DirectoryOrder::Ident, ""},
          Case{"directory searched", "find_address_ob_callsign", DirectoryOrder::Callsign, "unit 99"}}) {
        sqlite3_stmt* statement = bare.Prepare(c.query, {{"lookfor", c.lookFor}});
        report(c.name, Compare([&] { ReadBare(statement); }, [&] { list(c.order, c.lookFor); }), 2.0);
        sqlite3_finalize(statement);
    }

    sqlite3_stmt* statement = bare.Prepare(
        "get_events", {{"MyAdr", "1"}, {"MyCallsign", "Dispatch"}, {"TimeUnit", "h"}, {"TimeVal", 1}});
    std::size_t length = 0;
    const auto reload = [&] {
        ReadEvents(session.Database(), {"Dispatch", "1"}, {"h", 1}, Shown,
                   [&](const StoredEvent& event) { length += static_cast<std::size_t>(event.desc.size()); });
    };
    report("log reload, 500 lines of 500,000", Compare([&] { ReadBare(statement); }, reload, 201), 1.5);
    sqlite3_finalize(statement);
    return reached ? 0 : 1;
}
