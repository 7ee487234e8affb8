#pragma once

#include "map27/terminal/Terminal.h"
#include "radio/line/LineFigures.h"
#include "radio/line/LineReports.h"
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

// The line to the radio. Owns the port, the terminal's end of MAP27, the watch over both and the one timer
// that drives them. Commands go in through Open, Run and Close; events and conditions come out as reports. It
// may live on a thread of its own (ThreadedLine), and does nothing that takes long. A line that fails after
// it was open once is reopened forever with a growing pause, and one without a link now and then; a
// transaction that was open then ends with TransactionCleared. A radio that has nothing to say is asked every
// 8 seconds whether it is there. While many reports wait to be taken, the radio gets no credit and keeps the
// next messages itself.
class RadioLine : public QObject {
    Q_OBJECT

public:
    // Makes the port of a name and bit rate.
    using PortFactory = std::function<std::unique_ptr<RadioPort>(const QString& name, int bitsPerSecond)>;
    using Operation = std::function<map27::OperationResult(map27::Terminal&, map27::TimePoint)>;

    // At so many reports the radio is held back, and at so few let go again. As many as the link keeps for
    // the radio when that takes nothing; a line of 9600 bit/s needs ten seconds for them.
    static constexpr std::size_t ManyReports = 256;
    static constexpr std::size_t FewReports = 64;

    // Clock and reports must outlive it.
    RadioLine(const Clock& clock, PortFactory ports, LineReports& reports);
    ~RadioLine() override;

    // Closes what is open first. The first report is Connecting, or PortFailed, and the line is closed then.
    // LinkReady and LinkFailed are reported as conditions; a condition may repeat itself.
    void Open(quint64 opening, const QString& portName, int bitsPerSecond);
    void Close(); // harmless when closed

    // Hands one request to the terminal; gives back why it did not begin.
    std::optional<map27::Refusal> Run(const Operation& operation);

    // Some have been taken.
    void WeighReports();

    // What the timer does when it is due.
    void OnTime();

    // Of the line that is open, or was. Any thread may ask.
    LineFigures Figures() const { return m_meter.Figures(); }

private:
    void Take(map27::TerminalOutput output);
    void TakeEvents();
    void OnLinkReady();
    void OnLinkFailed(map27::LinkFailure reason);
    void OnReceived(const QByteArray& octets);
    void OnPortOpened();
    void OnPortFailed(const LineCondition& condition);
    void HoldBack(bool hold);
    void EndLink();
    void Reopen();
    void Supervise();
    void Tell(LinkWatch::Finding finding);
    void Tell(const LineCondition& condition);
    void Schedule();
    void Count();
    map27::TimePoint Now() const;

    const Clock& m_clock;
    PortFactory m_ports;
    LineReports& m_reports;
    quint64 m_opening = 0;
    std::unique_ptr<RadioPort> m_port; // null when closed
    std::unique_ptr<map27::Terminal> m_terminal;
    LinkWatch m_watch;
    LineMeter m_meter;
    QTimer m_timer;
    std::deque<map27::TerminalEvent> m_events; // not reported yet
    bool m_takingEvents = false;
    bool m_everOpen = false; // the port, since Open
    bool m_holdingBack = false;
    std::optional<map27::TimePoint> m_retryAt;
    map27::Milliseconds m_retryPause{0};
    bool m_reopening = false;
    bool m_owes = false; // the condition told last
};
