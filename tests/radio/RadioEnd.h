#pragma once

#include "simulator/script/ScenarioReader.h"
#include "support/FakeClock.h"
#include "support/VirtualRadio.h"

// The clock that both ends live by, and the radio's end.
struct RadioEnd {
    FakeClock clock;
    VirtualRadio radio{clock, sim::LoadScenario(":/veltorkyn/scenarios/tour.json")};
};
