// Conversations of a console and of a trainer with the simulated radio, as they stand in tests/data.

#include "Bench.h"

#include "map27/Script.h"
#include "map27/TerminalWords.h"
#include "simulator/program/Options.h"

#include <memory>
#include <variant>

namespace {

using Lines = std::vector<std::string>;

// The steps:
//     console [JSON], raw [JSON]     a console with the procedures of the standard, or one that sends what it
//     is
//                                    told, and a radio with this scenario; without one the tour's
//     @ COMMAND, @hex OCTETS         to the trainer's channel; its answer is seen
//     + MILLISECONDS                 time passes; what happens is seen with when it did
//     unplug, stop, start            the line goes, the console's end stops, both come again
//     status 0/2 5, 80 00 ...        what the console does: an operation, or octets
//     options WORDS                  the program's command line
//     scenario JSON, event JSON ...  reading a scenario, or a part of one
class Conversing {
public:
    Lines operator()(const std::string& step)
    {
        m_seen.clear();
        const std::string word = step.substr(0, step.find(' '));
        const std::string rest = step.size() > word.size() ? step.substr(word.size() + 1) : "";
        if (word == "console")
            m_bench = std::make_unique<TerminalBench>(ScenarioOf(rest));
        else if (word == "raw")
            m_bench = std::make_unique<RawBench>(ScenarioOf(rest));
        else if (word == "options")
            See(ProblemOf(rest));
        else if (word == "fields")
            ReadFields(rest);
        else if (const std::string document = DocumentOf(word, rest); !document.empty())
            See(FaultOf(document));
        else
            std::visit([&](const auto& bench) { Converse(*bench, word, rest, step); }, m_bench);
        return m_seen;
    }

private:
    static constexpr const char* Radio = R"({"radio": {"prefix": 0, "ident": 3}, )";
    static constexpr const char* Member = R"("fleet": [{"name": "A", "prefix": 0, "ident": 2}, )";

    static sim::Scenario ScenarioOf(const std::string& json)
    {
        return json.empty() ? sim::LoadScenario("tour") : sim::ReadScenario(QByteArray::fromStdString(json));
    }

    // "radio" alone is enough for a scenario.
    static std::string DocumentOf(const std::string& part, const std::string& json)
    {
        if (part == "scenario")
            return json;
        if (part == "member")
            return std::string(Radio) + Member + json + "]}";
        if (part == "event")
            return std::string(Radio) + Member +
                   R"({"name": "P", "prefix": 0, "ident": 8, "kind": "outstation"},
                {"name": "G", "prefix": 0, "ident": 7000, "kind": "group"}], "events": [)" +
                   json + "]}";
        return part == "top" ? Radio + json + '}' : std::string();
    }

    static std::string FaultOf(const std::string& document)
    {
        try {
            sim::ReadScenario(QByteArray::fromStdString(document));
            return "ok";
        } catch (const sim::ScenarioError& error) {
            return error.what();
        }
    }

    // An event of fields is refused with the line to write instead, and that line is taken.
    void ReadFields(const std::string& fields)
    {
        const std::string fault = FaultOf(DocumentOf("event", R"({"at": 1, )" + fields + '}'));
        See(fault);
        const auto line = fault.find(R"("do": )");
        if (line == std::string::npos)
            ADD_FAILURE() << fields;
        else
            See("! " + FaultOf(DocumentOf("event", R"({"at": 1, )" + fault.substr(line) + '}')));
    }

    static std::string ProblemOf(const std::string& line)
    {
        QStringList arguments;
        for (const std::string& word : Words(line))
            arguments.append(QString::fromStdString(word));
        const auto parsed = sim::ParseOptions(arguments);
        const auto* problem = std::get_if<sim::OptionsProblem>(&parsed);
        return problem ? problem->reason : "ok";
    }

    template <typename Bench>
    void Converse(Bench& bench, const std::string& word, const std::string& rest, const std::string& step)
    {
        bench.Forget();
        const bool waits = word == "+";
        if (word == "@")
            See(bench.Execute(rest));
        else if (word == "@hex")
            See(bench.Execute(QByteArray::fromHex(rest.c_str()).toStdString()));
        else if (waits)
            bench.RunFor(map27::Milliseconds(std::stoi(rest)));
        else if (word == "unplug")
            bench.Deliver(bench.simulation.ConsoleWent(bench.now));
        else if (word == "stop")
            bench.console.Stop();
        else if (word == "start")
            Start(bench);
        else
            Act(bench, step);
        for (const auto& one : bench.seen)
            if (const std::string text = TextOf(one.event); !text.empty())
                See("! " + (waits ? std::to_string(one.at.count()) + ' ' : "") + text);
        for (const std::string& note : bench.notes)
            if (note.find(" left out: ") != std::string::npos)
                See("! note: " + note);
    }

    template <typename Bench> static void Start(Bench& bench)
    {
        bench.Deliver(bench.console.Start(bench.now));
        bench.Deliver(bench.simulation.ConsoleCame(bench.now));
    }

    void Act(TerminalBench& bench, const std::string& step)
    {
        const auto result = Operate(bench.console, step, bench.now);
        ASSERT_TRUE(result) << "unknown step " << step;
        if (result->refusal)
            See("! refused: " + RefusalText(*result->refusal));
        bench.Deliver(result->output);
    }
    static void Act(RawBench& bench, const std::string& step) { bench.Send(step); }

    static std::string TextOf(const map27::TerminalEvent& event) { return EventText(event); }
    static std::string TextOf(const map27::LinkEvent& event)
    {
        const auto* received = std::get_if<map27::MessageReceived>(&event);
        return received ? map27::ToHex(received->message) : std::string();
    }

    void See(const std::string& line) { m_seen.push_back(line); }

    std::variant<std::unique_ptr<TerminalBench>, std::unique_ptr<RawBench>> m_bench;
    Lines m_seen;
};

class Conversations : public testing::TestWithParam<std::pair<const char*, std::size_t>> {};

TEST_P(Conversations, GoAsWritten)
{
    const auto& [file, count] = GetParam();
    for (const Conversation& conversation : ReadConversations(file, count)) {
        SCOPED_TRACE(conversation.title);
        Conversing conversing;
        RunScript(conversation.script, std::ref(conversing));
    }
}

INSTANTIATE_TEST_SUITE_P(All, Conversations,
                         testing::Values(std::pair("simulator-calls.txt", 12),
                                         std::pair("simulator-radio.txt", 7),
                                         std::pair("simulator-messages.txt", 10),
                                         std::pair("simulator-commands.txt", 4),
                                         std::pair("simulator-scenarios.txt", 3)));

} // namespace
