#pragma once

#include "map27/codec/Octets.h"

#include <functional>
#include <string>
#include <vector>

// A conversation as text, a line a step: the stimulus, and after " => " what it must bring about, separated
// by " ; ": octets out begin with '>', events with '!'. All of it, in this order, nothing else. Lines that
// begin with '>' or '!' go on with the expectations of the step above. Two blanks and '#' begin a comment.
using Stimulus = std::function<std::vector<std::string>(const std::string&)>;
void RunScript(const std::string& script, const Stimulus& stimulus);

// "80 02 00 1F" or "8002001F". Fails the test for anything else.
map27::Octets FromHex(const std::string& text);

std::vector<std::string> Words(const std::string& text);
