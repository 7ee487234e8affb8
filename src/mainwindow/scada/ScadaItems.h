#pragma once

#include "mainwindow/lists/Outcome.h"

#include <QDateTime>
#include <QString>
#include <array>

// The sensors and controls of an outstation: what its reports mean, and the status codes that command it.

constexpr int ScadaItemCount = 8;

struct ScadaItem {
    enum class Picture { Off, On, Waiting }; // Waiting: a control that was told to switch

    Picture picture = Picture::Off;
    bool unknown = true; // shown as a ghost; nothing is known before the first report
    Outcome outcome = Outcome::None;

    bool operator==(const ScadaItem&) const = default;
};

using ScadaItems = std::array<ScadaItem, ScadaItemCount>;

// What one outstation reported last, and what became of its switches since.
struct ScadaStation {
    QString name; // its callsign, or its address where it has none
    ScadaItems sensors;
    ScadaItems controls;
    QDateTime sensorsTime; // of the last report; invalid before the first
    QDateTime controlsTime;
};

// A report's eight characters, the last one for item 0: "1" on, "0" off; any other leaves the item's picture
// and marks it unknown, as does a missing one.
void ApplyReport(ScadaItems& items, const QString& bits);

namespace ScadaCode {
constexpr int AllOff = 8;
constexpr int QuerySensors = 9;
constexpr int AllOn = 18;
constexpr int QueryControls = 19;
// Of control 0..7.
constexpr int SwitchOff(int control)
{
    return control;
}
constexpr int SwitchOn(int control)
{
    return 10 + control;
}
} // namespace ScadaCode
