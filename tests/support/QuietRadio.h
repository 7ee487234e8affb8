#pragma once

#include "support/ConsoleStack.h"
#include "support/FakeMap27Control.h"

struct OwnClock {
    FakeClock clock;
};

// The console with a radio that answers only what the test says; it is unit 21.
class QuietRadioStack : public OwnClock, public ConsoleStack {
public:
    explicit QuietRadioStack(const dao::OpenOptions& options)
        : ConsoleStack(
              clock, [](const IStringSource&) { return std::make_unique<FakeMap27Control>(); }, options)
    {
        control->radioIdent = 3;
        control->unitBase = 2;
        control->unitMax = 71;
    }

    FakeMap27Control* control = dynamic_cast<FakeMap27Control*>(&executive.Map27Control());
};
