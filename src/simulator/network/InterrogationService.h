#pragma once

#include "simulator/network/Air.h"

namespace sim {

// What the radio says about itself when asked, and which calls and messages its user lets it accept.
class InterrogationService {
public:
    explicit InterrogationService(Air& air);

    // Personality, numbering, settings and network information. False for any other question.
    bool Answer(std::uint8_t reason);

    // Unasked, after a change.
    void TellNumbering() { m_air.console.Tell(Numbering()); }

    // Switches on and off what the console asks for, as far as the radio has it, and reports what is in
    // force.
    void Set(const map27::SettingsMessage& settings);
    // Takes a bit of Facility. Whether what comes in that way is accepted.
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
