#include "simulator/script/EventReader.h"

#include "simulator/script/Command.h"

#include <algorithm>
#include <array>

namespace sim {

namespace {

constexpr double LongestSeconds = 30.0 * 86400;

// An event as an object of named fields, which it was before it was a command line.
struct FieldEvent {
    std::string_view word;
    std::string_view command;
    std::array<const char*, 6> fields; // in the order of the command's words; the rest null
};

constexpr std::array FieldEvents{
    FieldEvent{"status", "status", {"from", "code"}},
    FieldEvent{"text", "text", {"from", "bits", "text"}},
    FieldEvent{"call", "call", {"from", "rings", "emergency", "to", "data", "hangUpAfter"}},
    FieldEvent{"pstn-call", "pstn-call", {"rings", "emergency", "data", "hangUpAfter"}},
    FieldEvent{"pabx-call", "pabx-call", {"rings", "emergency", "data", "hangUpAfter"}},
    FieldEvent{"contact-lost", "contact lost", {}},
    FieldEvent{"contact-found", "contact found", {}},
    FieldEvent{"field", "field", {"strength"}},
    FieldEvent{"behave", "behave", {"who", "service", "behaviour"}},
    FieldEvent{"sensor", "sensor", {"who", "number", "is"}},
    FieldEvent{"control", "control", {"who", "number", "is"}},
    FieldEvent{"numbering", "numbering", {"ident", "units", "groups"}},
    FieldEvent{"storm", "storm", {"count", "texts"}},
    FieldEvent{"fault", "fault", {"name", "value"}},
    FieldEvent{"silence", "silent on", {"seconds"}},
};

std::string TextOf(const JsonNode& event, const char* field)
{
    const auto node = event.Find(field);
    return node ? node->AsWritten() : std::string{};
}

// The words of a command that say what the field said; empty when they are needless.
std::string WordsOf(const JsonNode& event, std::string_view field)
{
    const std::string value = TextOf(event, field.data());
    if (field == "rings")
        return value == "true" ? "ring" : value == "false" ? "connected" : "";
    if (field == "emergency" || field == "data")
        return value == "true" ? std::string(field) : "";
    if (field == "to")
        return value == "radio" ? "" : value;
    if (field == "hangUpAfter")
        return value.empty() ? "" : "for " + value;
    if (field == "ident")
        return TextOf(event, "prefix") + '/' + value;
    if (field == "count")
        return value.empty() && event.Find("texts") ? std::to_string(StormAction{}.count) : value;
    if (field == "bits") {
        const std::string text = TextOf(event, "text");
        return value.empty() && (text.starts_with("7 ") || text.starts_with("8 ")) ? "7" : value;
    }
    if (const auto range = event.Find(field.data()); range && range->IsObject())
        return std::string(field) + ' ' + TextOf(*range, "base") + ' ' + TextOf(*range, "max") + ' ' +
               TextOf(*range, "digits");
    return value;
}

// Throws when the event is an object of fields, and shows the line that it should be.
void RefuseFields(const JsonNode& event)
{
    const std::string word = event.Member("do").Text();
    const auto known = std::ranges::find(FieldEvents, word, &FieldEvent::word);
    if (known == FieldEvents.end())
        return;
    std::string line(known->command);
    bool hasFields = line.substr(0, line.find(' ')) != word;
    for (const char* field : known->fields) {
        const std::string words = field ? WordsOf(event, field) : std::string{};
        line += (words.empty() ? "" : " ") + words;
        hasFields = hasFields || (field && event.Find(field));
    }
    if (hasFields)
        event.Fail("an event is a line as of a command: \"do\": " + JsonNode::Quoted(line));
}

Action ReadAction(const JsonNode& node, const Scenario& scenario)
{
    const auto parsed = ParseCommand(node.Text(), scenario);
    if (const auto* problem = std::get_if<CommandProblem>(&parsed))
        node.Fail(problem->reason);
    const auto* action = std::get_if<Action>(&std::get<Command>(parsed));
    if (!action)
        node.Fail("this is a question, and nobody would have the answer");
    if (const std::string problem = CheckAction(*action, scenario.fleet); !problem.empty())
        node.Fail(problem);
    return *action;
}

} // namespace

TimedEvent ReadEvent(const JsonNode& node, const Scenario& scenario)
{
    if (!node.IsObject())
        node.Fail("must be an object");
    RefuseFields(node);
    node.RequireMembers({"at", "every", "do"});
    TimedEvent event;
    event.at = Milliseconds(node.Member("at").SecondsAsMilliseconds(LongestSeconds));
    if (const auto every = node.Find("every")) {
        event.every = Milliseconds(every->SecondsAsMilliseconds(LongestSeconds));
        if (event.every < Milliseconds(100))
            every->Fail("must be 0.1 seconds or more");
    }
    event.action = ReadAction(node.Member("do"), scenario);
    return event;
}

} // namespace sim
