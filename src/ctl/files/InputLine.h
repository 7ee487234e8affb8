#pragma once

#include <optional>
#include <string>

// The next line of standard input without its end; nothing at the end of the input. Raises Error when it is
// longer than anything a command takes.
std::optional<std::string> ReadInputLine();
