#pragma once

#include "radio/line/LineCalls.h"
#include "radio/line/LineReports.h"
#include "radio/line/RadioLine.h"

#include <QThread>

// The line as its user's thread sees it. The line itself lives on a thread of its own, where neither a window
// nor a database can stop it, or on the user's, where a test decides what happens when. Only the two queues
// are touched by both threads; all operations belong to the user's.
class ThreadedLine : public QObject {
    Q_OBJECT

public:
    enum class Place { OwnThread, UsersThread };
    using Late = LineCalls::Late;
    // Shows the operator that a port is being waited for, as long as the object that it gives back lives.
    // Input reaches the windows meanwhile, so what is shown has to be modal. `giveUp` may be called from it.
    using WaitSign =
        std::function<std::shared_ptr<void>(const QString& portName, std::function<void()> giveUp)>;

    enum class Opening { Opened, Failed, GivenUp };
    struct Outcome {
        Opening opening;
        PortProblem problem{}; // Failed only
    };

    // The clock must outlive it. It is asked, and the factory called, on the line's thread.
    ThreadedLine(const Clock& clock, RadioLine::PortFactory ports, Place place);
    // The last words go out, and the thread has ended.
    ~ThreadedLine() override;

    void SetWaitSign(WaitSign sign) { m_waitSign = std::move(sign); }

    // Closes what is open first. A port that takes its time is waited for in an event loop of its own,
    // without user input until there is a sign; GivenUp when it was closed or opened again in there, or the
    // program ends. Nothing is reported before it has returned.
    Outcome Open(const QString& portName, int bitsPerSecond);
    // Does not wait; nothing is reported any more. Harmless when closed.
    void Close();
    bool IsOpen() const { return m_open; }
    LineFigures Figures() const { return m_line->Figures(); }

    // Hands one request to the terminal of an open line; gives back why it did not begin. The operation runs
    // on the line's thread while this one waits. LinkBusy for a line that has got stuck in its device.
    std::optional<map27::Refusal> Run(const RadioLine::Operation& operation, Late late = Late::Dropped);
    // The same for one that is never refused; does not wait, so the operation must own what it uses.
    void Leave(const RadioLine::Operation& operation);

    // What the line's timer does when it is due, after `first`, both on the line's thread. For tests.
    void OnTime(const std::function<void()>& first);

Q_SIGNALS:
    // From the event loop, one at a time; the receiver may open windows and close or open the line.
    void Reported(const LineReport& report);
    // Between the threads.
    void Called();
    void Woken();

private:
    void Deliver();
    void AwaitPort(quint64 opening, const QString& portName);
    void Do(const LineCalls::Act& act); // waits for its end, however long that takes

    const Place m_place;
    LineReports m_reports;
    LineCalls m_calls;
    std::unique_ptr<RadioLine> m_line; // belongs to its thread
    QObject m_bell;                    // lives there; rings for RunAll
    QThread m_thread;
    WaitSign m_waitSign;
    bool m_open = false;
    int m_openings = 0; // in progress, one inside the other
};
