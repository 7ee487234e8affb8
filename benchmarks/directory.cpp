// The address directory with 100,000 entries: read and sorted beside the bare SQLite C interface, its memory,
// and how long the operator waits for the window. Goals: 2 times the bare time, 60 MB, no pause that is
// noticed (100 ms).

#include "Measure.h"

#include "admin/DirectoryModel.h"
#include "core/texts/StringSourceImpl.h"
#include "support/TestDatabase.h"

#include <QApplication>
#include <QFile>
#include <QTreeView>
#include <sqlite3.h>

namespace {

constexpr int Entries = 100000;

void Fill(TestSession& session)
{
    session.Workspace().BeginTrans();
    const auto rows = session.Database().OpenTable("address", true);
    for (int i = 0; i < Entries; ++i) {
        const int number = static_cast<int>((static_cast<qint64>(i) * 7919) % Entries);
        rows->AddNew();
        rows->SetField("callsign", QStringLiteral("unit %1").arg(number));
        rows->SetField("IDENT", QStringLiteral("2%1").arg(number, 8, 10, QLatin1Char('0')));
        rows->SetField("Type", number % 10 == 0 ? 2 : 1);
        rows->SetField("dynamic", number % 3 == 0);
        rows->Update();
    }
    session.Workspace().CommitTrans();
}

// Every row and every column of a statement, copied once.
std::size_t ReadBare(sqlite3_stmt* statement)
{
    std::size_t bytes = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        bytes +=
            static_cast<std::size_t>(sqlite3_column_int64(statement, 0) + sqlite3_column_int64(statement, 3));
        for (const int column : {1, 2, 4}) {
            const std::string text(reinterpret_cast<const char*>(sqlite3_column_text(statement, column)),
                                   static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
            bytes += text.size();
        }
    }
    sqlite3_reset(statement);
    return bytes;
}

qint64 ResidentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() * 4 / 1024 : 0;
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const TestDatabase database;
    TestSession session(database);
    Fill(session);
    const CStringSourceImpl strings{QStringList{}};
    DirectoryModel model(strings, nullptr);
    QTreeView view;
    view.setUniformRowHeights(true);
    view.setModel(&model);
    view.resize(500, 400);
    view.show();

    sqlite3* bare = nullptr;
    sqlite3_open(database.location.database.toUtf8().constData(), &bare);
    const auto same = [](sqlite3_context* context, int, sqlite3_value** values) {
        sqlite3_result_value(context, values[0]); // the callsigns here are in lower case
    };
    for (const char* name : {"kyn_fold", "kyn_user"})
        sqlite3_create_function_v2(bare, name, -1, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS,
                                   nullptr, same, nullptr, nullptr, nullptr);

    const qint64 before = ResidentMegabytes();
    const auto list = [&](DirectoryOrder order, const QString& lookFor) {
        DirectoryList directory;
        ReadDirectory(session, order, lookFor, directory);
        model.Replace(std::move(directory));
    };
    list(DirectoryOrder::Callsign, {});
    const qint64 memory = ResidentMegabytes() - before;
    std::printf("%-28s %9lld MB (goal 60)\n", "memory of the list", static_cast<long long>(memory));
    bool reached = memory <= 60;

    const std::string select = "SELECT address_id, callsign, \"IDENT\", dynamic, CASE \"Type\" WHEN 2 THEN "
                               "'talkgroup' ELSE 'individual' END FROM address ORDER BY ";
    for (const auto& [what, order, key] :
         {std::tuple("by callsign", DirectoryOrder::Callsign, "kyn_fold(callsign)"),
          std::tuple("by address", DirectoryOrder::Ident, "\"IDENT\"")}) {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(bare, (select + key).c_str(), -1, &statement, nullptr);
        const Times times = Compare([&] { ReadBare(statement); }, [&] { list(order, {}); });
        sqlite3_finalize(statement);
        std::printf("%-28s %9.1f ms, bare %9.1f ms, ratio %.2f (goal 2.00)\n", what, times.ours, times.bare,
                    times.Ratio());
        reached = reached && times.Ratio() <= 2;
    }
    for (const auto& [what, lookFor] :
         {std::pair("opened, to painted lines", ""), std::pair("searched, a few found", "99")}) {
        const Times times = Compare([] {},
                                    [&] {
                                        list(DirectoryOrder::Callsign, QString::fromLatin1(lookFor));
                                        view.viewport()->repaint();
                                    });
        std::printf("%-28s %9.1f ms (goal 100)\n", what, times.ours);
        reached = reached && times.ours <= 100;
    }
    sqlite3_close_v2(bare);
    return reached ? 0 : 1;
}
