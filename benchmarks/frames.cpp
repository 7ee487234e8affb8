// Messages from the last octet of their frame to the line painted in the log: the real main window and the
// real wire decoding, with the database in memory (/dev/shm), since its commit is measured elsewhere.
// Arguments: messages (3000).

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

void Print(const char* what, std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    const auto at = [&](double part) {
        return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
    };
    std::printf("%-22s median %.2f ms, p99 %.2f ms, longest %.2f ms\n", what, at(0.5), at(0.99), at(1));
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
    const double start = ProcessorMilliseconds();
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
    const double spent = ProcessorMilliseconds() - start;
    Print("frame to painted line", clock);
    Print("of it, processor", processor);
    std::printf("%d messages, %d not painted; a processor takes %.0f a second (goal 500)\n", messages,
                unpainted, 1000.0 * messages / spent);
    return 0;
}
