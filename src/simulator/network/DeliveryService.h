#pragma once

#include "simulator/network/Air.h"

#include <deque>

namespace sim {

// What the link has done with the messages that it was given.
struct LinkProgress {
    std::uint64_t accepted;     // since the radio was made
    std::size_t unacknowledged; // the latest of them
};

// Statuses and texts for the console. A text is padded as it is on the air, where the radio learns only how
// many codewords came. The radio keeps what the console cannot take yet and hands it over a few messages at a
// time, so that its answers to the console do not have to wait behind a storm. It keeps each message until
// the console has acknowledged it, and hands it over again after a lost link.
class DeliveryService {
public:
    explicit DeliveryService(Air& air) : m_air(air) {}

    // Returns why it cannot be delivered, in plain words; empty when it has been, or will be. For an action
    // that CheckAction() accepts.
    std::string Deliver(const StatusAction& action);
    std::string Deliver(const TextAction& action);
    // From radios all over the fleet at once.
    std::string Deliver(const StormAction& action);

    std::size_t Waiting() const { return m_waiting.size(); }
    // With those that the console has not acknowledged.
    std::size_t Kept() const { return m_waiting.size() + m_underWay.size(); }
    // Hands over what the console takes.
    void HandOver(const std::function<LinkProgress()>& progress);
    // The link is lost; the console has acknowledged so many of the messages that the link had accepted.
    void TakeBack(std::uint64_t acknowledged);
    // The radio is switched off.
    void Forget();

private:
    struct UnderWay {
        std::uint64_t number; // among the messages that the link has accepted, from 1
        map27::FromRadio message;
    };

    void ForgetUntil(std::uint64_t acknowledged);

    Air& m_air;
    std::deque<map27::FromRadio> m_waiting;
    std::deque<UnderWay> m_underWay; // not acknowledged yet
};

} // namespace sim
