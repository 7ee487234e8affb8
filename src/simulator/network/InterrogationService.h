#pragma once

#include "simulator/network/Air.h"

namespace sim {

// What the radio says of itself when asked, and what its user has it accept.
class InterrogationService {
public:
    explicit InterrogationService(Air& air);

    // Personality, numbering, settings and network information. False for any other question.
    bool Answer(std::uint8_t reason);

    // Unasked, after a change.
    void TellNumbering() { m_air.console.Tell(Numbering()); }

    // Takes what the console switches on and off, as far as the radio has it, and tells what is in force.
    void Set(const map27::SettingsMessage& settings);
    // Of Facility; whether the user has what comes in that way accepted.
    bool Accepts(std::uint8_t facility) const { return (m_settings.facilitiesA & facility) != 0; }

    // Facilities c, bit 8: this radio is a simulated one. The octet is free for such use (MAP27 v1.5, radio
    // personality).
    static constexpr std::uint8_t SimulatedBit = 0x80;

private:
    map27::PersonalityMessage Personality() const;
    map27::NumberingMessage Numbering() const;

    Air& m_air;
    map27::SettingsMessage m_settings;
};

} // namespace sim
