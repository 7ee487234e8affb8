#pragma once

#include "simulator/base/Schedule.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

// What a party can ask of the network.
enum class Service { Status, Text, Call, Regroup };

// "status", "text", "call", "regroup".
std::optional<Service> ServiceOfWord(std::string_view word);

// How the network and the called radio react to a request; Behaviour.cpp says what each behaviour sends.
enum class Behaviour {
    Answers,
    Slow,
    Rings,
    Queued,
    Busy,
    Refuses,
    Engaged,
    NoAnswer,
    CallBack,
    OutOfReach,
    Rejects,
    Overload,
    Diverted,
    DivertedAway,
    DivertedNowhere,
    DivertedToGroup,
    Silent,
};

// A behaviour with its times.
struct Reaction {
    Behaviour behaviour = Behaviour::Answers;
    Milliseconds reactAfter{}; // from the request to the network's first word
    Milliseconds
        answerAfter{};   // from the first word to the last, when there are two; call-back: until it calls
    Milliseconds talk{}; // calls: the other side hangs up this long after connection; 0: never

    // The behaviour with its usual times.
    static Reaction Of(Behaviour behaviour);

    bool operator==(const Reaction&) const = default;
};

enum class StepOutcome { Pending, Success, Failure };

// One acknowledgement on the way to the end of a request.
struct Step {
    Milliseconds delay; // after the step before
    StepOutcome outcome;
    std::uint8_t cause; // MAP27 v1.5, A7.5
    bool operator==(const Step&) const = default;
};

// What follows a request. The last step is a final one, unless the network never answers.
std::vector<Step> StepsOf(const Reaction& reaction, Service service);

// Whether the behaviour comes from a diversion that the network knows of.
bool IsDiversion(Behaviour behaviour);

// The words of scenarios and commands, "out-of-reach".
std::optional<Behaviour> BehaviourOfWord(std::string_view word);
std::string_view WordOf(Behaviour behaviour);
// All words, for a person: "answers, slow, ...".
std::string BehaviourWords();

} // namespace sim
