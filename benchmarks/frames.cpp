// Messages from the last octet of their frame to the line painted in the log: the real main window and the
// real wire decoding, with the database in memory (/dev/shm), since its commit is measured elsewhere. First
// each alone, then 32 between two rounds of the event loop, which is what 2,000 a second bring in the time of
// one picture on the screen. Arguments: messages (3000).

#include "Report.h"
#include "mainwindow/RegroupStack.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <gtest/gtest.h>
#include <vector>

namespace {

double ProcessorMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// Counts paints of a viewport.
class PaintCounter : public QObject {
public:
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

double At(std::vector<double> times, double part)
{
    std::sort(times.begin(), times.end());
    return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
}

int Stored(RegroupStack& stack)
{
    const auto rows =
        stack.session.Database().OpenSnapshot(QStringLiteral("select count(*) as n from event"));
    return rows->Field(QStringLiteral("n")).toInt();
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("TMPDIR", "/dev/shm");
    QApplication application(argc, argv);
    const int messages = argc > 1 ? std::atoi(argv[1]) : 3000;
    RegroupStack stack;
    stack.window->resize(1000, 640);
    auto& log = stack.Find<QTreeView>("lvLog");
    PaintCounter paints;
    log.viewport()->installEventFilter(&paints);

    std::vector<double> clock;
    std::vector<double> processor;
    int unpainted = 0;
    for (int i = 0; i < messages; ++i) {
        const int before = paints.count;
        const int rows = log.model()->rowCount();
        QElapsedTimer timer;
        timer.start();
        const double cpu = ProcessorMilliseconds();
        stack.radio.Perform(sim::StatusAction{stack.AddressOf(2), static_cast<std::uint8_t>(i % 32)});
        for (int step = 0; step < 10 && (paints.count == before || log.model()->rowCount() == rows); ++step)
            stack.Run(10);
        clock.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        processor.push_back(ProcessorMilliseconds() - cpu);
        unpainted += paints.count == before ? 1 : 0;
    }
    if (unpainted == 0) {
        PrintRow("frame to painted line, p99", At(processor, 0.99), "ms", {}, messages);
        PrintRow("frame to painted line, p99 by the clock", At(clock, 0.99), "ms", {}, messages);
        PrintRow("frame to painted line, median", At(processor, 0.5), "ms", {}, messages);
    }

    constexpr int together = 32;
    const int before = Stored(stack);
    int shown = 0;
    QObject::connect(log.model(), &QAbstractItemModel::rowsInserted, log.model(),
                     [&](const QModelIndex&, int first, int last) { shown += last - first + 1; });
    const int sent = messages / together * together;
    const double start = ProcessorMilliseconds();
    for (int i = 0; i < sent; i += together) {
        for (int one = 0; one < together; ++one) {
            stack.radio.Perform(sim::StatusAction{stack.AddressOf(2), static_cast<std::uint8_t>(one)});
            stack.clock.Step(std::chrono::milliseconds(10));
            stack.radio.Step();
            stack.control->OnTime();
        }
        QCoreApplication::processEvents();
    }
    stack.Run(1000);
    const double spent = ProcessorMilliseconds() - start;
    if (Stored(stack) - before == sent && shown >= sent)
        PrintRow("messages a second, stored and shown", 1000.0 * sent / spent, "/s", {}, messages);
    else
        std::printf("%d sent, %d stored, %d shown\n", sent, Stored(stack) - before, shown);
    return 0;
}
