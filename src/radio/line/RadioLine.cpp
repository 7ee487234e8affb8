#include "radio/line/RadioLine.h"

#include "core/base/Clock.h"
#include "radio/line/RadioPort.h"

#include <algorithm>
#include <utility>

namespace {

using map27::Milliseconds;

constexpr Milliseconds FirstRetry{500};
constexpr Milliseconds LongestRetry{5000};

} // namespace

RadioLine::RadioLine(const Clock& clock, PortFactory ports, LineReports& reports)
    : m_clock(clock),
      m_ports(std::move(ports)),
      m_reports(reports),
      m_timer(this) // changes the thread with it
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &RadioLine::OnTime);
}

RadioLine::~RadioLine() = default;

void RadioLine::Open(quint64 opening, const QString& portName, int bitsPerSecond)
{
    Close();
    m_opening = opening;
    m_port = m_ports(portName, bitsPerSecond);
    connect(m_port.get(), &RadioPort::Opened, this, &RadioLine::OnPortOpened);
    connect(m_port.get(), &RadioPort::Received, this, &RadioLine::OnReceived);
    connect(m_port.get(), &RadioPort::Failed, this, [this](const PortProblem& problem) {
        OnPortFailed({.kind = LineCondition::Kind::PortFailed, .problem = problem});
    });
    m_terminal = std::make_unique<map27::Terminal>(
        map27::TerminalParameters::ForBitRate(static_cast<unsigned>(bitsPerSecond)));
    m_meter.Set({});
    m_retryPause = FirstRetry;
    m_port->Open();
}

void RadioLine::Close()
{
    m_timer.stop();
    m_retryAt.reset();
    m_reopening = false;
    m_owes = false;
    m_everOpen = false;
    m_holdingBack = false;
    m_events.clear();
    if (m_port) {
        m_port->disconnect(this);
        m_port->Close();
        // It lives on until the event loop: one of its own signals may have led here.
        m_port.release()->deleteLater();
    }
    m_terminal.reset();
}

std::optional<map27::Refusal> RadioLine::Run(const Operation& operation)
{
    if (!m_terminal)
        return map27::Refusal{.code = map27::RefusalCode::LinkNotReady};
    map27::OperationResult result = operation(*m_terminal, Now());
    Take(std::move(result.output));
    return result.refusal;
}

void RadioLine::OnTime()
{
    if (!m_port)
        return;
    if (m_retryAt && Now() >= *m_retryAt) {
        m_retryAt.reset();
        m_port->Open();
        return;
    }
    if (!m_port->IsOpen()) {
        Schedule();
        return;
    }
    map27::TerminalOutput output = m_terminal->OnTime(Now());
    if (m_watch.TakeProbe(*m_terminal, Now()))
        output.Append(m_terminal->Probe(Now()));
    Take(std::move(output));
    Supervise();
}

void RadioLine::Take(map27::TerminalOutput output)
{
    for (const map27::Octets& frame : output.frames) {
        m_watch.Send(frame);
        m_port->Write(
            QByteArray(reinterpret_cast<const char*>(frame.data()), static_cast<qsizetype>(frame.size())));
    }
    for (map27::TerminalEvent& event : output.events)
        m_events.push_back(std::move(event));
    if (!m_takingEvents)
        TakeEvents();
    Count();
    Schedule();
}

// What an event brings about may bring events of its own, which follow it.
void RadioLine::TakeEvents()
{
    m_takingEvents = true;
    while (!m_events.empty()) {
        map27::TerminalEvent event = std::move(m_events.front());
        m_events.pop_front();
        if (std::holds_alternative<map27::LinkReady>(event))
            OnLinkReady();
        else if (const auto* failed = std::get_if<map27::LinkFailed>(&event))
            OnLinkFailed(failed->reason);
        else
            m_reports.Add(m_opening, std::move(event));
    }
    m_takingEvents = false;
    WeighReports();
}

void RadioLine::WeighReports()
{
    const std::size_t waiting = m_reports.Waiting();
    if (m_terminal && (m_holdingBack ? waiting <= FewReports : waiting >= ManyReports))
        HoldBack(!m_holdingBack);
}

void RadioLine::HoldBack(bool hold)
{
    m_holdingBack = hold;
    Take(m_terminal->HoldReceiving(hold, Now()));
}

