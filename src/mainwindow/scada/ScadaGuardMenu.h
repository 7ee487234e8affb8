#pragma once

#include <functional>

class QPoint;
class QWidget;
class ScadaGuard;
struct IPrompt;
struct IStringSource;

// The administrators' menu on the sensors and controls. A negative control: it was opened on no control.
// What cannot be stored is told in a box; `changed` runs when something has been stored.
struct ScadaGuardMenu {
    const IStringSource& strings;
    IPrompt& prompt;
    ScadaGuard& guard;
    std::function<void()> changed;

    void PopUp(QWidget& owner, const QPoint& place, int control);
};
