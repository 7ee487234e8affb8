#pragma once

#include "map27/trace/FrameSplitter.h"
#include "map27/trace/TraceEntry.h"
#include "radio/line/RadioPort.h"

#include <functional>
#include <memory>

struct Clock;
class WireTrace;

// A port that tells a trace what goes over it, frame by frame.
class TracedPort : public RadioPort {
    Q_OBJECT

public:
    // Trace and clock must outlive it. Name and speed are for the trace.
    TracedPort(std::unique_ptr<RadioPort> port, QString name, int bitsPerSecond, WireTrace& trace,
               const Clock& clock);

    void Open() override { m_port->Open(); }
    void Close() override;
    bool IsOpen() const override { return m_port->IsOpen(); }
    void Write(const QByteArray& octets) override;

private:
    void NoteOpened();
    void NoteReceived(const QByteArray& octets);
    void NoteClosed();
    void Note(map27::OctetSpan octets, map27::Direction direction, bool isFrame);
    map27::TimePoint Now() const;

    std::unique_ptr<RadioPort> m_port;
    QString m_name;
    int m_bitsPerSecond;
    WireTrace& m_trace;
    const Clock& m_clock;
    map27::FrameSplitter m_received;
    bool m_open = false;
};
