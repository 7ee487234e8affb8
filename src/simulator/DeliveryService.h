#pragma once

#include "simulator/Air.h"

namespace sim {

// Statuses and texts that come for the console. A text is filled up as the air does: the radio learns only
// how many codewords came.
class DeliveryService {
public:
    explicit DeliveryService(Air& air) : m_air(air) {}

    // Why it cannot be delivered, in plain words; empty when it was. CheckAction() has accepted the action.
    std::string Deliver(const StatusAction& action);
    std::string Deliver(const TextAction& action);

private:
    Air& m_air;
};

} // namespace sim