void RadioLine::OnLinkReady()
{
    if (!m_terminal->IsLinkReady())
        return; // lost again before this was delivered
    m_retryPause = FirstRetry;
    m_watch.LinkIsReady(Now(), *m_terminal);
    Tell({LineCondition::Kind::Ready});
}

void RadioLine::OnLinkFailed(map27::LinkFailure reason)
{
    Tell({.kind = LineCondition::Kind::LinkLost, .reason = reason});
    m_watch.Begin(Now(), *m_terminal);
    // A dead network connection or a stuck adapter does not say that it is dead.
    if (reason != map27::LinkFailure::PeerReset && m_port->IsOpen())
        Reopen();
}

void RadioLine::OnReceived(const QByteArray& octets)
{
    const auto* first = reinterpret_cast<const std::uint8_t*>(octets.constData());
    const map27::OctetSpan span{first, static_cast<std::size_t>(octets.size())};
    m_watch.Hear(span);
    Take(m_terminal->Feed(span, Now()));
    Supervise();
}

void RadioLine::OnPortOpened()
{
    m_retryAt.reset();
    m_everOpen = true;
    // After Reopen what was wrong still is, until the radio answers.
    if (!std::exchange(m_reopening, false))
        Tell({LineCondition::Kind::Connecting});
    m_watch.Begin(Now(), *m_terminal);
    Take(m_terminal->Start(Now()));
}

void RadioLine::OnPortFailed(const LineCondition& condition)
{
    m_reopening = false;
    EndLink();
    Tell(condition);
    if (!m_everOpen)
        return Close();
    m_retryAt = Now() + m_retryPause;
    m_retryPause = std::min(2 * m_retryPause, LongestRetry);
    Take({});
}

void RadioLine::EndLink()
{
    if (m_terminal->State() != map27::TerminalState::Idle)
        m_events.push_back(map27::TransactionCleared{map27::ClearedBy::LinkLoss, 0, 0});
    m_terminal->Stop();
}

void RadioLine::Reopen()
{
    EndLink();
    m_reopening = true;
    m_port->Close();
    m_port->Open();
}

void RadioLine::Supervise()
{
    Tell(m_watch.Look(*m_terminal, Now()));
    if (m_port->IsOpen() && m_watch.ReopenIsDue(*m_terminal, Now()))
        Reopen();
    Schedule();
}

void RadioLine::Tell(LinkWatch::Finding finding)
{
    using Finding = LinkWatch::Finding;
    using Kind = LineCondition::Kind;
    switch (finding) {
    case Finding::None:
        if (m_owes)
            Tell({Kind::Ready});
        return;
    case Finding::LinkSlow:
        return; // what was told of the loss or of connecting still holds
    case Finding::Owes:
        return Tell({Kind::Owes});
    case Finding::Silent:
        return Tell({Kind::Silent});
    case Finding::Foreign:
        return Tell({Kind::Foreign, m_watch.HeardInstead()});
    case Finding::Noise:
        return Tell({Kind::Noise});
    case Finding::Damaged:
        return Tell({Kind::Damaged});
    case Finding::Echo:
        m_port->Close();
        return OnPortFailed({Kind::Echo});
    }
}

void RadioLine::Tell(const LineCondition& condition)
{
    m_owes = condition.kind == LineCondition::Kind::Owes;
    m_reports.Add(m_opening, condition);
}

void RadioLine::Count()
{
    if (!m_terminal)
        return;
    const map27::LinkCounters counters = m_terminal->LinkCounters();
    const map27::FramingCounters& framing = counters.framing;
    const LineFigures before = m_meter.Figures();
    m_meter.Set({.received = counters.framesIn,
                 .sent = counters.framesOut,
                 .repeated = counters.retransmissions,
                 .damaged = framing.wrongFcs + framing.brokenEscapes + framing.restarts + framing.overlong,
                 .noise = framing.noiseOctets,
                 .lastHeard = counters.framesIn > before.received ? m_clock.Now() : before.lastHeard});
}

void RadioLine::Schedule()
{
    map27::Deadline deadline = m_retryAt;
    if (m_port && m_port->IsOpen())
        deadline = map27::Earlier(map27::Earlier(deadline, m_terminal->NextDeadline()),
                                  m_watch.NextLook(*m_terminal));
    if (!deadline) {
        m_timer.stop();
        return;
    }
    m_timer.start(std::max(Milliseconds{0}, *deadline - Now()));
}

map27::TimePoint RadioLine::Now() const
{
    return map27::TimePoint{m_clock.Ticks()};
}
