#pragma once

#include "simulator/Air.h"

#include <deque>

namespace sim {

// Statuses and texts that come for the console. A text is filled up as the air does: the radio learns only
// how many codewords came. The radio keeps what the console cannot take yet, and hands it over a few at a
// time, so that its answers to the console do not have to wait behind a storm.
class DeliveryService {
public:
    explicit DeliveryService(Air& air) : m_air(air) {}

    // Why it cannot be delivered, in plain words; empty when it was, or will be. CheckAction() has accepted
    // the action.
    std::string Deliver(const StatusAction& action);
    std::string Deliver(const TextAction& action);
    // From radios all over the fleet at once.
    std::string Deliver(const StormAction& action);

    std::size_t Waiting() const { return m_waiting.size(); }
    // Hands over what the console takes; `backlog` says how much is on its way to it.
    void HandOver(const std::function<std::size_t()>& backlog);
    // The radio is switched off.
    void Forget() { m_waiting.clear(); }

private:
    Air& m_air;
    std::deque<map27::FromRadio> m_waiting;
};

} // namespace sim
