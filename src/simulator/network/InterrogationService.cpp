#include "simulator/network/InterrogationService.h"

namespace sim {

namespace {

std::uint8_t FacilitiesOf(const OwnRadio& radio)
{
    unsigned facilities =
        map27::Facility::Voice | map27::Facility::Status | map27::Facility::Sst | map27::Facility::Mst;
    if (radio.dataCalls)
        facilities |= map27::Facility::Modem;
    return static_cast<std::uint8_t>(facilities);
}

constexpr std::uint8_t Codings = map27::CodingBit::BcdAscii | map27::CodingBit::TelexAscii |
                                 map27::CodingBit::Binary | map27::CodingBit::Bcd | map27::CodingBit::Telex |
                                 map27::CodingBit::Ccitt5 | map27::CodingBit::PcCharacters;

} // namespace

InterrogationService::InterrogationService(Air& air)
    : m_air(air),
      m_settings{FacilitiesOf(air.scenario.radio), 0, 0, Codings}
{
}

bool InterrogationService::Answer(std::uint8_t reason)
{
    switch (static_cast<map27::RadioInfo>(reason)) {
    case map27::RadioInfo::Personality:
        m_air.console.Tell(Personality());
        return true;
    case map27::RadioInfo::Numbering:
        m_air.console.Tell(Numbering());
        return true;
    case map27::RadioInfo::Settings:
        m_air.console.Tell(m_settings);
        return true;
    case map27::RadioInfo::Network:
        m_air.console.Tell(map27::NetworkInfoMessage{m_air.scenario.network.channel,
                                                     m_air.scenario.network.systemIdentity, 0});
        return true;
    default:
        return false;
    }
}

void InterrogationService::Set(const map27::SettingsMessage& settings)
{
    m_settings.facilitiesA = settings.facilitiesA & FacilitiesOf(m_air.scenario.radio);
    if (settings.codings)
        m_settings.codings = *settings.codings & Codings;
    m_air.console.Tell(m_settings);
}

map27::PersonalityMessage InterrogationService::Personality() const
{
    map27::PersonalityMessage personality;
    personality.radio = m_air.scenario.radio.address;
    personality.facilitiesA = FacilitiesOf(m_air.scenario.radio);
    personality.facilitiesC = SimulatedBit;
    personality.codings = Codings;
    return personality;
}

map27::NumberingMessage InterrogationService::Numbering() const
{
    const OwnRadio& radio = m_air.scenario.radio;
    return {radio.address, radio.units, radio.groups, m_air.scenario.GroupList()};
}

} // namespace sim
