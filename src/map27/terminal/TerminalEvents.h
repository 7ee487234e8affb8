#pragma once

#include "map27/codec/CharacterCoding.h"
#include "map27/codec/Messages.h"
#include "map27/link/Link.h"

#include <variant>

namespace map27 {

// What the terminal reports to its owner. LinkReady and LinkFailed are those of Link.h.

struct StatusReceived {
    Address from;
    std::uint8_t status; // 0..31
    bool operator==(const StatusReceived&) const = default;
};

struct TextReceived {
    Address from;
    std::string text; // UTF-8; hexadecimal pairs for bit strings
    Coding coding;
    bool operator==(const TextReceived&) const = default;
};

struct IncomingCall {
    std::uint8_t type;  // Type::Call or Type::EmergencyCall
    std::uint8_t flags; // the call details octet; bit value 8: rings, must be answered
    Address from;       // PSTN and PABX of the radio's own prefix are told with prefix 0
    AddressDescription description{};
    bool operator==(const IncomingCall&) const = default;
};

// The three kinds of progress. code: 192 208 224, 196 212 228, 197 213 229. source is the type octet that the
// cause belongs to (see CauseText): the code itself, or Type::ProtocolInfo when the radio refused the request
// as such. message is what the radio said, as received; empty when it said nothing.
struct MessageProgress {
    std::uint8_t code;
    std::uint8_t cause;
    std::uint8_t source;
    Address party; // whom the message was for
    Octets message{};
    bool operator==(const MessageProgress&) const = default;
};
struct OutgoingCallProgress {
    std::uint8_t code;
    std::uint8_t cause;
    std::uint8_t source;
    Octets message{};
    bool operator==(const OutgoingCallProgress&) const = default;
};
struct AnswerProgress {
    std::uint8_t code;
    std::uint8_t cause;
    std::uint8_t source;
    Octets message{};
    bool operator==(const AnswerProgress&) const = default;
};

enum class ClearedBy { Radio, IncomingCall, LinkLoss, LinkReset };

// The transaction or call in progress has ended without an acknowledgement of its own.
struct TransactionCleared {
    ClearedBy by;
    std::uint8_t type;  // 86, A6; A4, A5 when an incoming call took over; 0 when the link went
    std::uint8_t cause; // 0 unless by the radio
    Octets message{};   // as received; empty when the link went
    bool operator==(const TransactionCleared&) const = default;
};

// The call that was lost with the link goes on at the radio, and is ours again.
struct CallTakenUp {
    Address party; // as on the wire
    bool operator==(const CallTakenUp&) const = default;
};

struct NumberingReceived {
    NumberingMessage info;
    bool operator==(const NumberingReceived&) const = default;
};
struct OperatingConditionReceived {
    OperatingConditionMessage info;
    bool operator==(const OperatingConditionReceived&) const = default;
};
struct NetworkInfoReceived {
    NetworkInfoMessage info;
    bool operator==(const NetworkInfoReceived&) const = default;
};
struct PersonalityReceived {
    PersonalityMessage info;
    bool operator==(const PersonalityReceived&) const = default;
};
struct SettingsReceived {
    SettingsMessage info;
    bool operator==(const SettingsReceived&) const = default;
};

// Nothing is dropped silently: whatever raises no other event raises one of these, for the log file.
enum class ReportKind {
    Undecodable,      // see text; the octets as received
    StatusOutOfRange, // above 31
    UnknownCoding,    // a text in a reserved coding, delivered as hexadecimal pairs
    Late,             // an answer that belongs to nothing open
    CallHungUp,       // of itself, after the link was lost; or the transmitter was released
    CancelConfirmed,  // the end of a cancelled transaction, or the radio's answer to the cancelling
    ProtocolInfo,     // the radio's complaint or notice
    Unanswered,       // a question of the terminal's own or the operator's
    NotUsed,          // a message that this terminal has no use for
    NotDelivered,     // could not be handed to the link (too long for the agreed N1, queue full)
};
struct Report {
    ReportKind kind;
    std::string text; // English
    Octets message;   // as received; may be empty
    bool operator==(const Report&) const = default;
};

using TerminalEvent = std::variant<StatusReceived, TextReceived, IncomingCall, MessageProgress,
                                   OutgoingCallProgress, AnswerProgress, TransactionCleared, CallTakenUp,
                                   NumberingReceived, OperatingConditionReceived, NetworkInfoReceived,
                                   PersonalityReceived, SettingsReceived, LinkReady, LinkFailed, Report>;

// What one call brought about: octets for the port, one element a frame, and events, both in order.
struct TerminalOutput {
    std::vector<Octets> frames;
    std::vector<TerminalEvent> events;

    // Adds what a later call brought about.
    void Append(TerminalOutput later);
};

enum class RefusalCode {
    LinkNotReady,
    TransactionOpen,    // a message or call is in progress or rings
    AddressNotSendable, // ident 0, 8103..8120, 8181..8190, or no address at all
    StatusOutOfRange,   // above 31; length is the status, limit 31
    Text,               // see Refusal::text
    DataTooLong,        // binary data above 22 octets; length and limit are set
    DataEmpty,
    DigitsMissing,
    DigitsTooMany,         // length and limit are set
    DigitsInvalid,         // other than 0-9 * #
    GatewayUnknown,        // neither 1 nor 2
    NoIncomingCall,        // nothing rings
    NoCall,                // transmit key outside a call
    UnknownQuestion,       // radio information other than 0..4
    MessageTooLongForLink, // the radio agreed to shorter messages only; length and limit are set
    LinkBusy,              // the radio takes no messages at the moment and too many wait
};

// Why an operation did not begin. Nothing has changed.
struct Refusal {
    RefusalCode code;
    TextProblem text{}; // Text
    std::size_t length = 0;
    std::size_t limit = 0;
    bool operator==(const Refusal&) const = default;
};

// What it means that the link did not take a message of this length; empty when it did.
std::optional<Refusal> RefusalOf(SendResult result, std::size_t length, std::size_t limit);

// English, for log files and command lines.
std::string RefusalText(const Refusal& refusal);

struct OperationResult {
    std::optional<Refusal> refusal; // empty: begun
    TerminalOutput output;
};

} // namespace map27
