#pragma once

#include "map27/terminal/TerminalEvents.h"

#include <QString>

class Error;
struct IStringSource;

// The sentence for a request that the terminal refused. `subject` is what the operator gave: an address, a
// status or digits.
Error RefusalError(const map27::Refusal& refusal, const QString& subject, const IStringSource& strings);
