#include "mainwindow/ScadaSwitch.h"

#include "radio/Map27Executive.h"

#include <utility>

bool ScadaSwitch::Switch(const QString& unit, int control)
{
    ScadaItem& item = m_controls[static_cast<std::size_t>(control)];
    if (item.picture == ScadaItem::Picture::Waiting) {
        return false;
    }
    const bool off = item.picture == ScadaItem::Picture::On;
    const unsigned last = m_executive.LastTransaction();
    m_executive.SendStatus(unit, off ? ScadaCode::SwitchOff(control) : ScadaCode::SwitchOn(control));
    if (m_executive.LastTransaction() != last) {
        m_control = control;
        m_switchingOff = off;
        m_wasUnknown = item.unknown;
        m_transaction = m_executive.LastTransaction();
    }
    for (ScadaItem& other : m_controls) {
        other.outcome = Outcome::None;
    }
    item.picture = ScadaItem::Picture::Waiting;
    item.unknown = false;
    return true;
}

std::optional<int> ScadaSwitch::Reflect()
{
    return End(true);
}

std::optional<int> ScadaSwitch::Cancel()
{
    return End(false);
}

std::optional<int> ScadaSwitch::End(bool delivered)
{
    if (!m_control || m_transaction != m_executive.LastTransaction()) {
        return std::nullopt;
    }
    const int control = *std::exchange(m_control, std::nullopt);
    ScadaItem& item = m_controls[static_cast<std::size_t>(control)];
    item.picture = delivered != m_switchingOff ? ScadaItem::Picture::On : ScadaItem::Picture::Off;
    item.outcome = delivered ? Outcome::Done : Outcome::NotDone;
    item.unknown = !delivered && m_wasUnknown;
    return control;
}
