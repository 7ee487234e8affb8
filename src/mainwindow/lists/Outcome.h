#pragma once

#include <Qt>

// What became of the last command for a node or item: shown by a sign of its own beside the text, until the
// next command.
enum class Outcome { None, Done, NotDone };

// Role of lists and trees that holds an Outcome as int.
constexpr int OutcomeRole = Qt::UserRole + 16;
