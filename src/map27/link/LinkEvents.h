#pragma once

#include "map27/codec/Octets.h"
#include "map27/link/Framing.h"

#include <variant>

namespace map27 {

enum class LinkState {
    Stopped,   // before Start, after Stop: sends nothing, ignores everything
    ResetWait, // asking for a link (LR)
    LinkWait,  // the peer asked too; waiting for agreement
    Ready,     // messages flow
};

enum class LinkFailure {
    Silent,               // nothing valid received for T4
    RetriesUsedUp,        // an LT was repeated N2 times
    PeerReset,            // the peer asked for a new link while this one was ready
    WrongAcknowledgement, // N(R) outside what was sent
    OutsideWindow,        // N(S) outside the window (only with checkWindow)
};

// English, for log files.
const char* LinkFailureText(LinkFailure failure);

// Events of a link.
struct LinkReady {
    std::uint8_t n1; // agreed
    std::uint8_t k;
    std::uint8_t version;
    bool operator==(const LinkReady&) const = default;
};
// Messages that were queued or not yet acknowledged are lost with the link. The link goes on asking for a new
// one.
struct LinkFailed {
    LinkFailure reason;
    std::size_t messagesLost;
    bool operator==(const LinkFailed&) const = default;
};
struct MessageReceived {
    Octets message;
    bool operator==(const MessageReceived&) const = default;
};
using LinkEvent = std::variant<LinkReady, LinkFailed, MessageReceived>;

// What one call brought about.
struct LinkOutput {
    std::vector<Octets> frames;    // to transmit, in order
    std::vector<LinkEvent> events; // in order
};

enum class SendResult {
    Accepted, // sent, or waiting for credit
    NotReady,
    Empty,
    TooLong, // for the agreed N1
    QueueFull,
};

struct SendOutcome {
    SendResult result;
    LinkOutput output;
};

struct LinkCounters {
    std::uint64_t framesOut = 0;
    std::uint64_t framesIn = 0;    // with a correct FCS
    std::uint64_t messagesOut = 0; // LTs, each counted once however often it was sent
    std::uint64_t messagesIn = 0;  // delivered
    std::uint64_t retransmissions = 0;
    std::uint64_t duplicates = 0;     // LTs received again and dropped
    std::uint64_t sequenceErrors = 0; // LTs out of order that are no repetition of one already delivered
    std::uint64_t noBuffer = 0;       // LTs dropped since receiving was held
    std::uint64_t crossingAcknowledgements = 0; // LAs that set out before our LT could have arrived, ignored
    std::uint64_t malformed = 0;                // bodies too short for a header, LTs without data
    std::uint64_t unknownPackets = 0;
    std::uint64_t resets = 0;        // link failures and Reset, together
    std::uint64_t silences = 0;      // T4 failures
    std::uint64_t retryFailures = 0; // N2 failures
    std::uint64_t messagesLost = 0;  // queued or unacknowledged when a link ended
    FramingCounters framing;
};

} // namespace map27
