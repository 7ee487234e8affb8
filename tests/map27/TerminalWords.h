#pragma once

#include "map27/terminal/Terminal.h"

#include <optional>
#include <string>

// The words in which conversations with a terminal are written.

// "2/31".
map27::Address AddressOf(const std::string& text);
// "message 192 00 to 2/31".
std::string EventText(const map27::TerminalEvent& event);
// An operation, "status 2/31 5" or "call 2/31 emergency"; empty when the step is none.
std::optional<map27::OperationResult> Operate(map27::Terminal& terminal, const std::string& step,
                                              map27::TimePoint now);
