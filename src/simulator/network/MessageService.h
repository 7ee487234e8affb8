#pragma once

#include "simulator/network/Air.h"
#include "simulator/network/Attempt.h"

namespace sim {

// Statuses and texts from the console, one at a time: perhaps D0 on the way, depending on the called radio,
// then C0 or E0.
class MessageService {
public:
    using Delivered = std::function<void(const map27::ToRadio& message)>;

    // `delivered` is called with a message that has reached the called radio, before the console is told.
    MessageService(Air& air, Delivered delivered)
        : m_air(air),
          m_delivered(std::move(delivered)),
          m_attempt(air.schedule)
    {
    }

    // The radio has made sure that nothing else is open.
    void Send(const map27::StatusMessage& message);
    // Tells the console at once when the data cannot go over the air.
    void Send(const map27::ShortDataMessage& message);

    bool IsOpen() const { return m_attempt.IsOpen(); }

    // The console gives up; it is told that the message has ended.
    void Cancel();
    // The message ends without a word.
    void Drop() { m_attempt.Stop(); }

private:
    void Start(const map27::Party& called, Service service, map27::ToRadio message);
    std::vector<Step> Steps(const map27::Party& called, Service service, const map27::ToRadio& message) const;
    void Acknowledge(map27::AckOutcome outcome, std::uint8_t cause);

    Air& m_air;
    Delivered m_delivered;
    Attempt m_attempt;
    map27::Party m_called;
    Service m_service = Service::Status;
};

} // namespace sim
