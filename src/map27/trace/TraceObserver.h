#pragma once

#include "map27/trace/ConversationObserver.h"
#include "map27/trace/LinkObserver.h"
#include "map27/trace/TraceEntry.h"

#include <cstdint>

namespace map27 {

// Puts a trace into words, entry by entry, and finds what breaks the standard. Keeps no more than the state
// of the link and of the conversation, however long the trace is.
class TraceObserver {
public:
    struct Seen {
        std::string words;   // "LT 3  SEND STATUS to 2/31: 5"
        Findings findings{}; // what strikes about it
        Octets message{};    // of an LT that was seen for the first time
    };
    Seen Take(const TraceEntry& entry);

    struct Totals {
        std::uint64_t frames = 0;
        std::uint64_t damaged = 0; // of them
        std::uint64_t messages = 0;
        std::uint64_t remarks = 0;
        std::uint64_t breaches = 0;
    };
    const Totals& Counted() const { return m_totals; }
    const LinkObserver& Link() const { return m_link; }

private:
    Seen TakeFrame(const TraceEntry& entry);
    Seen TakeBody(OctetSpan body, Direction direction, TimePoint at);
    void Begin();

    LinkObserver m_link;
    ConversationObserver m_conversation;
    Totals m_totals;
    TimePoint m_last{};
};

} // namespace map27
