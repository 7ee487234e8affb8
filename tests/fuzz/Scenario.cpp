// A scenario and the commands of a trainer; what can be read is carried out, with a console that keeps
// silent.

#include "fuzz/Input.h"
#include "simulator/program/Simulation.h"
#include "simulator/script/JsonNode.h"
#include "simulator/script/ScenarioReader.h"

#include <QByteArray>

namespace {

constexpr int MostCalls = 200;

void Run(const sim::Scenario& scenario, const std::string& commands)
{
    sim::Simulation simulation(scenario, {.bitsPerSecond = 0});
    map27::TimePoint now{};
    simulation.ConsoleCame(now);
    for (std::size_t from = 0; from < commands.size();) {
        const std::size_t end = std::min(commands.find('\n', from), commands.size());
        const auto answer = simulation.Execute(commands.substr(from, end - from), now);
        MUST_HOLD(answer.text.find("ok") != std::string::npos ||
                  answer.text.find("error ") != std::string::npos);
        from = end + 1;
    }
    for (int calls = 0; simulation.NextDeadline() && calls < MostCalls; ++calls) {
        now = std::max(now, *simulation.NextDeadline());
        simulation.OnTime(now);
    }
}

} // namespace

// A scenario, a line that begins with NUL, and the commands.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::size_t end = std::min(text.find('\0'), text.size());
    try {
        // A base is another file, and none is to be opened that a fuzzer names.
        if (text.find("base\"") < end && text.find("\"busy-day\"") > end)
            return 0;
        const sim::Scenario scenario = sim::ReadScenario(QByteArray::fromStdString(text.substr(0, end)));
        Run(scenario, end < text.size() ? text.substr(end + 1) : std::string{});
    } catch (const sim::ScenarioError& error) {
        MUST_HOLD(error.what()[0] != '\0');
    }
    return 0;
}
