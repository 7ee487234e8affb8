#pragma once

#include "mainwindow/ScadaItems.h"

#include <functional>
#include <optional>

class Map27Executive;

// Switches single controls of an outstation. The outcome of a switch is shown when the very transaction ends
// that it started; the control of a switch that was not accepted, or whose transaction ended without an
// answer, waits for the outstation's next report.
class ScadaSwitch {
public:
    ScadaSwitch(Map27Executive& executive, ScadaItems& controls)
        : m_executive(executive),
          m_controls(controls)
    {
    }

    // Of control 0..7; one that waits does nothing. Whether anything changed.
    bool Switch(const QString& unit, int control);
    // A status or text was delivered, or failed: the control that changed by it, if any.
    std::optional<int> Reflect();
    std::optional<int> Cancel();

private:
    std::optional<int> End(bool delivered);

    Map27Executive& m_executive;
    ScadaItems& m_controls;
    std::optional<int> m_control; // whose switch is on its way
    bool m_switchingOff = false;
    bool m_wasUnknown = false;
    unsigned m_transaction = 0; // that the switch started
};
