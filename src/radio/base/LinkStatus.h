#pragma once

#include <QString>

// State of the link with the radio, as the operator is told.
struct LinkStatus {
    enum class State {
        Closed,     // nobody is logged on, or the link was closed on purpose
        Connecting, // the port is open, the radio has not answered yet
        Ready,      // the radio is there
        Silent,     // it seems to be gone: it owes an acknowledgement
        Lost,       // it was there, or the port failed; retried forever
    };

    State state = State::Closed;
    QString text;            // what is wrong, in plain words; empty when Ready or Closed
    bool simulation = false; // the radio says that it is a simulated one

    bool operator==(const LinkStatus&) const = default;
};
