#pragma once

#include <QString>
#include <vector>

// A serial port that this computer has.
struct SerialPortChoice {
    QString port;        // as it is stored in the settings
    QString description; // of the device behind it; may be empty
};

struct ISerialPortList {
    virtual ~ISerialPortList() = default;

    // The ports that exist now.
    virtual std::vector<SerialPortChoice> Ports() const = 0;
};
