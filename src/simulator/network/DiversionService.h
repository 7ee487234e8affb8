#pragma once

#include "simulator/network/Air.h"
#include "simulator/network/Attempt.h"

namespace sim {

// Diversions that the console sets and cancels with its radio (87, A7): of its own calls, of another radio's,
// or of all to one target.
class DiversionService {
public:
    // `fleet` holds the diversions in force.
    DiversionService(Air& air, Fleet& fleet) : m_air(air), m_fleet(fleet), m_attempt(air.schedule) {}

    // The radio has seen to it that nothing else is open.
    void Set(const map27::DiversionRequestMessage& message);
    void Cancel(const map27::DiversionCancelMessage& message);

    bool IsOpen() const { return m_attempt.IsOpen(); }
    // The console gives up; it is told so.
    void Abort();
    void Drop() { m_attempt.Stop(); }

private:
    template <typename Change> void Start(map27::Address named, bool possible, Change change);
    void Acknowledge(map27::AckOutcome outcome, std::uint8_t cause);

    Air& m_air;
    Fleet& m_fleet;
    Attempt m_attempt;
    map27::Party m_party;
};

} // namespace sim
