#pragma once

#include "map27/check/CheckReport.h"
#include "map27/codec/Messages.h"

#include <functional>

namespace map27 {

struct CheckSettings {
    unsigned bitsPerSecond = 9600;
    // Who gets the messages that go out over the air; empty: none go out.
    std::optional<Address> transmitTo{};
    std::uint8_t status = 1;   // the one that is sent there
    Milliseconds watch{16000}; // how long the line is watched at rest; 0: not at all
};

// One thing that is tried on a radio.
struct CheckStep {
    enum class Way {
        Message,  // `message` is sent over the link
        Damaged,  // it is sent with a wrong check sequence, which the radio must drop
        Repeated, // the last message is sent again with its old number, which the radio must not take
        FlagFcs,  // octets after the message's end make its check sequence one of flags
        NewLink,  // the link is set up anew
        Pause,    // nothing, for as long as an acknowledgement of before may be under way on a late line
        Rest,     // nothing
    };
    using IsAnswer = bool (*)(OctetSpan message);
    using Judge = std::function<void(CheckReport& report, OctetSpan answer, Milliseconds took)>;

    std::string_view name; // of the item in the report
    Way way = Way::Message;
    Octets message{};
    IsAnswer isAnswer = nullptr; // null: none is wanted
    Milliseconds limit{10000};   // to wait; when no answer is wanted, all of it
    Judge judge{};               // of the answer; without one that there was one is enough
    std::string answered{};      // what the report says then
    bool isQuestion = false;     // its answer's time counts

    // Something is sent over the link for it.
    bool IsSent() const { return way != Way::NewLink && way != Way::Pause && way != Way::Rest; }
    // It may be under way over the air as long as nothing is heard of it.
    bool GoesOut() const;
};

// Ends a step that goes out and was not answered.
CheckStep CancelOf(const CheckStep& step);

std::vector<CheckStep> CheckStepsFor(const CheckSettings& settings);

} // namespace map27
