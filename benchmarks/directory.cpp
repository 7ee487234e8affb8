// The address directory: read and sorted beside the engine's C interface alone, how long the operator waits
// for the window, what the session keeps of it, and how long a key takes that is typed into an address; on a
// database that bench_data has made:
//
//     bench_directory DATABASE ENTRIES

#include "core/session/Directory.h"
#include "Measure.h"
#include "Report.h"
#include "admin/DirectoryModel.h"
#include "bare/Bare.h"
#include "core/texts/StringSourceImpl.h"
#include "mainwindow/send/PartyPopup.h"
#include "support/TestDatabase.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>
#include <algorithm>

namespace {

qint64 ResidentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() * 4 / 1024 : 0;
}

// What the session keeps for all that the radio brings.
void MeasureMemory(TestSession& session, long entries)
{
    constexpr int lookUps = 1000000;
    const qint64 before = ResidentMegabytes();
    Directory directory;
    directory.Read(session.Database());
    PrintRow("memory of the session's directory", static_cast<double>(ResidentMegabytes() - before), "MB", {},
             entries);
    std::vector<QString> idents;
    std::vector<QString> callsigns;
    for (int i = 0; i < entries; i += 7) {
        idents.push_back(QStringLiteral("2%1").arg(i, 8, 10, QLatin1Char('0')));
        callsigns.push_back(QStringLiteral("Unit %1").arg(i));
    }
    const auto each = [&](const char* what, const std::vector<QString>& keys, auto look) {
        int found = 0;
        const double time = Milliseconds([&] {
            for (int i = 0; i < lookUps; ++i)
                found += look(keys[static_cast<std::size_t>(i) % keys.size()]) ? 1 : 0;
        });
        if (found == lookUps)
            PrintRow(what, time * 1000 / lookUps, "us", {}, entries);
    };
    each(
        "look-up by number", idents, [&](const QString& key) { return directory.CallsignOf(key); });
    each("look-up by callsign", callsigns, [&](const QString& key) { return directory.IdentOf(key); });
}

// The keys of parties that are there, often and seldom, and of some that are not, each until it is painted.
void MeasureTyping(TestSession& session, const IStringSource& strings, long entries)
{
    Directory directory;
    directory.Read(session.Database());
    QWidget window;
    window.resize(600, 400);
    QComboBox box(&window);
    box.setEditable(true);
    box.setCompleter(nullptr);
    box.move(10, 350);
    const PartyPopup popup(
        strings, [&]() -> const Directory& { return directory; }, box);
    window.show();
    box.setFocus();
    std::vector<double> times;
    for (int round = 0; round < 5; ++round)
        for (const char* typed :
             {"unit 99999", "299999", "99999th", "keeper of", "zebra", "\xC3\xB6st", "7"}) {
            box.clearEditText();
            for (const QChar letter : QString::fromUtf8(typed)) {
                times.push_back(Milliseconds([&] {
                    if (letter.unicode() < 0x80) {
                        QTest::keyClick(box.lineEdit(), letter.toLatin1());
                    } else {
                        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
                        QApplication::sendEvent(box.lineEdit(), &press);
                    }
                    QCoreApplication::processEvents();
                }));
            }
        }
    PrintRow("a key typed into an address, longest", *std::max_element(times.begin(), times.end()), "ms", {},
             entries);
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    if (argc < 3) {
        std::puts("usage: bench_directory DATABASE ENTRIES");
        return 2;
    }
    const TestDatabase database(dao::LocationOf(QString::fromLocal8Bit(argv[1])));
    const long entries = std::atol(argv[2]);
    TestSession session(database);
    const CStringSourceImpl strings{QStringList{}};
    DirectoryModel model(strings, nullptr);
    QTreeView view;
    view.setUniformRowHeights(true);
    view.setModel(&model);
    view.resize(500, 400);
    view.show();

    const auto list = [&](DirectoryOrder order, const QString& lookFor) {
        DirectoryList directory;
        ReadDirectory(session, order, lookFor, directory);
        model.Replace(std::move(directory));
    };
    const qint64 before = ResidentMegabytes();
    list(DirectoryOrder::Callsign, {});
    PrintRow("memory of the directory window", static_cast<double>(ResidentMegabytes() - before), "MB", {},
             entries);
    const auto bare = MakeBare(database.location.database);
    const Times opened =
        Compare([&] { bare->ReadDirectory(); }, [&] { list(DirectoryOrder::Callsign, {}); }, 11);
    PrintRow("directory opened", opened.ours, "ms", opened.bare, entries);
    const Times searched = Compare([] {},
                                   [&] {
                                       list(DirectoryOrder::Callsign, QStringLiteral("99"));
                                       view.viewport()->repaint();
                                   },
                                   11);
    PrintRow("directory searched, to painted lines", searched.ours, "ms", {}, entries);
    MeasureMemory(session, entries);
    MeasureTyping(session, strings, entries);
    return 0;
}
