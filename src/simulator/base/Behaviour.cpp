#include "simulator/base/Behaviour.h"

#include "map27/codec/Causes.h"

#include <algorithm>
#include <array>

namespace sim {

namespace {

using namespace map27::Cause;

// A cause on the way and one at the end, where 0 is success.
struct Course {
    std::optional<std::uint8_t> first;
    std::optional<std::uint8_t> last;
};

struct Row {
    Behaviour behaviour;
    std::string_view word;
    Course message;
    Course call;
    int reactMs;
    int answerMs;
};

constexpr std::optional<std::uint8_t> NoStep;

constexpr std::array Rows{
    Row{Behaviour::Answers, "answers", {NoStep, Success}, {NoStep, Success}, 300, 0},
    Row{Behaviour::Slow, "slow", {NoStep, Success}, {NoStep, Success}, 8000, 0},
    Row{Behaviour::Rings, "rings", {NoStep, Success}, {Alerting, Success}, 300, 3000},
    Row{Behaviour::Queued, "queued", {SystemBusy, Success}, {SystemBusy, Success}, 300, 2000},
    Row{Behaviour::Busy, "busy", {UnitBusy, Success}, {UnitBusy, Success}, 300, 2000},
    Row{Behaviour::Refuses, "refuses", {NoStep, EngagedOrRefused}, {Alerting, EngagedOrRefused}, 300, 2000},
    Row{Behaviour::Engaged, "engaged", {NoStep, EngagedOrRefused}, {NoStep, EngagedOrRefused}, 300, 0},
    Row{Behaviour::NoAnswer, "no-answer", {NoStep, Success}, {Alerting, Unreachable}, 300, 15000},
    Row{Behaviour::CallBack, "call-back", {NoStep, Success}, {NoStep, NotedForCallBack}, 300, 10000},
    Row{Behaviour::OutOfReach, "out-of-reach", {NoStep, Unreachable}, {NoStep, Unreachable}, 1500, 0},
    Row{Behaviour::Rejects, "rejects", {NoStep, Invalid}, {NoStep, Invalid}, 300, 0},
    Row{Behaviour::Overload, "overload", {NoStep, Overloaded}, {NoStep, Overloaded}, 300, 0},
    Row{Behaviour::Diverted, "diverted", {DivertedRetry, Success}, {DivertedRetry, Success}, 300, 1000},
    Row{Behaviour::DivertedAway,
        "diverted-away",
        {NoStep, DivertedNoRetry},
        {NoStep, DivertedNoRetry},
        300,
        0},
    Row{Behaviour::DivertedNowhere,
        "diverted-nowhere",
        {NoStep, DivertedUnavailable},
        {NoStep, DivertedUnavailable},
        300,
        0},
    Row{Behaviour::DivertedToGroup,
        "diverted-to-group",
        {NoStep, DivertedToGroup},
        {DivertedToGroupRetry, Success},
        300,
        1000},
    Row{Behaviour::Silent, "silent", {NoStep, NoStep}, {NoStep, NoStep}, 0, 0},
};

constexpr std::array<std::pair<std::string_view, Service>, 4> Services{{{"status", Service::Status},
                                                                        {"text", Service::Text},
                                                                        {"call", Service::Call},
                                                                        {"regroup", Service::Regroup}}};

const Row& RowOf(Behaviour behaviour)
{
    return *std::ranges::find(Rows, behaviour, &Row::behaviour);
}

} // namespace

std::optional<Service> ServiceOfWord(std::string_view word)
{
    const auto service = std::ranges::find(Services, word, &std::pair<std::string_view, Service>::first);
    if (service == Services.end())
        return std::nullopt;
    return service->second;
}

Reaction Reaction::Of(Behaviour behaviour)
{
    const Row& row = RowOf(behaviour);
    return {behaviour, Milliseconds(row.reactMs), Milliseconds(row.answerMs), Milliseconds(0)};
}

std::vector<Step> StepsOf(const Reaction& reaction, Service service)
{
    const Row& row = RowOf(reaction.behaviour);
    const Course& course = service == Service::Call ? row.call : row.message;
    std::vector<Step> steps;
    if (course.first)
        steps.push_back({reaction.reactAfter, StepOutcome::Pending, *course.first});
    if (course.last) {
        const Milliseconds delay = course.first ? reaction.answerAfter : reaction.reactAfter;
        steps.push_back(
            {delay, *course.last == Success ? StepOutcome::Success : StepOutcome::Failure, *course.last});
    }
    return steps;
}

bool IsDiversion(Behaviour behaviour)
{
    return behaviour == Behaviour::Diverted || behaviour == Behaviour::DivertedAway ||
           behaviour == Behaviour::DivertedNowhere || behaviour == Behaviour::DivertedToGroup;
}

std::optional<Behaviour> BehaviourOfWord(std::string_view word)
{
    const auto row = std::ranges::find(Rows, word, &Row::word);
    if (row == Rows.end())
        return std::nullopt;
    return row->behaviour;
}

std::string_view WordOf(Behaviour behaviour)
{
    return RowOf(behaviour).word;
}

std::string BehaviourWords()
{
    std::string words;
    for (const Row& row : Rows)
        words += (words.empty() ? "" : ", ") + std::string(row.word);
    return words;
}

} // namespace sim
