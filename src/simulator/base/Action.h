#pragma once

#include "map27/codec/CharacterCoding.h"
#include "map27/codec/Messages.h"
#include "simulator/base/FaultSettings.h"
#include "simulator/base/Fleet.h"

#include <variant>

namespace sim {

// What a scenario's events and commands can make happen on the air side.

struct StatusAction {
    map27::Address from;
    std::uint8_t code = 0; // 0..31
    bool operator==(const StatusAction&) const = default;
};

struct TextAction {
    map27::Address from;
    map27::TextCoding coding = map27::TextCoding::SevenBit;
    std::string text; // UTF-8
    bool operator==(const TextAction&) const = default;
};

// Whom an incoming call is for.
enum class CallScope { Individual, Group, SystemWide };

struct CallAction {
    map27::Address from; // ident Ident::Pstn or Ident::Pabx: a telephone; the prefix is then the radio's own
    CallScope scope = CallScope::Individual;
    bool emergency = false;
    bool rings = true;          // must be answered
    bool data = false;          // a modem call
    Milliseconds hangUpAfter{}; // the caller hangs up this long after connection; 0: never
    bool operator==(const CallAction&) const = default;
};

// The other side of a call hangs up, or gives up ringing.
struct HangUpAction {
    bool operator==(const HangUpAction&) const = default;
};

struct ContactAction {
    bool inContact = true;
    bool operator==(const ContactAction&) const = default;
};

struct FieldAction {
    std::uint8_t strength = 0; // 1..255, 0: unknown; stays until the next one
    bool operator==(const FieldAction&) const = default;
};

struct BehaveAction {
    std::string who;                // name of a member
    std::optional<Service> service; // empty: all
    Reaction reaction;
    bool operator==(const BehaveAction&) const = default;
};

// A sensor or control of an outstation changes by itself.
struct SignalAction {
    std::string who; // name of the outstation
    bool isControl = false;
    std::uint8_t number = 0; // 0..7
    Signal signal = Signal::Off;
    bool operator==(const SignalAction&) const = default;
};

// The radio gets another number, and other ranges where they are given.
struct NumberingAction {
    map27::Address address;
    std::optional<map27::IdentRange> units;
    std::optional<map27::IdentRange> groups;
    bool operator==(const NumberingAction&) const = default;
};

// Many messages at once.
struct StormAction {
    int count = 500;
    double texts = 0.2; // share of texts; the rest are statuses
    bool operator==(const StormAction&) const = default;
};

struct FaultAction {
    FaultKind kind = FaultKind::BitErrors;
    double value = 0;
    bool operator==(const FaultAction&) const = default;
};

// Nothing gets through the line.
struct SilenceAction {
    bool silent = true;
    Milliseconds duration{}; // 0: until told otherwise
    bool operator==(const SilenceAction&) const = default;
};

// The radio is switched off and on again.
struct RestartAction {
    bool operator==(const RestartAction&) const = default;
};

using Action =
    std::variant<StatusAction, TextAction, CallAction, HangUpAction, ContactAction, FieldAction, BehaveAction,
                 SignalAction, NumberingAction, StormAction, FaultAction, SilenceAction, RestartAction>;

// Why the action makes no sense, in plain words; empty when it does. Whether it is possible at the moment is
// another question.
std::string CheckAction(const Action& action, const Fleet& fleet);

// "status 5 from Unit20 (0/2)", for a person.
std::string Describe(const Action& action, const Fleet& fleet);

// Why a text cannot be sent, in plain words.
std::string TextProblemText(const map27::TextProblem& problem);

} // namespace sim
