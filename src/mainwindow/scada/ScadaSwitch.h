#pragma once

#include "mainwindow/scada/ScadaItems.h"

class Map27Executive;

// Switches individual controls of an outstation. The outcome of a switch is shown when the very transaction
// that it started ends; the control of a switch that was not accepted, or whose transaction ended without an
// answer, waits for the outstation's next report.
class ScadaSwitch {
public:
    explicit ScadaSwitch(Map27Executive& executive) : m_executive(executive) {}

    // Takes control 0..7 of the unit that has these controls, which must stay at their address; one that is
    // waiting is left alone. Returns whether anything changed.
    bool Switch(const QString& unit, ScadaItems& controls, int control);
    // A status or text was delivered, or failed. Returns whether a control changed because of it.
    bool Reflect() { return End(true); }
    bool Cancel() { return End(false); }

private:
    bool End(bool delivered);

    Map27Executive& m_executive;
    ScadaItem* m_item = nullptr; // whose switch is on its way
    bool m_switchingOff = false;
    bool m_wasUnknown = false;
    unsigned m_transaction = 0; // started by the switch
};
