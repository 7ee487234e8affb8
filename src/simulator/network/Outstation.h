#pragma once

#include "simulator/base/Action.h"
#include "simulator/base/OutstationSettings.h"
#include "simulator/base/Random.h"
#include "simulator/base/Schedule.h"

#include <functional>

namespace sim {

// An outstation with eight sensors and eight controls. Commands come as statuses 0..19, reports go as texts:
// "I:" and the sensors, "O:" and the controls, "B:" and both.
class Outstation {
public:
    using Send = std::function<void(const TextAction& report)>;

    Outstation(Schedule& schedule, Random& random, map27::Address address, const OutstationSettings& settings,
               Send send);

    map27::Address Address() const { return m_address; }

    // Obeys a status that has reached it. Above 19 it does nothing.
    void Take(std::uint8_t status);
    // For a trainer or a scenario; reported like a change of the outstation's own.
    void SetSensor(std::size_t number, Signal signal);
    void SetControl(std::size_t number, Signal signal);

    // "sensors 01?00000 controls 00000001"
    std::string Describe() const;

private:
    void Switch(std::uint8_t status);
    void ChangeBySelf();
    void ReportBySelf();
    void WantReport(bool sensors, bool controls);
    void Report();

    Random& m_random;
    map27::Address m_address;
    OutstationSettings m_state; // the signals change, the rest stays
    Send m_send;
    Timer m_change;
    Timer m_regular;
    Timer m_report;
    bool m_sensorsWanted = false;
    bool m_controlsWanted = false;
    bool m_eightBitNext = false;
};

} // namespace sim
