// Makes a database for the other benchmarks, the same each time: events, an address for every 50 of them, a
// talkgroup for every 10,000 and a member for every 250.
//
//     bench_data DATABASE EVENTS          a file, or an address "postgresql://..."

#include "support/TestDatabase.h"

#include <QCoreApplication>
#include <algorithm>
#include <random>

namespace {

constexpr int RowsAtOnce = 500;
constexpr int Position = 3;
const QDateTime Newest(QDate(2024, 6, 1), QTime(12, 0), Qt::UTC);

using Row = std::function<QVariantList(int)>;

void Append(dao::Workspace& workspace, const QString& table, const QStringList& fields, int count,
            const Row& row)
{
    for (int made = 0; made < count;) {
        workspace.BeginTrans();
        for (int portion = 0; portion < 200 && made < count; ++portion) {
            std::vector<QVariantList> rows;
            for (const int end = std::min(count, made + RowsAtOnce); made < end; ++made)
                rows.push_back(row(made));
            workspace.Database().Append(table, fields, rows);
        }
        workspace.CommitTrans();
    }
}

void AddEvents(dao::Workspace& workspace, int count)
{
    static const char* const words[] = {"patient", "ready", "at",   "station", "bridge", "north", "gate",
                                        "fuel",    "smoke", "road", "report",  "water",  "crew",  "closed"};
    std::mt19937 random(17);
    Append(workspace, QStringLiteral("event"),
           {"time_stamp", "event_type", "desc", "from_address", "to_address", "from_number", "to_number",
            "direction", "operator", "console", "console_number", "record_id"},
           count, [&](int i) -> QVariantList {
               QString desc;
               for (int word = 0; word < 5; ++word)
                   desc += QLatin1String(words[random() % std::size(words)]) + QLatin1Char(' ');
               desc += QString::number(random() % 10000);
               const unsigned party = random() % 1000;
               return {Newest.addSecs(i - count),
                       2,
                       desc,
                       QStringLiteral("unit %1").arg(party),
                       "Dispatch",
                       QString::number(200000000 + party),
                       "200200121",
                       1,
                       "Oliver",
                       "desk 1",
                       i + 1,
                       QStringLiteral("00000000-0000-4000-8000-%1").arg(i, 12, 16, QLatin1Char('0'))};
           });
}

// The first ones are the groups, the next ones their members; spread, so that no order is found in them.
void AddDirectory(dao::Workspace& workspace, int count, int groups, int members)
{
    Append(
        workspace, QStringLiteral("address"), {"callsign", "IDENT", "Type", "Name", "dynamic", "default_pos"},
        count,
        [&](int i) -> QVariantList {
            const int number = static_cast<int>(static_cast<qint64>(i) * 7919 % count);
            const bool group = i < groups;
            return {QStringLiteral("unit %1").arg(number),
                    QStringLiteral("2%1").arg(number, 8, 10, QLatin1Char('0')),
                    group ? 2 : 1,
                    QStringLiteral("Keeper of the %1th gate").arg(number),
                    i < groups + members,
                    group ? QVariant(Position) : QVariant()};
        });
    Append(workspace, QStringLiteral("dynamic_regroup"), {"group_id", "member_id", "pos"}, members,
           [&](int i) -> QVariantList {
               return {1 + (i + 1) % groups, groups + 1 + i, Position};
           });
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 3) {
        std::puts("usage: bench_data DATABASE EVENTS");
        return 2;
    }
    const dao::Location location = dao::LocationOf(QString::fromLocal8Bit(argv[1]));
    const int events = std::atoi(argv[2]);
    dao::CreateDatabase(location, TestDatabase::userName, TestDatabase::password,
                        dao::PasswordCost::Lowest());
    const auto workspace =
        dao::OpenWorkspace(location, TestDatabase::userName, TestDatabase::password, TestDatabase::Options());
    AddDirectory(*workspace, std::max(events / 50, 50), std::max(events / 10000, 1), events / 250);
    const auto fleet = workspace->Database().OpenTable(QStringLiteral("fleet"));
    fleet->AddNew();
    for (const auto& [name, value] : {std::pair<const char*, QVariant>("fleet_name", "units"),
                                      {"fleet_type", 1},
                                      {"digits", 2},
                                      {"prefix", 0},
                                      {"base_ident", 2},
                                      {"max_ident", 71}})
        fleet->SetField(QLatin1String(name), value);
    fleet->Update();
    AddEvents(*workspace, events);
    return 0;
}
