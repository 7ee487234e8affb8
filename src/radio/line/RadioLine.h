#pragma once

#include "map27/terminal/Terminal.h"
#include "radio/line/LinkWatch.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

class RadioPort;
struct Clock;

// How an open line stands. The control puts it into words.
struct LineCondition {
    enum class Kind {
        Connecting, // the port is open, the radio has not answered yet
        Ready,      // the link is up
        LinkLost,   // it was up; see reason
        PortFailed, // see detail
        Owes,       // the rest as in LinkWatch::Finding
        Silent,
        Foreign, // see detail
        Noise,
        Damaged,
        Echo,
    };

    Kind kind = Kind::Connecting;
    QString detail{}; // PortFailed: why, in words; Foreign: what is heard instead of a radio
    map27::LinkFailure reason = map27::LinkFailure::PeerReset; // LinkLost only
};

// The line to the radio. Owns the port, the terminal's end of MAP27, the watch over both and the one timer
// that drives them. Commands go in through Open, Run and Close; events come out as signals. A line that fails
// after Open is reopened forever with a growing pause, and one without a link now and then; a
// transaction that was open then ends with TransactionCleared. A radio that has nothing to say is asked every
// 8 seconds whether it is there.
class RadioLine : public QObject {
    Q_OBJECT

public:
    // Makes the port of a name and bit rate; raises Error for a name that cannot be one.
    using PortFactory = std::function<std::unique_ptr<RadioPort>(const QString& name, int bitsPerSecond)>;
    using Operation = std::function<map27::OperationResult(map27::Terminal&, map27::TimePoint)>;

    // The clock must outlive it.
    RadioLine(const Clock& clock, PortFactory ports);
    ~RadioLine() override;

    // Closes what is open first. Raises what the factory or the port raises, and is closed then.
    void Open(const QString& portName, int bitsPerSecond);
    void Close(); // harmless when closed
    bool IsOpen() const { return m_port != nullptr; }

    // Hands one request to the terminal of an open line; gives back why it did not begin.
    std::optional<map27::Refusal> Run(const Operation& operation);

    // What the timer does when it is due.
    void OnTime();

Q_SIGNALS:
    // From the event loop, in order, so that no event arrives inside an operation of its receiver. LinkReady
    // and LinkFailed come as conditions.
    void EventReceived(const map27::TerminalEvent& event);
    // May repeat itself.
    void ConditionChanged(const LineCondition& condition);

private:
    void Take(map27::TerminalOutput output);
    void Deliver();
    void OnLinkReady();
    void OnLinkFailed(map27::LinkFailure reason);
    void OnReceived(const QByteArray& octets);
    void OnPortOpened();
    void OnPortFailed(const LineCondition& condition);
    void EndLink();
    void Reopen();
    void Supervise();
    void Tell(LinkWatch::Finding finding);
    void Tell(const LineCondition& condition);
    void Schedule();
    map27::TimePoint Now() const;

    const Clock& m_clock;
    PortFactory m_ports;
    std::unique_ptr<RadioPort> m_port; // null when closed
    std::unique_ptr<map27::Terminal> m_terminal;
    LinkWatch m_watch;
    QTimer m_timer;
    std::deque<map27::TerminalEvent> m_events; // waiting to be delivered from the event loop
    std::optional<map27::TimePoint> m_retryAt;
    map27::Milliseconds m_retryPause{0};
    bool m_reopening = false;
    bool m_owes = false; // the condition told last
};
