#include "mainwindow/scada/ScadaSwitch.h"

#include "radio/facade/Map27Executive.h"

#include <utility>

bool ScadaSwitch::Switch(const QString& unit, ScadaItems& controls, int control)
{
    ScadaItem& item = controls[static_cast<std::size_t>(control)];
    if (item.picture == ScadaItem::Picture::Waiting)
        return false;
    const bool off = item.picture == ScadaItem::Picture::On;
    const unsigned last = m_executive.LastTransaction();
    m_executive.SendStatus(unit, off ? ScadaCode::SwitchOff(control) : ScadaCode::SwitchOn(control),
                           Map27Executive::Purpose::Command);
    if (m_executive.LastTransaction() != last) {
        m_item = &item;
        m_switchingOff = off;
        m_wasUnknown = item.unknown;
        m_transaction = m_executive.LastTransaction();
    }
    for (ScadaItem& other : controls)
        other.outcome = Outcome::None;
    item.picture = ScadaItem::Picture::Waiting;
    item.unknown = false;
    return true;
}

bool ScadaSwitch::End(bool delivered)
{
    if (m_item == nullptr || m_transaction != m_executive.LastTransaction())
        return false;
    ScadaItem& item = *std::exchange(m_item, nullptr);
    item.picture = delivered != m_switchingOff ? ScadaItem::Picture::On : ScadaItem::Picture::Off;
    item.outcome = delivered ? Outcome::Done : Outcome::NotDone;
    item.unknown = !delivered && m_wasUnknown;
    return true;
}
