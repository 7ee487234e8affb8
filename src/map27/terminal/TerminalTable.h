#pragma once

#include "map27/codec/Messages.h"

#include <cstdint>

namespace map27 {

// States of a terminal's one transaction (MAP27 v1.5, 5.3).
enum class TerminalState : std::uint8_t {
    Idle,
    MessageWait, // status, SST or MST on its way
    OutcallWait, // call being set up
    IncallWait,  // incoming call rings, or was answered and is not yet connected
    Active,      // in a call
};
constexpr int TerminalStateCount = 5;

// What the radio says, as far as it concerns the transaction.
enum class RadioInput : std::uint8_t {
    MessageDone,       // C0
    MessageQueued,     // D0
    MessageFailed,     // E0
    CallConnected,     // C4
    CallQueued,        // D4
    CallFailed,        // E4
    AnswerConnected,   // C5
    AnswerWarning,     // D5
    AnswerFailed,      // E5
    CallBackNoted,     // E5 07
    ClearedNormal,     // 86
    ClearedAbnormal,   // A6
    CallEndedAbnormal, // A6 0E: speaks of a call, never of a message
    Refused,           // B4 01..05
    IncomingConnected, // A4, A5 with an open channel
    IncomingRinging,   // A4, A5 to be answered
    LinkLost,
};
constexpr int RadioInputCount = 17;

enum class TerminalAction : std::uint8_t {
    ReportLate,       // belongs to nothing open: only counted and reported
    Quietly,          // says what is already known
    TellMessage,      // MessageProgress with the radio's own code
    TellCall,         // OutgoingCallProgress likewise
    TellAnswer,       // AnswerProgress likewise
    FailMessage,      // MessageProgress 224
    FailCall,         // OutgoingCallProgress 228
    FailAnswer,       // AnswerProgress 229
    ReportRefusal,    // the radio's complaint, for the log file only
    TellCleared,      // TransactionCleared
    TellClearedFirst, // TransactionCleared, then the caller tells the new call or the lost link
    Nothing,          // the caller tells the rest
};

struct Transition {
    TerminalAction action;
    TerminalState next;
};

// Empty for what bears on no transaction.
std::optional<RadioInput> InputOf(const AcknowledgementMessage& message);
RadioInput InputOf(const ClearMessage& message);

Transition Decide(TerminalState state, RadioInput input);

// English, for log files.
const char* TerminalStateText(TerminalState state);

} // namespace map27
