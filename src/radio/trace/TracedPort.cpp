#include "radio/trace/TracedPort.h"

#include "core/base/Clock.h"
#include "radio/trace/TraceFile.h"
#include "radio/trace/WireTrace.h"

#include <utility>

using map27::TraceEntry;

namespace {

map27::OctetSpan SpanOf(const QByteArray& bytes)
{
    return {reinterpret_cast<const std::uint8_t*>(bytes.constData()), static_cast<std::size_t>(bytes.size())};
}

} // namespace

TracedPort::TracedPort(std::unique_ptr<RadioPort> port, QString name, int bitsPerSecond, WireTrace& trace,
                       const Clock& clock)
    : m_port(std::move(port)),
      m_name(std::move(name)),
      m_bitsPerSecond(bitsPerSecond),
      m_trace(trace),
      m_clock(clock)
{
    connect(m_port.get(), &RadioPort::Opened, this, [this] {
        NoteOpened();
        Q_EMIT Opened();
    });
    connect(m_port.get(), &RadioPort::Received, this, [this](const QByteArray& octets) {
        NoteReceived(octets);
        Q_EMIT Received(octets);
    });
    connect(m_port.get(), &RadioPort::Failed, this, [this](const PortProblem& problem) {
        NoteClosed();
        Q_EMIT Failed(problem);
    });
}

void TracedPort::Close()
{
    NoteClosed();
    m_port->Close();
}

void TracedPort::Write(const QByteArray& octets)
{
    if (m_open)
        Note(SpanOf(octets), map27::Direction::ToRadio, true);
    m_port->Write(octets);
}

void TracedPort::NoteOpened()
{
    m_open = true;
    m_received.Clear();
    m_trace.Add({.kind = TraceEntry::Kind::Opened,
                 .at = Now(),
                 .time = TraceFile::TimeText(m_clock.Now()).toStdString(),
                 .port = m_name.toStdString(),
                 .number = m_bitsPerSecond});
}

void TracedPort::NoteReceived(const QByteArray& octets)
{
    for (const map27::LinePiece& piece : m_received.Feed(SpanOf(octets)))
        Note(piece.octets, map27::Direction::FromRadio, piece.isFrame);
}

void TracedPort::NoteClosed()
{
    if (!std::exchange(m_open, false))
        return;
    Note(m_received.Held(), map27::Direction::FromRadio, false);
    m_received.Clear();
    m_trace.Add({.kind = TraceEntry::Kind::Closed, .at = Now()});
}

void TracedPort::Note(map27::OctetSpan octets, map27::Direction direction, bool isFrame)
{
    if (!octets.empty())
        m_trace.Add({.kind = isFrame ? TraceEntry::Kind::Frame : TraceEntry::Kind::Noise,
                     .at = Now(),
                     .direction = direction,
                     .octets = {octets.begin(), octets.end()}});
}

map27::TimePoint TracedPort::Now() const
{
    return map27::TimePoint{m_clock.Ticks()};
}
