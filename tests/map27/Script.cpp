#include "map27/Script.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace {

std::string Trim(const std::string& line)
{
    const auto first = line.find_first_not_of(" \t");
    if (first == std::string::npos)
        return {};
    return line.substr(first, line.find_last_not_of(" \t") - first + 1);
}

const std::string Arrow = " => ";

// "> 80 01 ; ! ready" into its two parts.
std::vector<std::string> Split(const std::string& line)
{
    std::vector<std::string> parts;
    for (std::size_t at = 0; at != std::string::npos;) {
        const auto end = line.find(" ; ", at);
        parts.push_back(Trim(line.substr(at, end - at)));
        at = end == std::string::npos ? end : end + 3;
    }
    return parts;
}

std::string Join(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += "\n    " + line;
    return text;
}

} // namespace

void RunScript(const std::string& script, const Stimulus& stimulus)
{
    std::istringstream lines(script);
    std::string line;
    std::string step = "(beginning)";
    std::vector<std::string> expected;
    std::vector<std::string> seen;
    const auto compare = [&] {
        EXPECT_EQ(Join(expected), Join(seen)) << "after the step: " << step;
        expected.clear();
    };
    while (std::getline(lines, line)) {
        line = Trim(line.substr(0, line.find("  #")));
        if (line.empty())
            continue;
        if (line[0] == '>' || line[0] == '!') {
            expected.push_back(line);
            continue;
        }
        compare();
        if (testing::Test::HasFailure())
            return;
        const auto arrow = line.find(Arrow);
        step = Trim(line.substr(0, arrow));
        seen = stimulus(step);
        if (arrow != std::string::npos)
            expected = Split(line.substr(arrow + Arrow.size()));
    }
    compare();
}

std::vector<Conversation> ReadConversations(const std::string& name, std::size_t count)
{
    std::ifstream file(TEST_DATA_DIR "/" + name);
    std::vector<Conversation> conversations;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("== ")) {
            conversations.push_back({line.substr(3), {}, {}});
        } else if (line.starts_with("with ")) {
            for (const std::string& word : Words(line.substr(5))) {
                const auto equals = word.find('=');
                conversations.back().with[word.substr(0, equals)] = std::stoi(word.substr(equals + 1));
            }
        } else if (!line.starts_with('#') && !conversations.empty()) {
            conversations.back().script += line + '\n';
        }
    }
    EXPECT_EQ(conversations.size(), count) << name;
    return conversations;
}

map27::Octets FromHex(const std::string& text)
{
    map27::Octets octets;
    std::string digits;
    for (const char c : text) {
        if (c == ' ')
            continue;
        digits += c;
        if (digits.size() == 2) {
            octets.push_back(static_cast<std::uint8_t>(std::stoul(digits, nullptr, 16)));
            digits.clear();
        }
    }
    EXPECT_TRUE(digits.empty()) << text;
    return octets;
}

std::vector<std::string> Words(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}
