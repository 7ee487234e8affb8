#pragma once

#include "map27/terminal/TerminalEvents.h"

#include <utility>

namespace map27 {

struct TerminalCounters {
    std::uint64_t messagesReceived = 0;
    std::uint64_t messagesSent = 0;
    std::uint64_t undecodable = 0;
    std::uint64_t statusOutOfRange = 0;
    std::uint64_t unknownCodings = 0;
    std::uint64_t late = 0;
    std::uint64_t unanswered = 0;
    std::uint64_t notUsed = 0;
};

// What the radio said that bears on a request.
struct RadioSignal {
    std::uint8_t type;
    std::uint8_t cause;
    const Octets& octets; // the whole message
};

// What a terminal collects for its owner, and its counters.
class Outbox {
public:
    void Tell(TerminalEvent event) { m_output.events.push_back(std::move(event)); }
    void TellStatus(const StatusMessage& message, const Octets& octets);
    void TellText(const ShortDataMessage& message, const Octets& octets);

    // `octets`: the message as received.
    void Report(ReportKind kind, std::string text, const Octets& octets = {});
    // The same with the names of type and cause as its text.
    void Report(ReportKind kind, const RadioSignal& signal);
    // Counted and reported, nothing else: it belongs to nothing that is open.
    void ReportLate(const RadioSignal& signal);
    // A message that the terminal has no use for.
    void ReportNotUsed(std::string text, const Octets& octets);
    // "SETUP PROGRESS (connected)".
    static std::string Describe(const RadioSignal& signal);

    void Transmit(Octets frame) { m_output.frames.push_back(std::move(frame)); }

    TerminalOutput Take() { return std::exchange(m_output, {}); }

    TerminalCounters counters;

private:
    TerminalOutput m_output;
};

} // namespace map27
