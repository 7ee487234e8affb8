#pragma once

#include "map27/codec/Octets.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

// A conversation as text, a line a step: the stimulus, and after " => " what it must bring about, separated
// by " ; ": octets out begin with '>', events with '!'. All of it, in this order, nothing else. Lines that
// begin with '>' or '!' go on with the expectations of the step above. Two blanks and '#' begin a comment.
using Stimulus = std::function<std::vector<std::string>(const std::string&)>;
void RunScript(const std::string& script, const Stimulus& stimulus);

// A conversation of a data file: "== title", "with NAME=NUMBER ..." where it needs that, and the script.
struct Conversation {
    std::string title;
    std::map<std::string, int> with;
    std::string script;
};
// Those of tests/data, of which there are as many. Lines that begin with '#' are remarks.
std::vector<Conversation> ReadConversations(const std::string& name, std::size_t count);

// "80 02 00 1F" or "8002001F". Fails the test for anything else.
map27::Octets FromHex(const std::string& text);

std::vector<std::string> Words(const std::string& text);
