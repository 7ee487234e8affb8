#include "ctl/files/InputLine.h"

#include "core/texts/Errors.h"

#include <iostream>

namespace {

constexpr std::size_t LongestLine = 4096; // octets

} // namespace

std::optional<std::string> ReadInputLine()
{
    std::string line;
    for (char c = 0; std::cin.get(c) && c != '\n';) {
        if (line.size() == LongestLine)
            throw Error(
                ErrorCode::General,
                QStringLiteral("A line of standard input is longer than %1 characters").arg(LongestLine));
        line += c;
    }
    if (line.empty() && !std::cin)
        return std::nullopt;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}
