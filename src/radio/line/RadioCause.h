#pragma once

#include "map27/codec/Address.h"

#include <QString>

// Why something came to be as a progress event tells.
struct RadioCause {
    // The map27::Type that the cause belongs to. Call or EmergencyCall: that call took the place of what was
    // in progress. 0: the link was lost.
    int type = 0;
    int cause = 0;
    map27::Party party{}; // as the radio's message names it; often the dummy address
};
