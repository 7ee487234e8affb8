#include "simulator/network/Outstation.h"

#include <algorithm>
#include <utility>

namespace sim {

namespace {

// Commands, as statuses.
constexpr std::uint8_t LastOff = 7; // 0..7: control off
constexpr std::uint8_t AllOff = 8;
constexpr std::uint8_t QuerySensors = 9;
constexpr std::uint8_t FirstOn = 10; // 10..17: control on
constexpr std::uint8_t LastOn = 17;
constexpr std::uint8_t AllOn = 18;
constexpr std::uint8_t QueryControls = 19;

constexpr double UnknownShare = 0.1; // of an outstation's own changes

} // namespace

Outstation::Outstation(Schedule& schedule, Random& random, map27::Address address,
                       const OutstationSettings& settings, Send send)
    : m_random(random),
      m_address(address),
      m_state(settings),
      m_send(std::move(send)),
      m_change(schedule),
      m_regular(schedule),
      m_report(schedule)
{
    if (m_state.changeEvery > Milliseconds(0))
        m_change.Start(m_state.changeEvery, [this] { ChangeBySelf(); });
    if (m_state.reportEvery > Milliseconds(0))
        m_regular.Start(m_state.reportEvery, [this] { ReportBySelf(); });
}

void Outstation::Take(std::uint8_t status)
{
    if (status > QueryControls)
        return;
    if (status == QuerySensors || status == QueryControls)
        return WantReport(status == QuerySensors, status == QueryControls);
    Switch(status);
    const bool all = status == AllOff || status == AllOn;
    WantReport(all, true);
}

void Outstation::Switch(std::uint8_t status)
{
    if (status == AllOff || status == AllOn)
        m_state.controls.fill(status == AllOn ? Signal::On : Signal::Off);
    else if (status <= LastOff)
        m_state.controls.at(status) = Signal::Off;
    else if (status <= LastOn)
        m_state.controls.at(status - FirstOn) = Signal::On;
}

void Outstation::SetSensor(std::size_t number, Signal signal)
{
    m_state.sensors.at(number) = signal;
    WantReport(true, false);
}

void Outstation::SetControl(std::size_t number, Signal signal)
{
    m_state.controls.at(number) = signal;
    WantReport(false, true);
}

std::string Outstation::Describe() const
{
    return "sensors " + ToText(m_state.sensors) + " controls " + ToText(m_state.controls);
}

void Outstation::ChangeBySelf()
{
    m_change.Start(m_state.changeEvery, [this] { ChangeBySelf(); });
    const auto number = static_cast<std::size_t>(m_random.Between(0, 7));
    Signal& sensor = m_state.sensors.at(number);
    if (m_random.Chance(UnknownShare) && sensor != Signal::Unknown)
        sensor = Signal::Unknown;
    else
        sensor = sensor == Signal::On ? Signal::Off : Signal::On;
    WantReport(true, false);
}

void Outstation::ReportBySelf()
{
    m_regular.Start(m_state.reportEvery, [this] { ReportBySelf(); });
    WantReport(true, true);
}

// Whatever is asked for before the report goes out is part of it.
void Outstation::WantReport(bool sensors, bool controls)
{
    if (!m_sensorsWanted && !m_controlsWanted)
        m_report.Start(m_state.reportAfter, [this] { Report(); });
    m_sensorsWanted |= sensors;
    m_controlsWanted |= controls;
}

void Outstation::Report()
{
    const bool sensors = std::exchange(m_sensorsWanted, false);
    const bool controls = std::exchange(m_controlsWanted, false);
    TextAction report;
    report.from = m_address;
    report.text = sensors && controls ? "B:" : sensors ? "I:" : "O:";
    if (sensors)
        report.text += ToText(m_state.sensors);
    if (controls)
        report.text += ToText(m_state.controls);
    const bool eightBit = m_state.coding ? *m_state.coding == map27::TextCoding::EightBit
                                         : std::exchange(m_eightBitNext, !m_eightBitNext);
    report.coding = eightBit ? map27::TextCoding::EightBit : map27::TextCoding::SevenBit;
    m_send(report);
}

} // namespace sim
